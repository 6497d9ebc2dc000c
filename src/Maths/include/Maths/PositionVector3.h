// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/MathsExport.h"

#include <iosfwd>

namespace Kelvo::Maths {

class Matrix3;

/// Three doubles x, y, z: a position, a velocity or any 3-vector, in whatever frame and unit
/// its user says. The components are public; the accessors exist for symmetry with the
/// family's other types.
class PositionVector3 {
public:
    constexpr PositionVector3() = default;
    constexpr PositionVector3(double x, double y, double z)
        : x(x)
        , y(y)
        , z(z)
    {
    }

    constexpr double getX() const { return x; }
    constexpr double getY() const { return y; }
    constexpr double getZ() const { return z; }
    constexpr void setX(double value) { x = value; }
    constexpr void setY(double value) { y = value; }
    constexpr void setZ(double value) { z = value; }

    constexpr PositionVector3 operator+(const PositionVector3& o) const { return {x + o.x, y + o.y, z + o.z}; }
    constexpr PositionVector3 operator-(const PositionVector3& o) const { return {x - o.x, y - o.y, z - o.z}; }
    constexpr PositionVector3 operator*(double factor) const { return {x * factor, y * factor, z * factor}; }

    /// matrix x this (defined in Matrix3.h).
    constexpr PositionVector3 transformWith(const Matrix3& matrix) const;

    /// True when all three components are zero (either sign).
    constexpr bool isNull() const { return x == 0.0 && y == 0.0 && z == 0.0; }

    constexpr bool operator==(const PositionVector3&) const = default;

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// Writes "(x, y, z)" with the stream's current number format.
KELVO_MATHS_EXPORT std::ostream& operator<<(std::ostream& stream, const PositionVector3& vector);

} // namespace Kelvo::Maths

#include "Maths/Matrix3.h"
