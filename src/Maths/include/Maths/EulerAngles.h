// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/MathsExport.h"
#include "Maths/Radian.h"

#include <cmath>
#include <iosfwd>
#include <numbers>

namespace Kelvo::Maths {

/// An attitude as roll, pitch and yaw angles [rad].
class KELVO_MATHS_EXPORT EulerAngles {
public:
    EulerAngles() = default;
    EulerAngles(Radian roll, Radian pitch, Radian yaw)
        : roll(roll)
        , pitch(pitch)
        , yaw(yaw)
    {
    }

    Radian getRoll() const { return roll; }
    Radian getPitch() const { return pitch; }
    Radian getYaw() const { return yaw; }
    void setRoll(Radian value) { roll = value; }
    void setPitch(Radian value) { pitch = value; }
    void setYaw(Radian value) { yaw = value; }

    /// Angle-wise sum, unwrapped.
    EulerAngles operator+(const EulerAngles& other) const
    {
        return {Radian(roll + other.roll), Radian(pitch + other.pitch), Radian(yaw + other.yaw)};
    }

    /// The attitude at fraction k from this (k = 0) towards `other` (k = 1). Each angle moves
    /// along the shorter arc and the result is wrapped into [-pi, pi), so a heading going
    /// from +179 deg to -179 deg passes through 180 deg, not through 0.
    /// Inline: position/attitude lookups blend millions of attitudes.
    EulerAngles interpolate(const EulerAngles& other, double k) const
    {
        return {Radian(interpolateAngle(roll, other.roll, k)), Radian(interpolateAngle(pitch, other.pitch, k)),
                Radian(interpolateAngle(yaw, other.yaw, k))};
    }

    bool operator==(const EulerAngles& other) const
    {
        return roll == other.roll && pitch == other.pitch && yaw == other.yaw;
    }

    /// One angle of `interpolate`: from `from` (k = 0) towards `to` (k = 1) [rad] along the
    /// shorter arc, wrapped into [-pi, pi). Public for callers that blend angle columns.
    static double interpolateAngle(double from, double to, double k)
    {
        constexpr double pi = std::numbers::pi;
        double difference = to - from;
        if (difference > pi || difference < -pi) {
            difference = std::remainder(difference, 2.0 * pi);
        }
        return wrap(from + difference * k);
    }

private:
    // Into [-pi, pi); values already there are returned untouched, bit for bit.
    static double wrap(double angle)
    {
        constexpr double pi = std::numbers::pi;
        if (angle >= -pi && angle < pi) {
            return angle;
        }
        return angle - 2.0 * pi * std::floor((angle + pi) / (2.0 * pi));
    }

    Radian roll;
    Radian pitch;
    Radian yaw;
};

/// Writes "(roll, pitch, yaw)" in radians with the stream's current number format.
KELVO_MATHS_EXPORT std::ostream& operator<<(std::ostream& stream, const EulerAngles& angles);

} // namespace Kelvo::Maths
