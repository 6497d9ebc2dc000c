// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include "Maths/Interval.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace Kelvo::Maths {
namespace {

using Testing::AssertionRecorder;
using Testing::assertText;
using ::testing::ElementsAre;

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(Interval, StartsEmptySoThatTheFirstValueSetsBothBounds)
{
    Interval<double> interval;
    EXPECT_EQ(interval.data, std::make_pair(infinity, -infinity));
    EXPECT_FALSE(interval.isValid());

    for (const double value : {5.0, 3.0, 9.0, 4.0}) {
        interval.expand(value);
    }
    EXPECT_EQ(interval, Interval<double>(3.0, 9.0));
    EXPECT_TRUE(interval.isValid());
    EXPECT_FALSE(Interval<double>(2.0, 2.0).isValid());
}

TEST(Interval, ExpandAcceptsZeroAndInfinitiesButReportsNanAndSubnormals)
{
    Interval<double> interval;
    interval.expand(0.0);
    interval.expand(-infinity);
    AssertionRecorder recorder;
    interval.expand(std::numeric_limits<double>::quiet_NaN());
    interval.expand(1e-310);
    const auto report = assertText("std::isnormal( v ) || std::isinf( v ) || v == 0");
    ASSERT_THAT(recorder.messages(), ElementsAre(report, report));
    EXPECT_EQ(recorder.records()[0].file, "src/Maths/include/Maths/Interval.h");
    EXPECT_EQ(interval, Interval<double>(-infinity, 1e-310));
}

TEST(Interval, SetUpperReportsABoundNotAboveTheLowerOneAndSetsItAnyway)
{
    Interval<double> interval(10.0, 20.0);
    interval.setUpper(15.0);
    EXPECT_EQ(interval.data.second, 15.0);

    AssertionRecorder recorder;
    interval.setUpper(10.0);
    EXPECT_THAT(recorder.messages(), ElementsAre(assertText("v > data.first")));
    EXPECT_EQ(interval.data.second, 10.0);
}

} // namespace
} // namespace Kelvo::Maths
