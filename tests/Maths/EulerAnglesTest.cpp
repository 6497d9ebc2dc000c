// SPDX-License-Identifier: MIT
#include "Maths/EulerAngles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

namespace Kelvo::Maths {
namespace {

constexpr double degree = std::numbers::pi / 180.0;

// Distance on the circle, so that -180 and +180 deg agree.
double circularDistanceInDegrees(double radians, double degrees)
{
    return std::abs(std::remainder(radians / degree - degrees, 360.0));
}

EulerAngles anglesInDegrees(double roll, double pitch, double yaw)
{
    return {Radian(roll * degree), Radian(pitch * degree), Radian(yaw * degree)};
}

TEST(EulerAngles, InterpolatesEachAngleAlongTheShorterArcWrappedIntoMinusPiPi)
{
    // From, to, k, expected [deg]; the pitch runs through the opposite angles.
    const struct { double from, to, k, expected; } cases[] = {
        {10.0, 20.0, 0.25, 12.5},
        {179.0, -179.0, 0.5, -180.0},  // across 180 deg: through 180, which wraps to -180
        {179.0, -179.0, 0.25, 179.5},
        {179.0, -179.0, 0.75, -179.5},
        {-170.0, 170.0, 0.25, -175.0}, // across -180 deg the other way
        {-10.0, 10.0, 0.5, 0.0},       // across 0: no wrap involved
        {350.0, 10.0, 0.5, 0.0},       // unwrapped inputs: 350 deg is -10 deg
        {30.0, 30.0, 0.7, 30.0},
    };
    for (const auto& [from, to, k, expected] : cases) {
        SCOPED_TRACE(::testing::Message() << from << " -> " << to << " at " << k);
        const auto result = anglesInDegrees(from, -from, from).interpolate(anglesInDegrees(to, -to, to), k);
        EXPECT_LT(circularDistanceInDegrees(result.getRoll(), expected), 1e-9);
        EXPECT_LT(circularDistanceInDegrees(result.getPitch(), -expected), 1e-9);
        EXPECT_LT(circularDistanceInDegrees(result.getYaw(), expected), 1e-9);
        for (const double angle : {result.getRoll(), result.getPitch(), result.getYaw()}) {
            EXPECT_GE(angle, -std::numbers::pi);
            EXPECT_LT(angle, std::numbers::pi);
        }
    }
}

TEST(EulerAngles, EndsOfTheInterpolationAreTheInputs)
{
    const auto a = anglesInDegrees(1.0, -2.0, 170.0);
    const auto b = anglesInDegrees(3.0, 4.0, -100.0);
    EXPECT_EQ(a.interpolate(b, 0.0), a);
    const auto atEnd = a.interpolate(b, 1.0);
    EXPECT_NEAR(atEnd.getRoll(), b.getRoll(), 1e-15);
    EXPECT_NEAR(atEnd.getPitch(), b.getPitch(), 1e-15);
    EXPECT_NEAR(atEnd.getYaw(), b.getYaw(), 1e-14);
}

TEST(EulerAngles, SumsAndPrints)
{
    const EulerAngles sum = EulerAngles(Radian(0.5), Radian(1), Radian(3)) + EulerAngles(Radian(1), Radian(2), Radian(3));
    EXPECT_EQ(sum, EulerAngles(Radian(1.5), Radian(3), Radian(6)));
    std::ostringstream text;
    text << sum;
    EXPECT_EQ(text.str(), "(1.5, 3, 6)");
}

} // namespace
} // namespace Kelvo::Maths
