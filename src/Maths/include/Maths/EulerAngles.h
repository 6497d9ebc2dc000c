// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/MathsExport.h"
#include "Maths/Radian.h"

#include <iosfwd>

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
    EulerAngles interpolate(const EulerAngles& other, double k) const;

    bool operator==(const EulerAngles& other) const
    {
        return roll == other.roll && pitch == other.pitch && yaw == other.yaw;
    }

private:
    Radian roll;
    Radian pitch;
    Radian yaw;
};

/// Writes "(roll, pitch, yaw)" in radians with the stream's current number format.
KELVO_MATHS_EXPORT std::ostream& operator<<(std::ostream& stream, const EulerAngles& angles);

} // namespace Kelvo::Maths
