// SPDX-License-Identifier: MIT
// Answers of the GNSS solution table for arrays of times: interpolation, gaps, Q and ns,
// time scales, sorted and unsorted times, thread counts, merged files and bad arguments.
#include "Geodesy/Batch/ArgumentError.h"
#include "Geodesy/Batch/FileFormatError.h"
#include "Geodesy/Batch/GnssSolutionTable.h"
#include "Geodesy/GPSTime.h"
#include "GnssTestFiles.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <numbers>
#include <numeric>
#include <random>
#include <span>
#include <thread>
#include <vector>

namespace Kelvo::Geodesy::Batch {
namespace {

using namespace Testing;

constexpr std::uint32_t WEEK = 2244;
const TimeSpec weekScale{TimeScale::gpsWeek, WEEK};

/// Every output column of an `at` call, owned.
struct Answers {
    explicit Answers(std::size_t count)
        : values(GNSS_COLUMN_COUNT(), std::vector<double>(count, 42.0))
        , quality(count, 42)
        , satellites(count, 42)
        , valid(count, 42)
    {
        for (std::size_t c = 0; c < GNSS_COLUMN_COUNT(); ++c) {
            out.values[c] = values[c];
        }
        out.quality = quality;
        out.satellites = satellites;
        out.valid = valid;
    }
    Answers(const Answers&) = delete;
    Answers(Answers&&) = default;

    const std::vector<double>& operator[](GnssColumn column) const { return values[columnIndex(column)]; }
    bool operator==(const Answers& other) const
    {
        // Bit for bit, NaN included.
        const auto sameBits = [](const std::vector<double>& a, const std::vector<double>& b) {
            return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
        };
        return std::ranges::equal(values, other.values, sameBits) && quality == other.quality
            && satellites == other.satellites && valid == other.valid;
    }

