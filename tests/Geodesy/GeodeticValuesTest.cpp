// SPDX-License-Identifier: MIT
#include "Geodesy/AffineTransformationParameters.h"
#include "Geodesy/ECEF.h"
#include "Geodesy/LatLonHeight.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace Kelvo::Geodesy {
namespace {

using Maths::PositionVector3;
using Maths::Radian;

LatLonHeight llh(double latitude, double longitude, double height)
{
    return {Radian(latitude), Radian(longitude), height};
}

TEST(LatLonHeight, DifferenceAndSumAreRawComponentWise)
{
    EXPECT_EQ(llh(1, 2, 3) - llh(0.5, 0.5, 1), PositionVector3(0.5, 1.5, 2));
    // Nothing wraps: a longitude beyond pi stays there, and -3.1 to +3.1 is a 6.2 rad step.
    EXPECT_EQ(llh(0, 0, 0) + PositionVector3(0, 4, 0), llh(0, 4, 0));
    EXPECT_NEAR((llh(0, 3.1, 0) - llh(0, -3.1, 0)).y, 6.2, 1e-15);

    LatLonHeight sum = llh(1, 2, 3);
    sum += llh(1, 1, 1);
    EXPECT_EQ(sum, llh(2, 3, 4));
    sum -= llh(0.5, 0.5, 0.5);
    EXPECT_EQ(sum, llh(1.5, 2.5, 3.5));
}

TEST(LatLonHeight, DivisionAveragesAndLeavesZeroToIeee)
{
    LatLonHeight sum = llh(3, 6, 9);
    sum /= std::size_t{3};
    EXPECT_EQ(sum, llh(1, 2, 3));

    LatLonHeight byZero = llh(1, 0, -1);
    byZero /= std::size_t{0};
    EXPECT_EQ(byZero.latitude, std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(byZero.longitude));
    EXPECT_EQ(byZero.height, -std::numeric_limits<double>::infinity());
}

TEST(LatLonHeight, OppositeHeightNegatesOnlyTheHeight)
{
    const LatLonHeight opposite = llh(0.1, 0.2, 0.0).oppositeHeight();
    EXPECT_EQ(opposite.latitude, 0.1);
    EXPECT_EQ(opposite.longitude, 0.2);
    EXPECT_TRUE(std::signbit(opposite.height));
    EXPECT_EQ(llh(0.1, 0.2, 5).oppositeHeight().height, -5.0);
}

TEST(ECEF, ArithmeticAndRotation)
{
    const ECEF a(1, 2, 3);
    EXPECT_EQ(a - ECEF(1, 1, 1), ECEF(0, 1, 2));
    EXPECT_EQ(a + PositionVector3(1, 1, 1), ECEF(2, 3, 4));
    EXPECT_EQ(a.ecef2PositionVector3(), PositionVector3(1, 2, 3));
    // A quarter turn about z: x to y.
    const Maths::Matrix3 rotation(0, -1, 0, 1, 0, 0, 0, 0, 1);
    EXPECT_EQ(a.transformWith(rotation), PositionVector3(-2, 1, 3));
}

TEST(AffineTransformationParameters, DefaultsToIdentityAndSumsPartWise)
{
    const AffineTransformationParameters identity;
    EXPECT_EQ(identity.rotation, Maths::EulerAngles(Radian(0), Radian(0), Radian(0)));
    EXPECT_EQ(identity.translation, PositionVector3(0, 0, 0));

    const AffineTransformationParameters a({Radian(0.1), Radian(0.2), Radian(0.3)}, {1, 2, 3});
    const AffineTransformationParameters sum = a + a;
    EXPECT_EQ(sum.rotation, Maths::EulerAngles(Radian(0.2), Radian(0.4), Radian(0.6)));
    EXPECT_EQ(sum.translation, PositionVector3(2, 4, 6));
}

} // namespace
} // namespace Kelvo::Geodesy
