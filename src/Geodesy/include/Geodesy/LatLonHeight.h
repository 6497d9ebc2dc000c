// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/PositionVector3.h"
#include "Maths/Radian.h"

#include <cstddef>

namespace Kelvo::Geodesy {

/// A geodetic position on the WGS84 ellipsoid: latitude and longitude [rad], ellipsoidal
/// height [m]. A plain value: no operator wraps or clamps the angles, and division by zero
/// is left to IEEE arithmetic.
class LatLonHeight {
public:
    LatLonHeight() = default;
    LatLonHeight(Maths::Radian latitude, Maths::Radian longitude, double height)
        : latitude(latitude)
        , longitude(longitude)
        , height(height)
    {
    }

    /// The raw component differences (rad, rad, m), not a distance.
    Maths::PositionVector3 operator-(const LatLonHeight& other) const
    {
        return {latitude - other.latitude, longitude - other.longitude, height - other.height};
    }

    /// Adds (latitude [rad], longitude [rad], height [m]) offsets.
    LatLonHeight operator+(const Maths::PositionVector3& offset) const
    {
        return {latitude + offset.x, longitude + offset.y, height + offset.z};
    }

    LatLonHeight& operator+=(const LatLonHeight& other)
    {
        latitude += other.latitude;
        longitude += other.longitude;
        height += other.height;
        return *this;
    }

    LatLonHeight& operator-=(const LatLonHeight& other)
    {
        latitude -= other.latitude;
        longitude -= other.longitude;
        height -= other.height;
        return *this;
    }

    /// Divides every component by `count`; used to average a sum of positions.
    LatLonHeight& operator/=(std::size_t count)
    {
        const auto divisor = static_cast<double>(count);
        latitude /= divisor;
        longitude /= divisor;
        height /= divisor;
        return *this;
    }

    /// The same position with the height negated.
    LatLonHeight oppositeHeight() const { return {latitude, longitude, -height}; }

    bool operator==(const LatLonHeight& other) const
    {
        return latitude == other.latitude && longitude == other.longitude && height == other.height;
    }

    Maths::Radian latitude;
    Maths::Radian longitude;
    double height = 0.0;
};

} // namespace Kelvo::Geodesy