    std::vector<std::vector<double>> values;
    std::vector<std::uint8_t> quality;
    std::vector<std::uint16_t> satellites;
    std::vector<std::uint8_t> valid;
    GnssColumns out;
};

Answers answer(const GnssSolutionTable& table, const std::vector<double>& times, const TimeSpec& timeScale = weekScale,
               ThreadCount threads = ThreadCount{1})
{
    Answers answers(times.size());
    table.at(times, timeScale, answers.out, threads);
    return answers;
}

// Solutions at 36000, 36001, 36002 and, after a 5 s gap, 36007 (Q 1 2 1 1, ns 9 7 8 9).
class GnssTableAt : public ::testing::Test {
protected:
    TemporaryDirectory folder;
    const std::filesystem::path path = folder.write(
        "synthetic.pos", gnssHeader + syntheticLine(36000.0, 1, 9) + syntheticLine(36001.0, 2, 7)
                             + syntheticLine(36002.0, 1, 8) + syntheticLine(36007.0, 1, 9));
    const GnssSolutionTable table = GnssSolutionTable::load(path);
};

/// The columns of a synthetic file and the field each comes from (negated: the down velocity).
const std::vector<std::pair<GnssColumn, int>> syntheticColumns{
    {GnssColumn::height, 4},        {GnssColumn::sdn, 7},           {GnssColumn::sde, 8},
    {GnssColumn::sdu, 9},           {GnssColumn::sdne, 10},         {GnssColumn::sdeu, 11},
    {GnssColumn::sdun, 12},         {GnssColumn::age, 13},          {GnssColumn::ratio, 14},
    {GnssColumn::velocityNorth, 15}, {GnssColumn::velocityEast, 16}, {GnssColumn::velocityDown, -17},
    {GnssColumn::sdvn, 18},         {GnssColumn::sdve, 19},         {GnssColumn::sdvu, 20},
    {GnssColumn::sdvne, 21},        {GnssColumn::sdveu, 22},        {GnssColumn::sdvun, 23},
};

TEST_F(GnssTableAt, InterpolatesEveryColumnLinearlyWithTheWorseQAndTheFewerSatellites)
{
    struct Case {
        double seconds;
        int quality;
        int satellites;
    };
    const std::vector<Case> cases{{36000.0, 1, 9},  {36000.25, 2, 7}, {36001.0, 2, 7},
                                  {36001.5, 2, 7},  {36002.0, 1, 8},  {36007.0, 1, 9}};
    std::vector<double> times;
    for (const Case& c : cases) {
        times.push_back(c.seconds);
    }
    const Answers answers = answer(table, times);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(cases[i].seconds);
        EXPECT_EQ(answers.valid[i], 1);
        EXPECT_EQ(answers.quality[i], cases[i].quality);
        EXPECT_EQ(answers.satellites[i], cases[i].satellites);
        const double degrees = std::numbers::pi / 180.0;
        EXPECT_NEAR(answers[GnssColumn::latitude][i], syntheticField(2, cases[i].seconds) * degrees, 1e-14);
        EXPECT_NEAR(answers[GnssColumn::longitude][i], syntheticField(3, cases[i].seconds) * degrees, 1e-14);
        for (const auto& [column, field] : syntheticColumns) {
            const double written = syntheticField(static_cast<std::size_t>(std::abs(field)), cases[i].seconds);
            const double expected = field < 0 ? -written : written;
            EXPECT_NEAR(answers[column][i], expected, 1e-12) << columnName(column);
        }
        // A geodetic file has no ECEF or baseline columns: NaN, though the time is valid.
        EXPECT_TRUE(std::isnan(answers[GnssColumn::ecefX][i]));
        EXPECT_TRUE(std::isnan(answers[GnssColumn::up][i]));
    }
    // On a solution the values are its own, to the bit.
    EXPECT_EQ(answers[GnssColumn::height][4], table.height()[2]);
}

TEST_F(GnssTableAt, TimesOutsideTheTableOrInsideAGapHaveNoAnswer)
{
    EXPECT_DOUBLE_EQ(table.maxGap(), 1.5); // the most common step is 1 s
    const std::vector<double> times{35999.999, 36002.001, 36004.5, 36006.999, 36007.001, 0.0};
    const Answers answers = answer(table, times);
    for (std::size_t i = 0; i < times.size(); ++i) {
        SCOPED_TRACE(times[i]);
        EXPECT_EQ(answers.valid[i], 0);
        EXPECT_EQ(answers.quality[i], 0);
        EXPECT_EQ(answers.satellites[i], 0);
        for (const auto& values : answers.values) {
            EXPECT_TRUE(std::isnan(values[i]));
        }
    }

    // A wider maxGap bridges the 5 s step, inclusive; a narrower one keeps only exact hits.
    const auto within = [&](double maxGap, double seconds) {
        return answer(GnssSolutionTable::load(path, {maxGap}), {seconds}).valid[0];
    };
    EXPECT_EQ(within(5.0, 36004.5), 1);
    EXPECT_EQ(within(4.999, 36004.5), 0);
    EXPECT_EQ(within(0.0, 36000.5), 0);
    EXPECT_EQ(within(0.0, 36001.0), 1);
}

TEST_F(GnssTableAt, EveryTimeScaleFindsTheSameSolutions)
{
    const std::vector<double> secondsOfWeek{36000.0, 36000.25, 36001.75, 36004.0, 36007.0};
    const double weekStart = WEEK * SECONDS_IN_WEEK();
    std::vector<double> adjusted;
    std::vector<double> utc;
    for (const double seconds : secondsOfWeek) {
        adjusted.push_back(weekStart + seconds - 1e9);
        utc.push_back(weekStart + seconds - GPS_LEAP_SECONDS() + GPS_EPOCH_IN_UNIX_SECONDS);
    }
    const Answers expected = answer(table, secondsOfWeek);
    EXPECT_TRUE(answer(table, adjusted, {TimeScale::gpsAdjusted, {}}) == expected);
    EXPECT_TRUE(answer(table, utc, {TimeScale::utc, {}}) == expected);
}

TEST(GnssTableTime, UtcFilesUseTheirDatesLeapSecondsWhileUtcQueriesUseTheLibrarys18)
{
    // 2005-04-02, when GPS - UTC was 13 s.
    TemporaryDirectory folder;
    const std::string header = "%  UTC                   latitude(deg) longitude(deg)  height(m)   Q  ns   sdn(m)   "
                               "sde(m)   sdu(m)  sdne(m)  sdeu(m)  sdun(m) age(s)  ratio\n";
    const std::string fields = "   35.160865956  139.613842998    68.3784   1   7   0.0058   0.0044   0.0136   "
                               "0.0022  -0.0047  -0.0055   0.00   24.9\n";
    const auto table = GnssSolutionTable::load(
        folder.write("utc.pos", header + "2005/04/02 00:00:00.000" + fields + "2005/04/02 00:00:30.000" + fields));
    const double writtenUtc = 9218.0 * 86400.0; // days from 1980-01-06 to 2005-04-02
    EXPECT_EQ(table.gpsTime()[0], writtenUtc + 13.0);
    EXPECT_EQ(table.week(0), 1316U);
    EXPECT_EQ(table.secondsOfWeek(0), 518413.0);

    // The written UTC instant, asked on the UTC scale, is read with 18 s: 5 s into the table.
    Answers answers(1);
    const std::vector<double> query{writtenUtc + GPS_EPOCH_IN_UNIX_SECONDS};
    table.at(query, {TimeScale::utc, {}}, answers.out);
    EXPECT_EQ(answers.valid[0], 1);
    EXPECT_DOUBLE_EQ(answers[GnssColumn::ratio][0], 24.9);
}

/// Times over the Spirent file, some outside it, in increasing order.
std::vector<double> sortedSpirentTimes(std::size_t count)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> seconds(35990.0, 36610.0);
    std::vector<double> times(count);
    std::ranges::generate(times, [&] { return seconds(random); });
    times.insert(times.end(), {36000.0, 36600.0, 36300.0});
    std::ranges::sort(times);
    return times;
}

