// SPDX-License-Identifier: MIT
#pragma once

namespace Kelvo::Maths {

/// A point of three coordinates.
template <typename T>
class Point {
public:
    constexpr Point() = default;
    constexpr Point(T x, T y, T z)
        : x(x)
        , y(y)
        , z(z)
    {
    }

    constexpr T getX() const { return x; }
    constexpr T getY() const { return y; }
    constexpr T getZ() const { return z; }
    constexpr void setX(T value) { x = value; }
    constexpr void setY(T value) { y = value; }
    constexpr void setZ(T value) { z = value; }

    constexpr bool operator==(const Point&) const = default;

private:
    T x{};
    T y{};
    T z{};
};

} // namespace Kelvo::Maths
