// SPDX-License-Identifier: MIT
// Poses at arrays of times: the same bits as SbetPositionAttitudeProvider wherever it answers
// (real file, exact record times, yaw across +-180 deg), the four ways to give times, no
// answer outside the table or inside a gap, refused arguments, and thread counts.
#include "BatchTestSupport.h"

#include "../Providers/ProviderTestSupport.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/Batch/ArgumentError.h"
#include "Geodesy/SbetPositionAttitudeProvider.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using namespace BatchTesting;
using Batch::ThreadCount;
using Batch::TimeScale;
using Batch::TimeSpec;
using Batch::TrajectoryOptions;
using Batch::TrajectoryTable;
using Testing::TemporaryDirectory;

constexpr const char* NAMES[] = {"latitude", "longitude", "height", "roll", "pitch", "yaw"};

/// The provider's answers at increasing UTC `times`, as (latitude, longitude, height, roll,
/// pitch, yaw); empty where it gives none.
template <typename Reader>
std::vector<std::vector<double>> providerAnswers(const std::filesystem::path& path, const std::vector<double>& times)
{
    EXPECT_TRUE(std::is_sorted(times.begin(), times.end()));
    SbetPositionAttitudeProvider<Reader> provider(path, nullptr, Batch::TrajectoryOptions{}.alignment);
    Maths::IntervalCounter counter;
    std::vector<std::vector<double>> answers;
    for (const double time : times) {
        const auto value = provider.getPositionAttitude(time, counter);
        if (!value) {
            answers.emplace_back();
            continue;
        }
        answers.push_back({value->position.latitude, value->position.longitude, value->position.height,
                           value->attitude.getRoll(), value->attitude.getPitch(), value->attitude.getYaw()});
    }
    return answers;
}

/// Asks the provider the sorted times and the table the same times shuffled; wherever the
/// provider answers the table must, with the same bits, and (`bothWays`) the other way round.
/// Returns how many times the table answered.
template <typename Reader = Sbet::Reader>
std::size_t expectProviderBits(const std::filesystem::path& path, std::vector<double> times, bool bothWays = true)
{
    std::sort(times.begin(), times.end());
    const auto expected = providerAnswers<Reader>(path, times);
    std::vector<std::size_t> order(times.size());
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), std::mt19937_64(7));
    std::vector<double> shuffled(times.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        shuffled[i] = times[order[i]];
    }
    const TrajectoryTable table = loadPaths({path});
    const PoseBuffers shuffledPoses = posesOf(table, shuffled, {TimeScale::utc, {}});
    const PoseBuffers sortedPoses = posesOf(table, times, {TimeScale::utc, {}});

    std::size_t answered = 0;
    std::size_t mismatches = 0;
    for (std::size_t i = 0; i < order.size() && mismatches < 10; ++i) {
        const std::size_t at = order[i];
        const auto& want = expected[at];
        const bool valid = shuffledPoses.valid[i] == 1;
        EXPECT_EQ(sortedPoses.valid[at], shuffledPoses.valid[i]);
        if (want.empty() ? valid && bothWays : !valid) {
            ADD_FAILURE() << std::setprecision(17) << "time " << times[at] << ": provider "
                          << (want.empty() ? "gives nothing" : "answers") << ", table valid " << valid;
            ++mismatches;
            continue;
        }
        answered += valid ? 1 : 0;
        for (std::size_t c = 0; valid && !want.empty() && c < 6; ++c) {
            if (bits(shuffledPoses.values[c][i]) != bits(want[c]) || bits(sortedPoses.values[c][at]) != bits(want[c])) {
                ADD_FAILURE() << std::setprecision(17) << NAMES[c] << " at " << times[at] << ": " << want[c]
                              << " from the provider, " << shuffledPoses.values[c][i] << " from the table";
                ++mismatches;
            }
        }
    }
    return answered;
}

std::vector<double> uniformTimes(double first, double last, std::size_t count, std::uint64_t seed)
{
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> uniform(first, last);
    std::vector<double> times(count);
    for (double& time : times) {
        time = uniform(random);
    }
    return times;
}

