// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include "Geodesy/SynchronizedLidarData.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using Maths::EulerAngles;
using Maths::Matrix3;
using Maths::PositionVector3;
using Maths::Radian;
using Testing::assertText;

constexpr double pi = std::numbers::pi;

SynchronizedLidarData withTarget(PositionVector3 target, double roll = 0.0)
{
    return {target, {}, EulerAngles(Radian(roll), Radian(0), Radian(0)), GPSTime(1.0, 0u), 0.0, 0, 0, {}, {}};
}

std::optional<double> angle(std::optional<Radian> radian)
{
    return radian ? std::optional<double>(*radian) : std::nullopt;
}

TEST(SynchronizedLidarData, DefaultsAndConstructorArguments)
{
    const SynchronizedLidarData unset;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(unset.gpsTime.secondsInWeek), 0x7ff0000000000001u);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(unset.measuredValue), 0x7ff0000000000001u);
    EXPECT_FALSE(unset.optionalIndex || unset.echoPulseInformation);

    const SynchronizedLidarData set({}, {}, {}, GPSTime(7.5, 2086u), 8.5, 9u, 10u, 11u,
                                    EchoPulseInformation{12, 13, 14});
    EXPECT_EQ(set.gpsTime.weekNumber, 2086u);
    EXPECT_EQ(set.measuredValue, 8.5);
    EXPECT_EQ(std::vector<std::uint32_t>({set.firstIndex, set.secondIndex, *set.optionalIndex}),
              std::vector<std::uint32_t>({9, 10, 11}));
    EXPECT_EQ(set.echoPulseInformation, (EchoPulseInformation{12, 13, 14}));
}

TEST(SynchronizedLidarData, ScanAngleGoesRoundAllFourQuadrantsAndIsExactOnTheAxes)
{
    for (int degrees = -179; degrees <= 180; ++degrees) {
        const double expected = degrees * pi / 180.0;
        const PositionVector3 target(0, 3 * std::sin(expected), 3 * std::cos(expected));
        EXPECT_NEAR(*withTarget(target).getComputedScanAngle(), expected, 1e-14) << degrees;
    }
    const std::pair<PositionVector3, std::optional<double>> axes[] = {
        {{5, 0, 0}, std::nullopt}, {{5, 1, 0}, pi / 2}, {{5, -1, 0}, -pi / 2}, {{5, 0, 1}, 0.0}, {{5, 0, -1}, -pi},
        {{5, -0.0, -1}, -pi},  // atan2 would give +pi for a positive zero
        {{5, 1e-300, -1}, pi}, // just below pi, which rounds to pi
    };
    for (const auto& [target, expected] : axes) {
        EXPECT_EQ(angle(withTarget(target).getComputedScanAngle()), expected) << target.y << ", " << target.z;
    }
}

TEST(SynchronizedLidarData, ScanAnglesRotateTheTargetFirstAndSubtractTheRollWithoutWrapping)
{
    // Not symmetric: the target's x becomes y, so applying the transpose gives other angles.
    constexpr Matrix3 xIntoY(0, 0, 0, 1, 0, 0, 0, 0, 1);
    EXPECT_NEAR(*withTarget({2, 0, -2}).getScanAngle(xIntoY), 3 * pi / 4, 1e-15);
    EXPECT_FALSE(withTarget({0, 2, 0}).getScanAngle(xIntoY));
    // Rotating the boresight +30 deg about x turns it 30 deg towards -y.
    const double c = std::cos(pi / 6);
    const double s = std::sin(pi / 6);
    EXPECT_NEAR(*withTarget({0, 0, 1}).getScanAngle({1, 0, 0, 0, c, -s, 0, s, c}), -pi / 6, 1e-15);

    const Matrix3 identity = Matrix3::identity();
    EXPECT_NEAR(*withTarget({0, std::sin(0.5), std::cos(0.5)}, 0.1).getScanAngleRollCompensated(identity), 0.4, 1e-15);
    EXPECT_NEAR(*withTarget({0, 1, -1}, -1.0).getScanAngleRollCompensated(identity), 3 * pi / 4 + 1.0, 1e-15);
    EXPECT_NEAR(*withTarget({1, 0, 1}, 0.25).getScanAngleRollCompensated(xIntoY), pi / 4 - 0.25, 1e-15);
    EXPECT_FALSE(withTarget({0, 0, 0}, 0.25).getScanAngleRollCompensated(identity));
}

TEST(SynchronizedLidarData, ScanAngleReportsSubnormalAndNaNComponents)
{
    const std::string yCheck = assertText("usedTargetVector.y == 0.0 || std::isnormal(usedTargetVector.y )");
    const std::string zCheck = assertText("usedTargetVector.z == 0.0 || std::isnormal(usedTargetVector.z )");
    const std::string normalCheck = assertText("scanAngle == 0.0 || std::isnormal( scanAngle )");
    const std::string rangeCheck = assertText("scanAngle >= -M_PI && scanAngle <= +M_PI");
    struct Case {
        double y, z;
        std::vector<std::string> messages;
    };
    const Case cases[] = {
        {1e-310, 1, {yCheck, normalCheck}}, // the angle is as subnormal as y
        {1e-310, -1, {yCheck}},
        {1, 1e-310, {zCheck}}, // y / z overflows to +inf: +pi/2
        // 0 x NaN is NaN: through the matrix a NaN spreads to every component.
        {std::nan(""), 1, {yCheck, zCheck, normalCheck, rangeCheck}},
    };
    for (const auto& c : cases) {
        Testing::AssertionRecorder recorder;
        (void)withTarget({0, c.y, c.z}).getComputedScanAngle();
        EXPECT_EQ(recorder.messages(), c.messages) << c.y << ", " << c.z;
        EXPECT_EQ(recorder.records().at(0).file, "src/Geodesy/src/Geodesy/SynchronizedLidarData.cpp");
    }
}

} // namespace
} // namespace Kelvo::Geodesy
