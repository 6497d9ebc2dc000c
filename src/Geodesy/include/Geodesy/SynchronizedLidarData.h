// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/EchoPulseInformation.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/GeodesyExport.h"
#include "Geodesy/LatLonHeight.h"
#include "Geodesy/SignallingNaN.h"
#include "Maths/EulerAngles.h"
#include "Maths/Matrix3.h"
#include "Maths/PositionVector3.h"
#include "Maths/Radian.h"

#include <cstdint>
#include <optional>

namespace Kelvo::Geodesy {

/// One lidar return with the platform position (latitude, longitude [rad], height [m]) and
/// attitude (roll, pitch, yaw [rad]) at its GPS time. Besides carrying its fields it derives
/// the scan angle: the angle of the target vector in the scanner's y-z plane, measured from
/// +z towards +y, in [-pi, pi]. An undefined angle (a zero y-z vector) is an empty result;
/// subnormal or NaN components and an angle outside [-pi, pi] are reported through
/// CoreAssert and the computed value is returned anyway.
class KELVO_GEODESY_EXPORT SynchronizedLidarData {
public:
    SynchronizedLidarData() = default;
    SynchronizedLidarData(const Maths::PositionVector3& targetVector, const LatLonHeight& position,
                          const Maths::EulerAngles& attitude, const GPSTime& gpsTime, double measuredValue,
                          std::uint32_t firstIndex, std::uint32_t secondIndex,
                          std::optional<std::uint32_t> optionalIndex,
                          std::optional<EchoPulseInformation> echoPulseInformation);

    /// The scan angle [rad] of matrix x targetVector (the matrix takes the scanner frame to
    /// the frame the angle is wanted in, e.g. a mounting rotation). +pi/2 and -pi/2 on the
    /// y axis; -pi, never +pi, straight down the -z axis. Empty when y and z are both zero.
    std::optional<Maths::Radian> getScanAngle(const Maths::Matrix3& matrix) const;

    /// The scan angle of the target vector as it stands (identity matrix).
    std::optional<Maths::Radian> getComputedScanAngle() const;

    /// getScanAngle(matrix) minus the platform roll [rad]; not wrapped back into [-pi, pi].
    /// Empty when the scan angle is.
    std::optional<Maths::Radian> getScanAngleRollCompensated(const Maths::Matrix3& matrix) const;

    /// Target vector in the scanner frame; only y and z enter the scan angle.
    Maths::PositionVector3 targetVector;
    LatLonHeight position;
    Maths::EulerAngles attitude;
    /// Seconds of week default to a signalling NaN: a record that holds no time yet.
    GPSTime gpsTime{SIGNALLING_NAN(), std::uint64_t{0}};
    double measuredValue = SIGNALLING_NAN();
    std::uint32_t firstIndex = 0;
    std::uint32_t secondIndex = 0;
    std::optional<std::uint32_t> optionalIndex;
    std::optional<EchoPulseInformation> echoPulseInformation;

};

} // namespace Kelvo::Geodesy
