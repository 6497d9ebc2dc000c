// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include "Utils/SafeCast.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

namespace Kelvo::Utils {
namespace {

using Testing::AssertionRecorder;
using Testing::assertText;

const std::string aboveMax = assertText("value <= std::numeric_limits< D >::max()");
const std::string belowMin = assertText("value >= std::numeric_limits< D >::min()");

TEST(SafeCast, DoubleToInt32TruncatesTowardZeroAndReportsOverflow)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::tuple<double, std::int32_t, std::vector<std::string>> cases[] = {
        {7.9, 7, {}},
        {-7.9, -7, {}},
        {-0.5, 0, {}},
        {2147483647.0, 2147483647, {}},
        {2147483647.75, 2147483647, {aboveMax}},
        {2147483648.0, std::numeric_limits<std::int32_t>::max(), {aboveMax}},
        {-2147483648.0, std::numeric_limits<std::int32_t>::min(), {}},
        {-2147483648.5, std::numeric_limits<std::int32_t>::min(), {belowMin}},
        {-1e300, std::numeric_limits<std::int32_t>::min(), {belowMin}},
        {nan, 0, {aboveMax, belowMin}},
    };
    for (const auto& [value, expected, reports] : cases) {
        AssertionRecorder recorder;
        EXPECT_EQ(safeCast<std::int32_t>(value), expected) << value;
        EXPECT_EQ(recorder.messages(), reports) << value;
    }
}

TEST(SafeCast, UnsignedToSignedReportsValuesAboveTheSignedMaximum)
{
    const std::string report = assertText("value <= static_cast< U >( std::numeric_limits< S >::max() )");
    EXPECT_EQ(safeCast<std::int32_t>(std::uint64_t{2147483647}), 2147483647);
    AssertionRecorder recorder;
    EXPECT_EQ(safeCast<std::int32_t>(std::uint64_t{2147483648}), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(safeCast<std::int64_t>(std::numeric_limits<std::uint64_t>::max()),
              std::numeric_limits<std::int64_t>::max());
    ASSERT_EQ(recorder.messages(), (std::vector<std::string>{report, report}));
    EXPECT_EQ(recorder.records()[0].file, "src/Utils/include/Utils/SafeCast.h");
}

} // namespace
} // namespace Kelvo::Utils
