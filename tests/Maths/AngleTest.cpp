// SPDX-License-Identifier: MIT
#include "Maths/Degree.h"
#include "Maths/Radian.h"

#include <gtest/gtest.h>

#include <numbers>
#include <utility>

namespace Kelvo::Maths {
namespace {

using namespace Literals;

TEST(Angle, DegreesAndRadiansConvertBothWays)
{
    constexpr double pi = std::numbers::pi;
    const std::pair<double, double> cases[] = {
        {0.0, 0.0}, {180.0, pi}, {-90.0, -pi / 2}, {45.0, pi / 4}, {720.0, 4 * pi}};
    for (const auto& [degrees, radians] : cases) {
        EXPECT_DOUBLE_EQ(Degree(degrees).toRadian(), radians) << degrees;
        EXPECT_DOUBLE_EQ(Radian(Degree(degrees)), radians) << degrees;
        EXPECT_DOUBLE_EQ(Radian(radians).toDegree(), degrees) << degrees;
        EXPECT_DOUBLE_EQ(Degree(Radian(radians)), degrees) << degrees;
    }
}

TEST(Angle, LiteralsAndOperatorsReadAsInBoundChecksAndNeverWrap)
{
    const Degree lat(84.0);
    EXPECT_TRUE(lat <= +84.0_deg);
    EXPECT_FALSE(lat < 84_deg);
    EXPECT_TRUE(lat >= -80.0_deg);
    EXPECT_EQ(*(-lat), -84.0);
    EXPECT_DOUBLE_EQ(Degree(357.0) / Degree(6.0), 59.5);

    Degree lon(-3.0);
    lon += 360.0_deg;
    EXPECT_EQ(*lon, 357.0);
    *lon = 1.5;
    EXPECT_EQ(static_cast<double>(lon), 1.5);

    // Radian arithmetic never wraps either.
    Radian angle(3.0);
    EXPECT_EQ(static_cast<double>(angle + 1.0), 4.0);
    EXPECT_EQ(static_cast<double>(Radian(1.0) - Radian(4.5)), -3.5);
    angle += Radian(4.0);
    EXPECT_EQ(static_cast<double>(angle), 7.0);
    angle -= Radian(1.0);
    angle /= 4.0;
    EXPECT_EQ(static_cast<double>(angle), 1.5);
}

} // namespace
} // namespace Kelvo::Maths