TEST(GnssTableThreads, ShuffledTimesAndEveryThreadCountGiveTheSameBits)
{
    const auto table = GnssSolutionTable::load(refData("rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos"));
    const std::vector<double> sorted = sortedSpirentTimes(100000);
    std::vector<std::size_t> order(sorted.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::shuffle(order, std::mt19937_64(11));
    std::vector<double> shuffled;
    for (const std::size_t i : order) {
        shuffled.push_back(sorted[i]);
    }

    // Shuffled times get the answers of the sorted ones.
    const Answers inOrder = answer(table, sorted);
    const Answers mixed = answer(table, shuffled);
    EXPECT_EQ(std::ranges::count(inOrder.valid, 1),
              std::ranges::count_if(sorted, [](double t) { return t >= 36000.0 && t <= 36600.0; }));
    for (std::size_t k = 0; k < order.size(); ++k) {
        ASSERT_EQ(mixed.valid[k], inOrder.valid[order[k]]);
        for (std::size_t c = 0; c < GNSS_COLUMN_COUNT(); ++c) {
            const double a = mixed.values[c][k];
            const double b = inOrder.values[c][order[k]];
            ASSERT_TRUE(std::memcmp(&a, &b, sizeof a) == 0) << columnName(static_cast<GnssColumn>(c));
        }
    }
    // And so does every split of them between threads.
    for (const unsigned threads : {2U, 3U, 0U}) {
        EXPECT_TRUE(answer(table, sorted, weekScale, ThreadCount{threads}) == inOrder) << threads << " threads";
        EXPECT_TRUE(answer(table, shuffled, weekScale, ThreadCount{threads}) == mixed) << threads << " threads";
    }
}

TEST(GnssTableThreads, OneTableServesSeveralThreadsAtOnce)
{
    const auto table = GnssSolutionTable::load(refData("rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos"));
    const std::vector<double> times = sortedSpirentTimes(20000);
    const Answers expected = answer(table, times);
    std::vector<std::unique_ptr<Answers>> results(4);
    {
        std::vector<std::jthread> callers;
        for (auto& result : results) {
            callers.emplace_back(
                [&] { result = std::make_unique<Answers>(answer(table, times, weekScale, ThreadCount{2})); });
        }
    }
    for (const auto& result : results) {
        EXPECT_TRUE(*result == expected);
    }
}

TEST_F(GnssTableAt, BadArgumentsAreErrorsThatNameThemAndNothingIsWritten)
{
    struct Case {
        const char* message;
        std::function<void(Answers&)> call;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<double> times{36000.0, 36000.5, 36001.0};
    std::vector<double> two(2);
    std::vector<std::uint8_t> four(4);
    const std::vector<Case> cases{
        {"times[2] is NaN", [&](Answers& a) { table.at(std::vector{36000.0, 36001.0, nan}, weekScale, a.out); }},
        {"times[0] is infinite", [&](Answers& a) { table.at(std::vector{-infinity, 1.0, 2.0}, weekScale, a.out); }},
        {"out.latitude holds 2 values for 3 times",
         [&](Answers& a) {
             a.out[GnssColumn::latitude] = two;
             table.at(times, weekScale, a.out);
         }},
        {"out.valid holds 4 values for 3 times",
         [&](Answers& a) {
             a.out.valid = four;
             table.at(times, weekScale, a.out);
         }},
        {"timeScale.week is missing: TimeScale::gpsWeek needs the GPS week of the times",
         [&](Answers& a) { table.at(times, {TimeScale::gpsWeek, {}}, a.out); }},
        // And when loading.
        {"paths is empty: no RTKLIB position file to load",
         [](Answers&) { GnssSolutionTable::load(std::span<const std::filesystem::path>{}); }},
        {"options.maxGap is -1.000000: it must be a finite number of seconds, not negative",
         [&](Answers&) { GnssSolutionTable::load(path, {-1.0}); }},
        {"options.maxGap is nan: it must be a finite number of seconds, not negative",
         [&](Answers&) { GnssSolutionTable::load(path, {nan}); }},
    };
    for (const Case& c : cases) {
        Answers answers(times.size());
        EXPECT_EQ(errorText<ArgumentError>([&] { c.call(answers); }), c.message);
        EXPECT_EQ(answers.valid, std::vector<std::uint8_t>(times.size(), 42)) << c.message;
        EXPECT_EQ(answers[GnssColumn::height], std::vector<double>(times.size(), 42.0)) << c.message;
    }

    // Empty answers for no times; empty output columns are simply not written.
    EXPECT_NO_THROW(table.at({}, weekScale, GnssColumns{}));
    EXPECT_NO_THROW(table.at(times, weekScale, GnssColumns{}));
}

TEST(GnssTableCovariance, SignedRootsBecomeCovariancesInTheFileFrame)
{
    const auto cov = GnssSolutionTable::covarianceFromSignedRoots(2.0, 3.0, 0.5, -1.5, 0.25, -0.0);
    EXPECT_EQ(cov, (GNSS::CovarianceElements{4.0, -2.25, -0.0, 9.0, 0.0625, 0.25}));
    EXPECT_TRUE(std::signbit(cov.xz));

    // First line: sdvn sdve sdvu sdvne sdveu sdvun = 0.16444 0.15162 0.36839 0.09271 0.13494 0.12615.
    const auto crescent = GnssSolutionTable::load(refData("rtklib/spp_vel_crescent.pos"));
    EXPECT_EQ(crescent.velocityCovariance(0),
              GnssSolutionTable::covarianceFromSignedRoots(0.16444, 0.15162, 0.36839, 0.09271, 0.13494, 0.12615));
    // Without velocities, no velocity covariance.
    const auto novel = GnssSolutionTable::load(refData("rtklib/spp_novel_crescent.pos"));
    EXPECT_TRUE(std::isnan(novel.velocityCovariance(0).xx));
    EXPECT_EQ(novel.positionCovariance(0), crescent.positionCovariance(0));
}

TEST(GnssTableFiles, SeveralFilesOfACampaignMergeByTime)
{
    TemporaryDirectory folder;
    std::string first = gnssHeader;
    std::string second = gnssHeader;
    for (int i = 0; i < 10; ++i) {
        (i < 6 ? first : second) += syntheticLine(36000.0 + i);
    }
    const auto early = folder.write("early.pos", first);
    const auto late = folder.write("late.pos", second);
    const auto whole = GnssSolutionTable::load(folder.write("whole.pos", first + second.substr(gnssHeader.size())));
    const std::vector<std::filesystem::path> paths{late, early};
    const auto merged = GnssSolutionTable::load(paths);

    ASSERT_EQ(merged.size(), 10U);
    EXPECT_TRUE(std::ranges::equal(merged.gpsTime(), whole.gpsTime()));
    EXPECT_TRUE(std::ranges::equal(merged.column(GnssColumn::sdvun), whole.column(GnssColumn::sdvun)));
    ASSERT_EQ(merged.files().size(), 2U);
    EXPECT_EQ(merged.files()[0].path, early);
    EXPECT_EQ(merged.files()[1].path, late);
    EXPECT_EQ(merged.files()[1].firstRow, 6U);
    EXPECT_EQ(merged.files()[1].rowCount, 4U);

    // Overlapping files and files of different columns are refused, naming the file.
    const auto overlap = folder.write("overlap.pos", gnssHeader + syntheticLine(36005.0) + syntheticLine(36010.0));
    const auto noVelocity = folder.write(
        "novel.pos", "%  GPST latitude(deg) longitude(deg) height(m) Q ns sdn(m) sde(m) sdu(m) sdne(m) sdeu(m) sdun(m) "
                     "age(s) ratio\n2244 36020.000 1 2 3 1 9 0.1 0.1 0.1 0 0 0 0 0\n");
    const std::vector<std::pair<std::vector<std::filesystem::path>, std::string>> refused{
        {{early, overlap},
         overlap.string() + ": overlaps " + early.string()
             + ": its first solution, at GPS week 2244 36005.000000 s, is not after that file's last, at GPS week "
               "2244 36005.000000 s"},
        {{early, noVelocity}, noVelocity.string() + ": its velocity columns differ from those of " + early.string()},
    };
    for (const auto& [files, message] : refused) {
        EXPECT_EQ(errorText<FileFormatError>([&] { GnssSolutionTable::load(files); }), message);
    }
}

} // namespace
} // namespace Kelvo::Geodesy::Batch
