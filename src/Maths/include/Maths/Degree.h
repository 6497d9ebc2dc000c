// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <numbers>

namespace Kelvo::Maths {

class Radian;

/// An angle in degrees. Construction from a plain double is explicit so that degrees and
/// radians are never mixed up silently; reading it as a double is implicit.
class Degree {
public:
    constexpr Degree() = default;
    constexpr explicit Degree(double degrees)
        : value(degrees)
    {
    }
    explicit Degree(const Radian& radians);

    constexpr operator double() const { return value; }

    /// The same angle in radians.
    constexpr double toRadian() const { return value * std::numbers::pi / 180.0; }

    constexpr double& operator*() { return value; }
    constexpr const double& operator*() const { return value; }

    constexpr Degree operator-() const { return Degree(-value); }
    constexpr Degree operator+() const { return *this; }
    constexpr double operator/(const Degree& other) const { return value / other.value; }

    constexpr Degree& operator+=(const Degree& other)
    {
        value += other.value;
        return *this;
    }

    constexpr auto operator<=>(const Degree&) const = default;

private:
    double value = 0.0;
};

namespace Literals {

constexpr Degree operator""_deg(long double degrees)
{
    return Degree(static_cast<double>(degrees));
}

constexpr Degree operator""_deg(unsigned long long degrees)
{
    return Degree(static_cast<double>(degrees));
}

} // namespace Literals
} // namespace Kelvo::Maths

#include "Maths/Radian.h"
