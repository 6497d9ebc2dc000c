// SPDX-License-Identifier: MIT
#include "Maths/EulerAngles.h"

#include <cmath>
#include <numbers>
#include <ostream>

namespace Kelvo::Maths {
namespace {

constexpr double pi = std::numbers::pi;
constexpr double twoPi = 2.0 * std::numbers::pi;

// Into [-pi, pi); values already there are returned untouched, bit for bit.
double wrap(double angle)
{
    if (angle >= -pi && angle < pi) {
        return angle;
    }
    return angle - twoPi * std::floor((angle + pi) / twoPi);
}

double interpolateAngle(double from, double to, double k)
{
    double difference = to - from;
    if (difference > pi || difference < -pi) {
        difference = std::remainder(difference, twoPi);
    }
    return wrap(from + difference * k);
}

} // namespace

EulerAngles EulerAngles::interpolate(const EulerAngles& other, double k) const
{
    return {Radian(interpolateAngle(roll, other.roll, k)), Radian(interpolateAngle(pitch, other.pitch, k)),
            Radian(interpolateAngle(yaw, other.yaw, k))};
}

std::ostream& operator<<(std::ostream& stream, const EulerAngles& angles)
{
    return stream << '(' << static_cast<double>(angles.getRoll()) << ", " << static_cast<double>(angles.getPitch())
                  << ", " << static_cast<double>(angles.getYaw()) << ')';
}

} // namespace Kelvo::Maths
