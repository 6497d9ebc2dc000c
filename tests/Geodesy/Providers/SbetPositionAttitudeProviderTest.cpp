// SPDX-License-Identifier: MIT
#include "ProviderTestSupport.h"

#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/SbetPositionAttitudeProvider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using namespace ProviderTesting;
using Maths::Situation;
using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::EventRecorder;
using Testing::LoopbackServer;
using Testing::TemporaryDirectory;
using ::testing::Contains;

template <typename Reader>
using Provider = SbetPositionAttitudeProvider<Reader>;

Maths::IntervalCounter counts(std::uint64_t lower, std::uint64_t inside, std::uint64_t upper)
{
    Maths::IntervalCounter counter;
    counter[Situation::lower] = lower;
    counter[Situation::inside] = inside;
    counter[Situation::upper] = upper;
    return counter;
}

// 81 records an eighth of a second apart, from GPS 100000 s of week (Monday 03:46:40): every
// record time and every request below is exact in binary, in both scales.
class SbetProvider : public ::testing::Test {
protected:
    static constexpr double START = 100000.0;
    static constexpr double STEP = 0.125;

    void SetUp() override { CountingSbetReader::reset(); }
    double timeOf(std::size_t index) const { return records.at(index).time; }

    TemporaryDirectory folder;
    std::vector<Trajectory::Record> records = Testing::syntheticTrajectory(START, STEP, 81);
    Core::FileInfo file{folder.write("run.sbet", Testing::sbetBytes(records))};
};

enum class Variant { week, day };

// The same behaviour through both lookups: UTC seconds since the Unix epoch in the week
// starting at WEEK_START, or UTC seconds of the day.
class SbetProviderLookup : public SbetProvider, public ::testing::WithParamInterface<Variant> {
protected:
    template <typename Reader>
    std::unique_ptr<TimedPositionAttitude> ask(Provider<Reader>& provider, double gps, Maths::IntervalCounter& counter)
    {
        return GetParam() == Variant::week ? byEpoch(provider)(gps, counter) : byDay(provider)(gps, counter);
    }

    // The GPS second of week that the request of ask() stands for, as rounded on the way.
    double askedGps(double gps) const
    {
        if (GetParam() == Variant::week) {
            return epochSecondsOf(gps) - WEEK_START + 18.0;
        }
        return std::fmod(gps - 18.0, 86400.0) + std::floor((gps - 18.0) / 86400.0) * 86400.0 + 18.0;
    }

    void expectAnswer(const std::unique_ptr<TimedPositionAttitude>& value, double gps)
    {
        expectValue(value.get(), expectedAt(records, askedGps(gps)));
    }
};

INSTANTIATE_TEST_SUITE_P(Both, SbetProviderLookup, ::testing::Values(Variant::week, Variant::day),
                         [](const auto& info) { return info.param == Variant::week ? "week" : "day"; });

TEST_P(SbetProviderLookup, IncreasingRequestsReadEachRecordOnceAndRequestsBehindCurrentReadNothing)
{
    Provider<CountingSbetReader> provider(file, nullptr, anyAlignment);
    EXPECT_EQ(CountingSbetReader::records, 2u) << "the first two records";

    // About twenty requests per record, as lidar time stamps come.
    Maths::IntervalCounter counter;
    const std::size_t requests = 20 * (records.size() - 1);
    const double last = timeOf(records.size() - 1);
    for (std::size_t i = 0; i <= requests; ++i) {
        const double gps = START + (last - START) * static_cast<double>(i) / static_cast<double>(requests);
        const auto value = ask(provider, gps, counter);
        ASSERT_NE(value, nullptr) << gps;
        expectAnswer(value, gps);
        // The week lookup carries the GPS adjusted time of the request: GPS seconds since
        // 1980-01-06 minus 1e9.
        const double adjusted = epochSecondsOf(gps) - 315964800.0 + 18.0 - 1e9;
        EXPECT_NEAR(value->time.auxiliarySeconds, GetParam() == Variant::week ? adjusted : 0.0, 1e-6);
    }
    EXPECT_EQ(CountingSbetReader::records, records.size());
    EXPECT_EQ(CountingSbetReader::rewinds, 1u) << "only the one of construction";
    EXPECT_EQ(counter, counts(0, requests + 1, 0));

    // A request at a record's time stops with that record as `next`: after the last one,
    // `current` is the record before it. Between that one and `current`: answered from memory.
    EXPECT_EQ(provider.getCurrent()->time.secondsInWeek, timeOf(79));
    for (const double gps : {timeOf(78) + 0.001, timeOf(78) + 0.1, timeOf(79) - 1e-6}) {
        expectAnswer(ask(provider, gps, counter), gps);
    }
    EXPECT_EQ(CountingSbetReader::records, records.size());
    EXPECT_EQ(CountingSbetReader::rewinds, 1u);
}

