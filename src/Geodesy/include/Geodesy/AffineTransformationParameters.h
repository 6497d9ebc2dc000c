// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/EulerAngles.h"
#include "Maths/PositionVector3.h"

namespace Kelvo::Geodesy {

/// A rotation (Euler angles [rad]) followed by a translation [m].
struct AffineTransformationParameters {
    AffineTransformationParameters() = default;
    AffineTransformationParameters(const Maths::EulerAngles& rotation, const Maths::PositionVector3& translation)
        : rotation(rotation)
        , translation(translation)
    {
    }

    /// Sums the rotations angle by angle and the translations component by component.
    AffineTransformationParameters operator+(const AffineTransformationParameters& other) const
    {
        return {rotation + other.rotation, translation + other.translation};
    }

    Maths::EulerAngles rotation{Maths::Radian(0), Maths::Radian(0), Maths::Radian(0)};
    Maths::PositionVector3 translation{0, 0, 0};
};

} // namespace Kelvo::Geodesy
