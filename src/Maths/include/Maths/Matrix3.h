// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/PositionVector3.h"

#include <array>

namespace Kelvo::Maths {

/// A 3x3 matrix of doubles stored row by row; all zeros by default.
class Matrix3 {
public:
    constexpr Matrix3() = default;
    constexpr Matrix3(double m00, double m01, double m02, double m10, double m11, double m12, double m20,
                      double m21, double m22)
        : elements{m00, m01, m02, m10, m11, m12, m20, m21, m22}
    {
    }

    static constexpr Matrix3 identity() { return {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}; }

    constexpr double& at(unsigned row, unsigned column) { return elements[row * 3 + column]; }
    constexpr double at(unsigned row, unsigned column) const { return elements[row * 3 + column]; }

    constexpr Matrix3 transposed() const
    {
        return {at(0, 0), at(1, 0), at(2, 0), at(0, 1), at(1, 1), at(2, 1), at(0, 2), at(1, 2), at(2, 2)};
    }

    /// The matrix times the column vector v.
    constexpr PositionVector3 operator*(const PositionVector3& v) const
    {
        return {at(0, 0) * v.x + at(0, 1) * v.y + at(0, 2) * v.z, at(1, 0) * v.x + at(1, 1) * v.y + at(1, 2) * v.z,
                at(2, 0) * v.x + at(2, 1) * v.y + at(2, 2) * v.z};
    }

    constexpr bool operator==(const Matrix3&) const = default;

private:
    std::array<double, 9> elements{};
};

constexpr PositionVector3 PositionVector3::transformWith(const Matrix3& matrix) const
{
    return matrix * *this;
}

} // namespace Kelvo::Maths
