// SPDX-License-Identifier: MIT
#include "Geodesy/Batch/GnssLeapSeconds.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace Kelvo::Geodesy::Batch {
namespace {

TEST(GnssLeapSeconds, CountsTheLeapSecondsOfTheDateFromItsFirstSecond)
{
    // (year, month, day, second of the day, GPS - UTC) around the first, a middle and the
    // last leap second, from the IERS bulletins.
    const std::vector<std::tuple<int, unsigned, unsigned, int, int>> cases{
        {1980, 1, 6, 0, 0},          {1981, 6, 30, 86399, 0},  {1981, 7, 1, 0, 1},
        {1998, 12, 31, 86399, 12},   {1999, 1, 1, 0, 13},      {2005, 4, 2, 0, 13},
        {2016, 12, 31, 86399, 17},   {2017, 1, 1, 0, 18},      {2023, 1, 8, 36000, 18},
        {1975, 1, 1, 0, 0},
    };
    for (const auto& [year, month, day, second, leap] : cases) {
        EXPECT_EQ(gpsMinusUtc(daysSinceGpsEpoch(year, month, day) * 86400 + second), leap)
            << year << "-" << month << "-" << day << " +" << second << " s";
    }
    // GPS week 1316 began on 2005-03-27, week 2244 on 2023-01-08.
    EXPECT_EQ(daysSinceGpsEpoch(2005, 3, 27), 1316 * 7);
    EXPECT_EQ(daysSinceGpsEpoch(2023, 1, 8), 2244 * 7);
    EXPECT_EQ(daysSinceGpsEpoch(2000, 3, 1) - daysSinceGpsEpoch(2000, 2, 28), 2); // a leap year
    EXPECT_EQ(daysSinceGpsEpoch(2100, 3, 1) - daysSinceGpsEpoch(2100, 2, 28), 1); // not one
}

} // namespace
} // namespace Kelvo::Geodesy::Batch
