// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include "Geodesy/GPSTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace Kelvo::Geodesy {
namespace {

using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::neverText;
using ::testing::ElementsAre;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(GPSTime, AnIntegerSecondArgumentIsAWeekNumberAndADoubleOneAuxiliarySeconds)
{
    const GPSTime withWeek(12.5, 2086u);
    EXPECT_EQ(withWeek.weekNumber, 2086u);
    EXPECT_EQ(withWeek.auxiliarySeconds, 0.0);
    const GPSTime withAuxiliary(12.5, 3.25);
    EXPECT_EQ(withAuxiliary.weekNumber, 0u);
    EXPECT_EQ(withAuxiliary.auxiliarySeconds, 3.25);
    EXPECT_EQ(static_cast<double>(withAuxiliary), 12.5);
    EXPECT_EQ(GPSTime::timeReference(), TimeReference::week);
}

TEST(GPSTime, ComparesTheSecondsOfWeekAloneWithIeeeSemantics)
{
    const struct { double left, right; bool equal, notEqual, less, lessOrEqual, greater, greaterOrEqual; } cases[] = {
        {100.0, 100.0, true, false, false, true, false, true},  {99.5, 100.0, false, true, true, true, false, false},
        {100.0, 99.5, false, true, false, false, true, true},   {nan, 100.0, false, false, false, false, false, false},
        {100.0, nan, false, false, false, false, false, false}, {nan, nan, false, false, false, false, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.left << " vs " << c.right);
        // Different week numbers never matter.
        const GPSTime left(c.left, 5u);
        const GPSTime right(c.right, 7u);
        EXPECT_EQ(left == right, c.equal);
        EXPECT_EQ(left != right, c.notEqual);
        EXPECT_EQ(left < right, c.less);
        EXPECT_EQ(left <= right, c.lessOrEqual);
        EXPECT_EQ(left > right, c.greater);
        EXPECT_EQ(left >= right, c.greaterOrEqual);
    }
}

TEST(GPSTime, SubtractionGivesWholeSecondsTruncatedTowardZeroAndReportsOverflow)
{
    const std::tuple<double, double, std::int64_t> cases[] = {{10.5, 3.0, 7},         {3.0, 10.5, -7},
                                                              {0.9, 0.0, 0},          {0.0, 0.9, 0},
                                                              {604799.0, 1.0, 604798}, {1.0, 604799.0, -604798}};
    for (const auto& [left, right, seconds] : cases) {
        EXPECT_EQ((GPSTime(left, 0u) - GPSTime(right, 0u)).count(), seconds) << left << " - " << right;
    }
    // Beyond a 32-bit int, the narrowing reports and saturates.
    AssertionRecorder recorder;
    EXPECT_EQ((GPSTime(3e9, 0u) - GPSTime(0.0, 0u)).count(), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ((GPSTime(-3e9, 0u) - GPSTime(0.0, 0u)).count(), std::numeric_limits<std::int32_t>::min());
    ASSERT_THAT(recorder.messages(), ElementsAre(assertText("value <= std::numeric_limits< D >::max()"),
                                                 assertText("value >= std::numeric_limits< D >::min()")));
    EXPECT_EQ(recorder.records()[0].file, "src/Utils/include/Utils/SafeCast.h");
}

TEST(GPSTime, ToUtcInBothReferencesAndAtCompileTime)
{
    EXPECT_EQ(GPSTime(18.0, 0u).toUtc(TimeReference::week), 0.0);
    EXPECT_EQ(GPSTime(86418.0, 0u).toUtc(TimeReference::day), 0.0);
    EXPECT_EQ(GPSTime(3 * 86400.0 + 3618.5, 0u).toUtc(TimeReference::day), 3600.5);
    for (const double seconds : {18.0, 1000.0, 86418.0, 400825.0013129992}) {
        const GPSTime time(seconds, 0u);
        EXPECT_EQ(time.toUtc<TimeReference::week>(), time.toUtc(TimeReference::week));
        EXPECT_EQ(time.toUtc<TimeReference::day>(), time.toUtc(TimeReference::day));
    }

    // An unknown reference reports twice and gives a signalling NaN.
    AssertionRecorder recorder;
    const double unknown = GPSTime(100.0, 0u).toUtc(static_cast<TimeReference>(7));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(unknown), 0x7FF0000000000001u);
    ASSERT_THAT(recorder.messages(),
                ElementsAre(neverText("Unexpected Kelvo::Geodesy::TimeReference enum-class value."),
                            neverText("Unmanaged Kelvo::Geodesy::TimeReference enum-class value: undefined behavior!")));
    EXPECT_EQ(recorder.records()[0].file, "src/Geodesy/src/Geodesy/GPSTime.cpp");
}

} // namespace
} // namespace Kelvo::Geodesy
