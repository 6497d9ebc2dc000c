// SPDX-License-Identifier: MIT
#include "Maths/Matrix3.h"
#include "Maths/PositionVector3.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Kelvo::Maths {
namespace {

TEST(Matrix3, MultipliesAColumnVectorRowByRow)
{
    const Matrix3 m(1, 2, 3, 4, 5, 6, 7, 8, 10);
    EXPECT_EQ(m * PositionVector3(1, -1, 2), PositionVector3(5, 11, 19));
    EXPECT_EQ(PositionVector3(1, -1, 2).transformWith(m), PositionVector3(5, 11, 19));
    EXPECT_EQ(m.at(2, 1), 8.0);
    EXPECT_EQ(m.transposed(), Matrix3(1, 4, 7, 2, 5, 8, 3, 6, 10));
    EXPECT_EQ(Matrix3::identity() * PositionVector3(4, 5, 6), PositionVector3(4, 5, 6));
    EXPECT_EQ(Matrix3() * PositionVector3(4, 5, 6), PositionVector3());
}

TEST(PositionVector3, ArithmeticNullTestAndText)
{
    const PositionVector3 a(1, 2, 3);
    EXPECT_EQ(a + PositionVector3(1, 1, 1), PositionVector3(2, 3, 4));
    EXPECT_EQ(a - PositionVector3(1, 1, 1), PositionVector3(0, 1, 2));
    EXPECT_EQ(a * 2.0, PositionVector3(2, 4, 6));
    EXPECT_TRUE(PositionVector3().isNull());
    EXPECT_TRUE(PositionVector3(-0.0, 0.0, -0.0).isNull());
    EXPECT_FALSE(PositionVector3(0, 0, 1e-300).isNull());

    std::ostringstream text;
    text << PositionVector3(1.5, -2, 0);
    EXPECT_EQ(text.str(), "(1.5, -2, 0)");
}

} // namespace
} // namespace Kelvo::Maths
