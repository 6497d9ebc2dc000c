// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include "Geodesy/GPSTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using Testing::AssertionRecorder;
using Testing::assertText;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using namespace std::chrono;

// A UTC instant worked out from the calendar, independently of the code under test.
struct CalendarTime {
    year_month_day date;
    seconds timeOfDay;

    std::int64_t unixSeconds() const
    {
        return duration_cast<seconds>(sys_days(date).time_since_epoch()).count() + timeOfDay.count();
    }
    // Sunday = 0, as GPS and UTC weeks start on Sunday.
    std::int64_t secondsOfUtcWeek() const
    {
        return weekday(sys_days(date)).c_encoding() * 86400 + timeOfDay.count();
    }
};

// GPS weeks whose start is a matter of record: the GPS epoch and the two week-number
// rollovers (GPS time 1999-08-22 00:00 and 2019-04-07 00:00), plus later dates whose week was
// published in GPS calendars. With the library's fixed 18 s offset the GPS time of the UTC
// instant is the week start plus 18 s plus the time into the week.
// secondsIntoWeek: UTC seconds since the start of that GPS week's Sunday.
struct KnownWeek { CalendarTime utc; std::int64_t week; std::int64_t secondsIntoWeek; };

const std::vector<KnownWeek> knownWeeks = {
    {{1980y / January / 6, 0s}, 0, 0},
    {{1999y / August / 22, 0s}, 1024, 0},
    {{2019y / April / 7, 0s}, 2048, 0},
    {{2020y / January / 1, 0s}, 2086, 3 * 86400},
    {{2024y / June / 24, hours(8) + minutes(20)}, 2320, 86400 + 8 * 3600 + 20 * 60},
    {{2038y / November / 20, hours(23) + minutes(59) + 30s}, 3071, 6 * 86400 + 86370},
};

TEST(TimeConversions, GpsTimeOfCalendarDatesWithKnownWeeks)
{
    for (const auto& [utc, week, secondsIntoWeek] : knownWeeks) {
        const auto unix = static_cast<double>(utc.unixSeconds());
        const double gpsSecondsOfWeek = static_cast<double>(secondsIntoWeek) + 18.0;
        EXPECT_EQ(utcSecsOfEpochToGpsTime(unix), static_cast<double>(week) * 604800.0 + gpsSecondsOfWeek) << week;
        EXPECT_EQ(utcSecsOfEpochToGpsWeek(unix), gpsSecondsOfWeek) << week;
        EXPECT_EQ(utcSecsOfEpochToSecsOfWeek(unix), static_cast<double>(utc.secondsOfUtcWeek())) << week;
    }
}

TEST(TimeConversions, WeekAndDayReductionsAroundTheUnixEpochAndBeyondAWeek)
{
    // The Unix epoch fell on a Thursday; the Sunday after it began 259200 s later.
    EXPECT_EQ(utcSecsOfEpochToSecsOfWeek(0.0), 345600.0);
    EXPECT_EQ(utcSecsOfEpochToSecsOfWeek(259200.0), 0.0);
    EXPECT_EQ(secsOfWeekToSecsOfDay(604799.5), 86399.5);
    EXPECT_EQ(secsOfWeekToSecsOfDay(2 * 604800.0 + 10.0), 10.0);
    EXPECT_EQ(utcSecsOfWeekToSecsOfDay(86400.0 * 3 + 5.0), 5.0);
}

TEST(TimeConversions, RoundTripsAndDecompositionsOverDecades)
{
    // From just after GPS adjusted time 0 (2011-09-14) to 2100, every 37 days and a bit, with
    // a fraction of a second that doubles hold exactly.
    const auto first = sys_days(2011y / September / 15).time_since_epoch();
    const auto last = sys_days(2100y / January / 1).time_since_epoch();
    int checked = 0;
    for (auto t = duration_cast<seconds>(first); t < last; t += seconds(37 * 86400 + 3917)) {
        const double utc = static_cast<double>(t.count()) + 0.375;
        const std::int64_t gps = t.count() - 315964800 + 18;
        EXPECT_EQ(utcSecsOfEpochToGpsTime(utc), static_cast<double>(gps) + 0.375);
        EXPECT_EQ(utcSecsOfEpochToGpsWeek(utc), static_cast<double>(gps % 604800) + 0.375);
        EXPECT_EQ(utcSecsOfEpochToGpsAdjustedTime(utc), static_cast<double>(gps - 1000000000) + 0.375);
        EXPECT_EQ(gpsAdjustedTimeToUtcSecsOfEpoch(utcSecsOfEpochToGpsAdjustedTime(utc)), utc);
        const double gpsSecondsOfWeek = static_cast<double>(gps % 604800) + 0.375;
        const double utcSecondsOfDay = static_cast<double>(t.count() % 86400) + 0.375;
        if (gpsSecondsOfWeek >= 18.0 && utcSecondsOfDay < 86382.0) {
            EXPECT_EQ(gpsSecsOfWeekToUtcSecsOfDay(gpsSecondsOfWeek), utcSecondsOfDay);
        }
        ++checked;
    }
    EXPECT_GT(checked, 800);
}