TEST_P(SbetProviderLookup, ABackwardRequestBeyondTheBracketRewindsAndReadsTheFileAgain)
{
    // A request exactly at the first record after the rewind is reported too.
    const std::string atFirst = assertText("utcSeconds > current->time.toUtc< TR >()");
    const std::tuple<const char*, std::vector<double>, double, std::vector<std::string>> cases[] = {
        {"exactly at previous", {START + 1.0, START + 1.5}, START + 1.25, {}},
        {"before previous", {START + 1.0, START + 1.5}, START + 1.2, {}},
        {"exactly at the first record", {START + 1.0}, START, {atFirst}},
    };
    for (const auto& [name, before, request, reports] : cases) {
        SCOPED_TRACE(name);
        CountingSbetReader::reset();
        Provider<CountingSbetReader> provider(file, nullptr, anyAlignment);
        Maths::IntervalCounter counter;
        for (const double gps : before) {
            ask(provider, gps, counter);
        }
        const auto readBefore = CountingSbetReader::records;

        AssertionRecorder recorder;
        EventRecorder events;
        expectAnswer(ask(provider, request, counter), request);
        EXPECT_EQ(recorder.messages(), reports);
        EXPECT_EQ(CountingSbetReader::rewinds, 2u);
        ASSERT_EQ(events.entries().size(), 1u);
        EXPECT_EQ(events.entries()[0].first, (Core::Event::LoggingEventInfo{1, 24, 23}));
        // Read again from the first record up to the bracket of the request.
        const auto upper = static_cast<std::uint64_t>(std::ceil((request - START) / STEP));
        EXPECT_EQ(CountingSbetReader::records, readBefore + std::max<std::uint64_t>(upper, 1) + 1);
        EXPECT_EQ(counter, counts(0, before.size() + 1, 0));
    }
}

TEST_P(SbetProviderLookup, TimesOutsideTheFileAreEmptyAndCountedBelowOrAbove)
{
    Provider<Sbet::Reader> provider(file, nullptr, anyAlignment);
    const double last = timeOf(records.size() - 1);
    expectSteps([&](double gps, auto& counter) { return ask(provider, gps, counter); },
                {{START - 0.001, nullptr, Situation::lower}, {START, &records, Situation::inside},
                 {last, &records, Situation::inside},        {last + 0.001, nullptr, Situation::upper},
                 {START + 5.0, &records, Situation::inside, 1}, {START - 3600.0, nullptr, Situation::lower},
                 {last + 3600.0, nullptr, Situation::upper}});
}

TEST_F(SbetProvider, TheRollingBackMessageGivesBothTimesInTheRequestScaleWithSixDecimals)
{
    Provider<Sbet::Reader> provider(file, nullptr, anyAlignment);
    Maths::IntervalCounter counter;
    provider.getPositionAttitude(epochSecondsOf(START + 1.0), counter);
    provider.getPositionAttitude(epochSecondsOf(START + 1.5), counter);
    EventRecorder events;
    provider.getPositionAttitude(epochSecondsOf(START + 1.2), counter);
    provider.getPositionAttitude(epochSecondsOf(START + 1.5), counter);
    provider.getPositionAttitudeOfDay(START + 1.2 - 18.0 - 86400.0, counter);
    // UTC seconds of the week, then of the day; `current` stood on the record at +1.375.
    ASSERT_EQ(events.entries().size(), 2u);
    EXPECT_EQ(events.entries()[0].second, "Timings are not ordered -> rolling back into SBET: 99983.200000 < 99983.375000");
    EXPECT_EQ(events.entries()[1].second, "Timings are not ordered -> rolling back into SBET: 13583.200000 < 13583.375000");
}

