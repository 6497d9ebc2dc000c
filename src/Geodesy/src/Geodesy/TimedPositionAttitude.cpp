// SPDX-License-Identifier: MIT
#include "Geodesy/TimedPositionAttitude.h"

#include "Utils/CoreAssert.h"

#include <cmath>
#include <numbers>

namespace Kelvo::Geodesy {

std::unique_ptr<TimedPositionAttitude> TimedPositionAttitude::fromSbet(const Trajectory::Record& record,
                                                                       const std::unique_ptr<CRS::Transform>& transform)
{
    constexpr double pi = std::numbers::pi;

    // The record's rates are turned about the vertical by the wander angle into north and
    // east axes; z counts up, so down is its opposite.
    const double cosWander = std::cos(record.wanderAngle);
    const double sinWander = std::sin(record.wanderAngle);
    const Maths::PositionVector3 angularRate(record.angularRateX * cosWander - record.angularRateY * sinWander,
                                             -record.angularRateX * sinWander - record.angularRateY * cosWander,
                                             -record.angularRateZ);

    // The platform heading counts from the wander azimuth: minus the wander angle it is the
    // true heading. The difference is kept as it is, unwrapped.
    const Maths::EulerAngles attitude(Maths::Radian(record.roll), Maths::Radian(record.pitch),
                                      Maths::Radian(record.heading - record.wanderAngle));

    LatLonHeight position(Maths::Radian(record.latitude), Maths::Radian(record.longitude), record.height);
    if (transform && transform->getKind() == CRS::Transform::GEOGRAPHIC_DEGREES_KIND) {
        // Transforms of this kind work in degrees and metres.
        const Maths::PositionVector3 degrees(record.latitude * 180.0 / pi, record.longitude * 180.0 / pi,
                                             record.height);
        const Maths::PositionVector3 converted = transform->convert(degrees, CRS::ConvertStep::geographicDegrees);
        position = LatLonHeight(Maths::Radian(converted.x * pi / 180.0), Maths::Radian(converted.y * pi / 180.0),
                                converted.z);
    }

    return allocate(GPSTime(record.time, 0.0), position, attitude, angularRate, record.status);
}

std::unique_ptr<TimedPositionAttitude> TimedPositionAttitude::interpolate(const TimedPositionAttitude& a,
                                                                          const TimedPositionAttitude& b, double k,
                                                                          double auxiliarySeconds)
{
    CORE_ASSERT(a.status != Trajectory::Record::INVALID);
    CORE_ASSERT(b.status != Trajectory::Record::INVALID);
    // Records that are not VALID (an IMU not yet aligned) are never blended.
    if (a.status != Trajectory::Record::VALID || b.status != Trajectory::Record::VALID) {
        return nullptr;
    }
    return blendValid(a, b, k, auxiliarySeconds);
}

} // namespace Kelvo::Geodesy