TEST(TimeConversions, NegativeInputsAreReportedAndStillConverted)
{
    const std::tuple<double (*)(double), double, double, std::vector<std::string>> cases[] = {
        {utcToGps, -1.0, 17.0, {assertText("seconds >= 0.0")}},
        {gpsToUtc, -1.0, -19.0, {assertText("seconds >= 0.0")}},
        {secsOfWeekToSecsOfDay, -86401.0, -1.0, {assertText("secs >= 0.0"), assertText("result >= 0.0")}},
        {gpsAdjustedTimeToUtcSecsOfEpoch, 0.0, 1315964782.0, {assertText("gpsAdjusted > 0")}},
    };
    for (const auto& [function, argument, result, reports] : cases) {
        AssertionRecorder recorder;
        EXPECT_EQ(function(argument), result) << argument;
        ASSERT_THAT(recorder.messages(), ElementsAreArray(reports)) << argument;
        EXPECT_EQ(recorder.records()[0].file, "src/Geodesy/src/Geodesy/GPSTime.cpp");
    }
    // UTC before the GPS epoch, and before GPS adjusted time 0.
    AssertionRecorder recorder;
    utcSecsOfEpochToGpsTime(0.0);
    utcSecsOfEpochToGpsAdjustedTime(315964800.0);
    EXPECT_THAT(recorder.messages(),
                ElementsAre(assertText("seconds >= 0.0"), assertText("result >= 0"), assertText("result > 0")));
}

TEST(TimeConversions, GpsSecondsOfWeekToUtcSecondsOfDayReportsItsDesignedEdges)
{
    const std::string fmodCheck = assertText("result == std::fmod( utcSecsOfWeek, SECONDS_IN_DAY() )");
    const std::string upperCheck = assertText("result < SECONDS_IN_DAY() - GPS_LEAP_SECONDS()");
    const std::tuple<double, double, std::vector<std::string>> cases[] = {
        {86418.0, 0.0, {}},
        {18.0, 0.0, {}},
        {604799.0, 86381.0, {}},
        {86399.0, 86381.0, {}},
        {86400.0, 86382.0, {upperCheck}}, // the last 18 s of a UTC day
        {86417.5, 86399.5, {upperCheck}},
        {10.0, 86392.0, {fmodCheck, upperCheck}}, // the first 18 s of a GPS week
        {604800.0, 86382.0, {assertText("gpsSecsOfWeek < SECONDS_IN_WEEK()"), upperCheck}},
    };
    for (const auto& [gps, utc, reports] : cases) {
        AssertionRecorder recorder;
        EXPECT_EQ(gpsSecsOfWeekToUtcSecsOfDay(gps), utc) << gps;
        EXPECT_THAT(recorder.messages(), ElementsAreArray(reports)) << gps;
    }
}

TEST(TimeConversions, WeekIntervalMembershipWrapsOverTheEndOfTheWeek)
{
    // Interval, time, inside, before. Outside the interval, the half of the gap from its middle
    // to the interval's start counts as before it (for 100..200 the middle is 302550).
    const std::tuple<double, double, double, bool, bool> cases[] = {
        {100, 200, 200, true, false},      {100, 200, 100, true, false},      {100, 200, 99.999, false, true},
        {100, 200, 250, false, false},     {100, 200, 50, false, true},       {100, 200, 600000, false, true},
        {100, 200, 302549, false, false},  {100, 200, 302550, false, true},   {1000, 2000, 500, false, true},
        {1000, 2000, 2500, false, false},  {1000, 2000, 1000, true, false},
        // Wrapped intervals; equal bounds count as wrapped: the whole week.
        {604000, 100, 604500, true, false}, {604000, 100, 50, true, false},     {604000, 100, 300, false, false},
        {604000, 100, 302050, false, true}, {604000, 100, 603999, false, true}, {500, 500, 500, true, true},
        {500, 500, 7, true, true},
    };
    for (const auto& [first, second, time, inside, before] : cases) {
        SCOPED_TRACE(::testing::Message() << first << ".." << second << " @ " << time);
        EXPECT_EQ(isInGpsWeekInterval(Maths::Interval<double>(first, second), time), inside);
        EXPECT_EQ(isBeforeGpsWeekInterval(Maths::Interval<double>(first, second), time), before);
    }
}

TEST(TimeConversions, UtcIntervalToGpsWeekWrapsOrCoversTheWholeWeek)
{
    const double weekStart = 315964800.0 + 604800.0 * 2100 - 18.0; // GPS second 0 of week 2100
    const std::tuple<double, double, Maths::Interval<double>> cases[] = {
        {weekStart + 10, weekStart + 70, {10, 70}},      {weekStart + 70, weekStart + 10, {10, 70}},
        {weekStart - 30, weekStart + 30, {604770, 30}},  {weekStart, weekStart + 604800, {0, 604800}},
        {weekStart + 604800.5, weekStart, {0, 604800}},
    };
    for (const auto& [first, second, expected] : cases) {
        EXPECT_EQ(utcSecsOfEpochIntervalToGpsWeek({first, second}), expected) << first << ".." << second;
    }
}

} // namespace
} // namespace Kelvo::Geodesy
