// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/Degree.h"

#include <numbers>

namespace Kelvo::Maths {

/// An angle in radians. Construction from a plain double is explicit; reading it as a
/// double is implicit. No operation wraps the value.
class Radian {
public:
    constexpr Radian() = default;
    constexpr explicit Radian(double radians)
        : value(radians)
    {
    }
    constexpr explicit Radian(const Degree& degrees)
        : value(degrees.toRadian())
    {
    }

    constexpr operator double() const { return value; }

    /// The same angle in degrees.
    constexpr Degree toDegree() const { return Degree(value * 180.0 / std::numbers::pi); }

    constexpr Radian operator+(double radians) const { return Radian(value + radians); }
    constexpr Radian operator-(const Radian& other) const { return Radian(value - other.value); }
    constexpr Radian operator-() const { return Radian(-value); }

    constexpr Radian& operator+=(const Radian& other)
    {
        value += other.value;
        return *this;
    }
    constexpr Radian& operator-=(const Radian& other)
    {
        value -= other.value;
        return *this;
    }
    constexpr Radian& operator/=(double divisor)
    {
        value /= divisor;
        return *this;
    }

private:
    double value = 0.0;
};

inline Degree::Degree(const Radian& radians)
    : Degree(radians.toDegree())
{
}

} // namespace Kelvo::Maths