TEST(Poses, RealSbetGivesTheProviderBitsAtRandomTimesAndAroundEveryRecord)
{
    const auto path = Testing::refData("leeward/sbet.out");
    const auto records = ProviderTesting::readSbetDirectly(path);
    auto times = uniformTimes(utcOf(records.front().time), utcOf(records.back().time), 100'000, 1);
    for (const auto& record : records) {
        // Record times are finer than UTC seconds since 1970 can hold: the nearest ones.
        const double nearest = utcOf(record.time);
        times.insert(times.end(), {nearest, std::nextafter(nearest, 0.0), std::nextafter(nearest, 2e9)});
    }
    EXPECT_GE(expectProviderBits(path, times), 100'000u);
}

TEST(Poses, ExactRecordTimesFirstAndLastEpochAndYawAcrossTheSeamGiveTheProviderBits)
{
    // 256 Hz: every record time, and its UTC second since 1970, is exact in binary. The
    // heading runs through +180 deg twice: once unwrapped (3.1 to 3.3 rad), once stored wrapped.
    auto records = Testing::syntheticTrajectory(400000.0, 1.0 / 256.0, 200);
    for (std::size_t i = 0; i < records.size(); ++i) {
        const double heading = 3.0 + 0.004 * static_cast<double>(i) + records[i].wanderAngle;
        records[i].heading = i < 100 ? heading : heading - 2.0 * std::numbers::pi;
    }
    TemporaryDirectory folder;
    const auto path = writeSbet(folder, "seam.sbet", records);
    auto times = uniformTimes(utcOf(records.front().time), utcOf(records.back().time), 100'000, 2);
    for (const auto& record : records) {
        times.push_back(utcOf(record.time));
        times.push_back(utcOf(record.time + 1.0 / 512.0));
    }
    EXPECT_EQ(expectProviderBits(path, times), times.size() - 1) << "all but the one after the last record";

    // Yaw blended along the shorter arc, wrapped into [-pi, pi).
    const TrajectoryTable table = loadPaths({path});
    const PoseBuffers seam = posesOf(table, {utcOf(records[35].time + 1.0 / 512.0), utcOf(records[99].time + 1.0 / 512.0)});
    EXPECT_NEAR(seam.values[5][0], 3.0 + 0.004 * 35.5 - 2.0 * std::numbers::pi, 1e-12);
    EXPECT_NEAR(seam.values[5][1], 3.0 + 0.004 * 99.5 - 2.0 * std::numbers::pi, 1e-12);
}

TEST(Poses, RawApxGivesTheProviderBitsWhereverItAnswersAndBridgesAShortStretchOfUnusableRecords)
{
    // Four records a second; the first eight before alignment, one in the middle without a
    // solution (the table blends across its 0.5 s, the provider gives nothing there).
    std::vector<ApxRaw::RawRecord> raw;
    for (std::uint32_t i = 0; i < 400; ++i) {
        raw.push_back(Testing::syntheticRawRecord(400000000 + 250 * i, i < 8 ? 3 : 5, i == 200 ? 0 : 1));
    }
    TemporaryDirectory folder;
    const auto path = folder.write("nav.stream", Testing::apxRawBytes(raw));
    auto times = uniformTimes(utcOf(400000.0), utcOf(400099.75), 100'000, 9);
    for (std::uint32_t i = 0; i < 400; ++i) {
        times.push_back(utcOf(400000.0 + 0.25 * i));
    }
    EXPECT_GT(expectProviderBits<ApxRaw::Reader>(path, times, false), 97'000u) << "all but the first 2 s";
    const TrajectoryTable table = loadPaths({path});
    EXPECT_EQ(table.timeSpan().first, 400002.0);
    EXPECT_EQ(posesOf(table, {utcOf(400050.0)}).valid[0], 1) << "across the record without a solution";
    EXPECT_EQ(posesOf(table, {utcOf(400001.0)}).valid[0], 0) << "before alignment";
}

TEST(Poses, EveryTimeScaleGivesTheSameAnswersAndAKnownWeekRefusesOtherWeeks)
{
    const auto records = Testing::syntheticTrajectory(400000.0, 1.0 / 256.0, 512);
    TemporaryDirectory folder;
    const auto path = writeSbet(folder, "week.sbet", records);
    // On a grid of 2^-20 s, so that UTC seconds since 1970 hold them exactly.
    auto gps = uniformTimes(records.front().time, records.back().time, 1000, 3);
    for (double& time : gps) {
        time = std::ldexp(std::round(std::ldexp(time, 20)), -20);
    }
    const auto convert = [&](const std::function<double(double)>& to) {
        std::vector<double> times;
        std::transform(gps.begin(), gps.end(), std::back_inserter(times), to);
        return times;
    };
    const auto adjusted = [](double week) {
        return [week](double g) { return week * 604800.0 + g - 1e9; };
    };
    const std::vector<double> utc = convert(utcOf);
    const std::vector<double> lastWeekUtc = convert([](double g) { return utcOf(g) - 604800.0; });

    TrajectoryOptions withWeek;
    withWeek.week = GPS_WEEK;
    const TrajectoryTable unknownWeek = loadPaths({path});
    const TrajectoryTable knownWeek = loadPaths({path}, withWeek);
    const PoseBuffers reference = posesOf(unknownWeek, gps, {TimeScale::gpsWeek, {}});
    ASSERT_TRUE(std::all_of(reference.valid.begin(), reference.valid.end(), [](auto v) { return v == 1; }));

    struct Case {
        const char* name;
        const TrajectoryTable& table;
        std::vector<double> times;
        TimeSpec timeSpec;
        bool valid;
    };
    const Case cases[] = {
        {"utc", unknownWeek, utc, {TimeScale::utc, {}}, true},
        {"utc, known week", knownWeek, utc, {TimeScale::utc, {}}, true},
        {"utc a week early: matched by seconds of week", unknownWeek, lastWeekUtc, {TimeScale::utc, {}}, true},
        {"utc a week early, known week", knownWeek, lastWeekUtc, {TimeScale::utc, {}}, false},
        {"gps week, with its week", knownWeek, gps, {TimeScale::gpsWeek, GPS_WEEK}, true},
        {"gps week, without a week", knownWeek, gps, {TimeScale::gpsWeek, {}}, true},
        {"gps week of another week, known week", knownWeek, gps, {TimeScale::gpsWeek, GPS_WEEK + 1}, false},
        {"gps week of another week, week unknown", unknownWeek, gps, {TimeScale::gpsWeek, GPS_WEEK + 1}, true},
        {"gps adjusted", unknownWeek, convert(adjusted(GPS_WEEK)), {TimeScale::gpsAdjusted, {}}, true},
        {"gps adjusted, known week", knownWeek, convert(adjusted(GPS_WEEK)), {TimeScale::gpsAdjusted, {}}, true},
        {"gps adjusted a week later, known week", knownWeek, convert(adjusted(GPS_WEEK + 1)),
         {TimeScale::gpsAdjusted, {}}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const PoseBuffers poses = posesOf(c.table, c.times, c.timeSpec);
        for (std::size_t i = 0; i < gps.size(); ++i) {
            ASSERT_EQ(poses.valid[i], c.valid ? 1 : 0) << i;
            for (std::size_t v = 0; v < poses.values.size(); ++v) {
                if (c.valid) {
                    ASSERT_EQ(bits(poses.values[v][i]), bits(reference.values[v][i])) << v << " at " << i;
                } else {
                    ASSERT_TRUE(std::isnan(poses.values[v][i]));
                }
            }
        }
    }
}

TEST(Poses, NothingOutsideTheTableOrInsideAGapAndEpochsAtTheGapsEdgesAreAnswered)
{
    // 10 s at 4 Hz, 60 s without a record, 10 s more.
    auto records = Testing::syntheticTrajectory(1000.0, 0.25, 41);
    const auto tail = Testing::syntheticTrajectory(1070.0, 0.25, 41);
    records.insert(records.end(), tail.begin(), tail.end());
    TemporaryDirectory folder;
    const TrajectoryTable table = loadPaths({writeSbet(folder, "gap.sbet", records)});

    const std::pair<double, bool> times[] = {
        {999.999, false}, {1000.0, true},   {1005.1, true},  {1010.0, true},  {1010.0001, false},
        {1040.0, false},  {1069.9999, false}, {1070.0, true}, {1080.0, true}, {1080.0001, false},
        {604000.0, false},
    };
    std::vector<double> queries;
    for (const auto& [time, valid] : times) {
        queries.push_back(time);
    }
    const PoseBuffers poses = posesOf(table, queries, {TimeScale::gpsWeek, {}});
    for (std::size_t i = 0; i < queries.size(); ++i) {
        SCOPED_TRACE(queries[i]);
        EXPECT_EQ(poses.valid[i], times[i].second ? 1 : 0);
        for (const auto& values : poses.values) {
            EXPECT_EQ(std::isnan(values[i]), !times[i].second);
        }
    }
    // The epoch that closes the gap is blended from its pair at k = 1, as the providers do.
    EXPECT_EQ(poses.values[2][7], Testing::syntheticRecord(1070.0).height);
    EXPECT_NEAR(poses.values[2][2], Testing::syntheticRecord(1005.1).height, 1e-9);
}

TEST(Poses, RefusedArgumentsNameTheColumnOrTheFirstBadTime)
{
    TemporaryDirectory folder;
    const TrajectoryTable table = loadPaths({writeSbet(folder, "a.sbet", Testing::syntheticTrajectory(100.0, 0.5, 9))});
    std::vector<double> times(40, 101.0);
    const auto ask = [&](std::vector<double> queries, const std::function<void(Batch::PoseColumns&)>& change) {
        return [&table, queries, change] {
            PoseBuffers buffers(40);
            Batch::PoseColumns columns = buffers.columns();
            change(columns);
            table.poses(queries, {TimeScale::gpsWeek, {}}, columns, ThreadCount(0));
        };
    };
    const auto with = [&](std::size_t index, double value) {
        auto queries = times;
        queries[index] = value;
        queries[35] = std::numeric_limits<double>::quiet_NaN();
        return queries;
    };
    const auto unchanged = [](Batch::PoseColumns&) {};
    std::vector<double> shortColumn(39);
    const std::pair<std::function<void()>, std::string> cases[] = {
        {ask(with(17, std::numeric_limits<double>::quiet_NaN()), unchanged), "times[17] is NaN"},
        {ask(with(3, -std::numeric_limits<double>::infinity()), unchanged), "times[3] is infinite"},
        {ask(times, [&](auto& c) { c.yaw = shortColumn; }), "yaw has 39 elements, times has 40"},
        {ask(times, [&](auto& c) { c.velocityEast = shortColumn; }), "velocityEast has 39 elements, times has 40"},
        {ask(times, [&](auto& c) { c.latitude = {}; }), "latitude has 0 elements, times has 40"},
        {ask(times, [&](auto& c) { c.valid = c.valid.first(39); }), "valid has 39 elements, times has 40"},
    };
    for (const auto& [action, expected] : cases) {
        EXPECT_EQ(Testing::thrownText<Batch::ArgumentError>(action), expected);
    }
    // Velocities are optional; UTC before 1970 has no answer, and no time at all is fine.
    PoseBuffers buffers(2);
    Batch::PoseColumns columns = buffers.columns();
    columns.velocityNorth = columns.velocityEast = columns.velocityDown = {};
    table.poses(std::vector<double>{-1.0, 1e300}, {TimeScale::utc, {}}, columns);
    EXPECT_EQ(buffers.valid, (std::vector<std::uint8_t>{0, 0}));
    EXPECT_EQ(buffers.values[6][0], -1.0) << "not wanted, not written";
    table.poses({}, {}, {});
}

TEST(PosesThreads, EveryThreadCountGivesTheSameBitsForOrderedAndShuffledTimes)
{
    const auto records = Testing::syntheticTrajectory(400000.0, 0.005, 20000);
    TemporaryDirectory folder;
    const TrajectoryTable table = loadPaths({writeSbet(folder, "long.sbet", records)});
    auto times = uniformTimes(utcOf(records.front().time) - 1.0, utcOf(records.back().time) + 1.0, 150'000, 4);
    for (const bool ordered : {false, true}) {
        if (ordered) {
            std::sort(times.begin(), times.end());
        }
        const PoseBuffers one = posesOf(table, times, {}, ThreadCount(1));
        for (const unsigned threads : {2u, 3u, 0u}) {
            SCOPED_TRACE(threads);
            const PoseBuffers many = posesOf(table, times, {}, ThreadCount(threads));
            EXPECT_EQ(many.valid, one.valid);
            for (std::size_t v = 0; v < one.values.size(); ++v) {
                EXPECT_TRUE(std::equal(one.values[v].begin(), one.values[v].end(), many.values[v].begin(),
                                       [](double a, double b) { return bits(a) == bits(b); }))
                    << NAMES[std::min<std::size_t>(v, 5)];
            }
        }
    }
}

} // namespace
} // namespace Kelvo::Geodesy
