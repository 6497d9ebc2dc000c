// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/Matrix3.h"
#include "Maths/PositionVector3.h"

namespace Kelvo::Geodesy {

/// An Earth-centred Earth-fixed position x, y, z [m] on WGS84.
class ECEF {
public:
    ECEF() = default;
    ECEF(double x, double y, double z)
        : x(x)
        , y(y)
        , z(z)
    {
    }

    ECEF operator-(const ECEF& other) const { return {x - other.x, y - other.y, z - other.z}; }
    ECEF operator+(const Maths::PositionVector3& offset) const { return {x + offset.x, y + offset.y, z + offset.z}; }

    Maths::PositionVector3 ecef2PositionVector3() const { return {x, y, z}; }

    /// matrix x (x, y, z).
    Maths::PositionVector3 transformWith(const Maths::Matrix3& matrix) const
    {
        return {matrix.at(0, 0) * x + matrix.at(0, 1) * y + matrix.at(0, 2) * z,
                matrix.at(1, 0) * x + matrix.at(1, 1) * y + matrix.at(1, 2) * z,
                matrix.at(2, 0) * x + matrix.at(2, 1) * y + matrix.at(2, 2) * z};
    }

    bool operator==(const ECEF&) const = default;

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

} // namespace Kelvo::Geodesy