TEST_F(SbetProvider, RequestsThatAreNotNormalNumbersAreReportedFirst)
{
    Provider<Sbet::Reader> provider(file, nullptr, anyAlignment);
    Maths::IntervalCounter counter;
    const std::string notNormal = assertText("std::isnormal( seconds ) || seconds == 0.0");
    for (const double seconds :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e-310}) {
        SCOPED_TRACE(seconds);
        AssertionRecorder recorder;
        provider.getPositionAttitude(seconds, counter);
        provider.getPositionAttitudeOfDay(seconds, counter);
        const auto messages = recorder.messages();
        ASSERT_FALSE(messages.empty());
        EXPECT_EQ(messages[0], notNormal);
        EXPECT_EQ(recorder.records()[0].file, "src/Geodesy/include/Geodesy/SbetPositionAttitudeProvider.h");
        EXPECT_EQ(std::count(messages.begin(), messages.end(), notNormal), 2);
    }
    // Zero is a time like any other: here, below the file.
    counter = {};
    EXPECT_EQ(provider.getPositionAttitudeOfDay(0.0, counter), nullptr);
    EXPECT_EQ(counter, counts(1, 0, 0));
}

TEST(SbetProviderAtTheEndOfAFile, AFileReadToItsEndIsOpenedAgainForTheNextRewind)
{
    // Records at GPS 65535, 65535.5 and 65536 s: a request just after the last record's UTC
    // time of day rounds, once 18 s are added, onto the last record and counts as inside,
    // while the search sees it after that record and reads on to the end of the file.
    TemporaryDirectory folder;
    const auto edge = Testing::syntheticTrajectory(65535.0, 0.5, 3);
    const Core::FileInfo edgeFile(folder.write("edge.sbet", Testing::sbetBytes(edge)));
    const double request = 65518.0 + 0x1p-37;
    ASSERT_EQ(request + 18.0, 65536.0);
    ASSERT_LT(65536.0 - 18.0, request);

    CountingSbetReader::reset();
    Provider<CountingSbetReader> provider(edgeFile, nullptr, anyAlignment);
    Maths::IntervalCounter counter;
    {
        AssertionRecorder recorder;
        provider.getPositionAttitudeOfDay(request, counter);
        EXPECT_THAT(recorder.messages(), Contains(assertText("reader->isRemote() || !reader->endOfFile()")));
    }
    EXPECT_EQ(counter, counts(0, 1, 0));

    // Rewinding would leave the stream at its end; the provider opens the file again.
    EventRecorder events;
    expectValue(provider.getPositionAttitudeOfDay(65517.25, counter).get(), expectedAt(edge, 65535.25));
    EXPECT_EQ(events.entries().size(), 1u);
    EXPECT_EQ(CountingSbetReader::openings, 2u);
    expectValue(provider.getPositionAttitudeOfDay(65517.75, counter).get(), expectedAt(edge, 65535.75));
}

TEST(SbetProviderAroundMidnight, TheWeekLookupCrossesAUtcMidnightWhileTheDayLookupReportsIt)
{
    // Records every half second from UTC Sunday 23:59:59.5 to Monday 00:00:03.5.
    TemporaryDirectory folder;
    const auto records = Testing::syntheticTrajectory(86400.0 + 18.0 - 0.5, 0.5, 9);
    const Core::FileInfo file(folder.write("midnight.sbet", Testing::sbetBytes(records)));
    Provider<Sbet::Reader> week(file, nullptr, anyAlignment);
    expectSteps(byEpoch(week),
                {{86417.75, &records, Situation::inside}, {86418.0, &records, Situation::inside},
                 {86419.25, &records, Situation::inside}});

    // By day, UTC 23:59:59.75 plus 18 s lies past the file's GPS times of day. At 00:00:00.75
    // the first record (UTC 86399.5 of the day before) lies ahead of the request: a rewind,
    // which reports the first two records straddling midnight, then the answer.
    Provider<Sbet::Reader> day(file, nullptr, anyAlignment);
    AssertionRecorder recorder;
    expectSteps(byDay(day), {{86417.75, nullptr, Situation::upper}, {86418.75, &records, Situation::inside, 1}});
    EXPECT_THAT(recorder.messages(), Contains(assertText("next->time.toUtc< TimeReference::day >() > "
                                                         "current->time.toUtc< TimeReference::day >()")));
}

