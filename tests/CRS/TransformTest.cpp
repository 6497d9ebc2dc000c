// SPDX-License-Identifier: MIT
#include "CRS/Transform.h"

#include <gtest/gtest.h>

namespace Kelvo::CRS {
namespace {

TEST(Transform, RunsItsFunctionIfAnyWithTheStepAndCopiesWithIt)
{
    ConvertStep seen{};
    const Transform shift(Transform::GEOGRAPHIC_DEGREES_KIND,
                          [&seen](const Maths::PositionVector3& position, ConvertStep step) {
                              seen = step;
                              return position + Maths::PositionVector3(0.5, -0.5, 10.0);
                          });
    const Transform copy(shift);
    EXPECT_EQ(copy.getKind(), 1);
    EXPECT_EQ(copy.convert({45.0, 7.0, 100.0}, ConvertStep::geographicDegrees), Maths::PositionVector3(45.5, 6.5, 110.0));
    EXPECT_EQ(seen, ConvertStep::geographicDegrees);

    // Without a function the position comes back unchanged.
    const Transform identity(7, nullptr);
    EXPECT_EQ(identity.getKind(), 7);
    EXPECT_EQ(identity.convert({1, 2, 3}, ConvertStep::geographicDegrees), Maths::PositionVector3(1, 2, 3));
}

} // namespace
} // namespace Kelvo::CRS
