// SPDX-License-Identifier: MIT
#include "Geodesy/SynchronizedLidarData.h"

#include "Utils/CoreAssert.h"

#include <cmath>
#include <numbers>

namespace Kelvo::Geodesy {

SynchronizedLidarData::SynchronizedLidarData(const Maths::PositionVector3& targetVector, const LatLonHeight& position,
                                             const Maths::EulerAngles& attitude, const GPSTime& gpsTime,
                                             double measuredValue, std::uint32_t firstIndex, std::uint32_t secondIndex,
                                             std::optional<std::uint32_t> optionalIndex,
                                             std::optional<EchoPulseInformation> echoPulseInformation)
    : targetVector(targetVector)
    , position(position)
    , attitude(attitude)
    , gpsTime(gpsTime)
    , measuredValue(measuredValue)
    , firstIndex(firstIndex)
    , secondIndex(secondIndex)
    , optionalIndex(optionalIndex)
    , echoPulseInformation(echoPulseInformation)
{
}

std::optional<Maths::Radian> SynchronizedLidarData::getScanAngle(const Maths::Matrix3& matrix) const
{
    constexpr double pi = std::numbers::pi;
    const Maths::PositionVector3 usedTargetVector = matrix * targetVector;
    CORE_ASSERT(usedTargetVector.y == 0.0 || std::isnormal(usedTargetVector.y ));
    CORE_ASSERT(usedTargetVector.z == 0.0 || std::isnormal(usedTargetVector.z ));
    const double y = usedTargetVector.y;
    const double z = usedTargetVector.z;

    if (z == 0.0) {
        if (y == 0.0) {
            return std::nullopt;
        }
        return Maths::Radian(std::copysign(1.0, y) * pi / 2.0);
    }

    // The four-quadrant angle of (z, y), as atan2(y, z) gives it except on the -z axis: there
    // y <= 0 takes the negative half-turn, so a return straight behind the scanner is -pi
    // whatever the sign of its zero y.
    double scanAngle = std::atan(y / z);
    if (z < 0.0) {
        scanAngle += y > 0.0 ? pi : -pi;
    }
    CORE_ASSERT(scanAngle == 0.0 || std::isnormal( scanAngle ));
    CORE_ASSERT(scanAngle >= -M_PI && scanAngle <= +M_PI);
    return Maths::Radian(scanAngle);
}

std::optional<Maths::Radian> SynchronizedLidarData::getComputedScanAngle() const
{
    return getScanAngle(Maths::Matrix3::identity());
}

std::optional<Maths::Radian> SynchronizedLidarData::getScanAngleRollCompensated(const Maths::Matrix3& matrix) const
{
    const auto scanAngle = getScanAngle(matrix);
    if (!scanAngle) {
        return std::nullopt;
    }
    return *scanAngle - attitude.getRoll();
}

} // namespace Kelvo::Geodesy