TEST(SbetProviderOverApxRaw, RecordsBeforeTheAlignmentAreNotInterpolated)
{
    // Records every 250 ms from GPS 50000 s; full navigation is required and reached at the
    // fourth record.
    std::vector<ApxRaw::RawRecord> raws;
    for (const std::uint8_t state : {1, 2, 3, 5, 5, 5, 5}) {
        raws.push_back(Testing::syntheticRawRecord(static_cast<std::uint32_t>(50000000 + 250 * raws.size()), state));
    }
    TemporaryDirectory folder;
    const Core::FileInfo file(folder.write("run.stream", Testing::apxRawBytes(raws)));
    ApxRaw::Reader reader(file, Trajectory::Reader::ImuAlignmentStatus::FULL_NAVIGATION);
    const auto records = Testing::readUntilEnd(reader);

    // After the rewind the reader keeps its best alignment: the early records now count as aligned.
    Provider<ApxRaw::Reader> provider(file, nullptr, Trajectory::Reader::ImuAlignmentStatus::FULL_NAVIGATION);
    expectSteps(byEpoch(provider),
                {{50000.125, nullptr, Situation::inside},  {50000.375, nullptr, Situation::inside},
                 {50000.625, nullptr, Situation::inside},  {50000.875, &records, Situation::inside},
                 {50001.125, &records, Situation::inside}, {50001.375, &records, Situation::inside},
                 {50000.125, &records, Situation::inside, 1}});
}

TEST(SbetProviderOverRealFiles, AnswersBetweenTheRecordsOfFilesWrittenByOtherPrograms)
{
    // 200 Hz, airborne: compared with the records read here byte for byte.
    const auto path = Testing::refData("leeward/sbet.out");
    const auto records = readSbetDirectly(path);
    ASSERT_EQ(records.size(), 200u);
    Provider<Sbet::Reader> provider(Core::FileInfo(path), nullptr, anyAlignment);
    Maths::IntervalCounter counter;
    for (std::size_t i = 0; i + 1 < records.size(); i += 7) {
        // Not at a record: a request since the Unix epoch keeps only 0.24 us of its fraction.
        for (const double k : {0.02, 0.3, 0.75}) {
            const double request = epochSecondsOf(records[i].time + k * (records[i + 1].time - records[i].time));
            expectValue(provider.getPositionAttitude(request, counter).get(),
                        expectedAt(records, request - WEEK_START + 18.0));
        }
    }
    // The times leeward's own documentation looks up: one inside, one far outside.
    EventRecorder events;
    EXPECT_NE(provider.getPositionAttitude(epochSecondsOf(400825.80571932), counter), nullptr);
    EXPECT_EQ(provider.getPositionAttitude(epochSecondsOf(600825.80571932), counter), nullptr);
    EXPECT_EQ(counter[Situation::upper], 1u);

    // Two records, 5 ms apart: the midpoint, from the values published with the file.
    Provider<Sbet::Reader> twoPoints(Core::FileInfo(Testing::refData("pdal/2-points.sbet")), nullptr, anyAlignment);
    const double middle = (151631.00283607095 + 151631.00783186406) / 2.0;
    const auto value = twoPoints.getPositionAttitudeOfDay(middle - 18.0 - 86400.0, counter);
    ASSERT_NE(value, nullptr);
    EXPECT_NEAR(value->position.latitude, (0.5680211852972264 + 0.5680211834722869) / 2.0, 1e-12);
    EXPECT_NEAR(value->position.longitude, (-2.04165439230394 + -2.0416543920340526) / 2.0, 1e-12);
    EXPECT_NEAR(value->position.height, (107.71529532965604 + 107.71514243575072) / 2.0, 1e-9);
    EXPECT_NEAR(value->attitude.getYaw(),
                ((3.0467732302786623 - -0.021984147369226575) + (3.0471311052368106 - -0.021984160079321084)) / 2.0,
                1e-9);
}

TEST(SbetProviderOverALiveSource, ReadsAheadAsFarAsAskedButNeverRewinds)
{
    const auto records = Testing::syntheticTrajectory(2000.0, 0.5, 8);
    const auto bytes = Testing::sbetBytes(records);
    LoopbackServer server([&](int socket) { LoopbackServer::send(socket, bytes); });
    Provider<Sbet::Reader> provider(Core::FileInfo::remote("live.sbet", "127.0.0.1", server.port(), 5000), nullptr,
                                    anyAlignment);

    // Inside what has arrived; beyond it (read up to, then counted as inside); behind the
    // bracket (no rewind); between previous and current; before the first record; after the
    // end of the stream; between the last two records.
    expectSteps(byEpoch(provider),
                {{2000.25, &records, Situation::inside}, {2002.25, &records, Situation::inside},
                 {2001.0, nullptr, Situation::inside, 1}, {2001.75, &records, Situation::inside},
                 {1999.0, nullptr, Situation::lower},     {2010.0, nullptr, Situation::upper},
                 {2003.25, &records, Situation::inside}});
    EXPECT_EQ(provider.getTimeInterval(TimeReference::week), Maths::Interval<double>(2000.0, 2003.5));
}

} // namespace
} // namespace Kelvo::Geodesy
