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

TEST(LatLonHeight, ArithmeticIsRawComponentWise)
{
    EXPECT_EQ(llh(1, 2, 3) - llh(0.5, 0.5, 1), PositionVector3(0.5, 1.5, 2));
    // Nothing wraps: a longitude beyond pi stays there, and -3.1 to +3.1 is a 6.2 rad step.
    EXPECT_EQ(llh(0, 0, 0) + PositionVector3(0, 4, 0), llh(0, 4, 0));
    EXPECT_NEAR((llh(0, 3.1, 0) - llh(0, -3.1, 0)).y, 6.2, 1e-15);

    LatLonHeight value = llh(1, 2, 3);
    value += llh(1, 1, 1);
    EXPECT_EQ(value, llh(2, 3, 4));
    value -= llh(0.5, 0.5, 0.5);
    EXPECT_EQ(value, llh(1.5, 2.5, 3.5));
    value /= std::size_t{5};
    EXPECT_EQ(value, llh(0.3, 0.5, 0.7));

    // Dividing by zero is left to IEEE arithmetic.
    value = llh(1, 0, -1);
    value /= std::size_t{0};
    EXPECT_EQ(value.latitude, std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(value.longitude));
    EXPECT_EQ(value.height, -std::numeric_limits<double>::infinity());
}

TEST(LatLonHeight, OppositeHeightNegatesOnlyTheHeight)
{
    EXPECT_EQ(llh(0.1, 0.2, 5).oppositeHeight(), llh(0.1, 0.2, -5.0));
    EXPECT_TRUE(std::signbit(llh(0.1, 0.2, 0.0).oppositeHeight().height));
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
