// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GNSS/GnssData.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/GeodesyExport.h"
#include "Maths/EulerAngles.h"
#include "Maths/PositionVector3.h"

#include <cmath>
#include <cstdint>
#include <iosfwd>
#include <optional>

namespace Kelvo::Geodesy {

/// One inertial sample paired with the GNSS solution of the same GPS time: specific forces
/// [m/s^2] and angular rates [rad/s] as the IMU delivers them, an optional magnetometer
/// reading (sensor unit; a null vector means no reading) and an optional attitude (roll,
/// pitch, yaw [rad]). A plain value: nothing is checked when it is built or copied. The
/// default record has NaN seconds of week and must be filled before it is printed.
struct KELVO_GEODESY_EXPORT SynchronizedGnssImuData {
    SynchronizedGnssImuData() = default;
    SynchronizedGnssImuData(const GPSTime& gpsTime, const GNSS::GnssData& gnssData,
                            const Maths::PositionVector3& specificForces, const Maths::PositionVector3& angularRates,
                            const Maths::PositionVector3& magnetometer,
                            const std::optional<Maths::EulerAngles>& attitude);

    GPSTime gpsTime{std::nan(""), std::uint64_t{0}};
    /// The GNSS solution for this sample; its own time may differ from `gpsTime`.
    GNSS::GnssData gnssData;
    Maths::PositionVector3 specificForces;
    Maths::PositionVector3 angularRates;
    Maths::PositionVector3 magnetometer;
    std::optional<Maths::EulerAngles> attitude;
};

/// Writes a multi-line report of the record: GPS time (seconds and week), the GNSS solution
/// (latitude and longitude [deg], the stored height [m], velocity, position and velocity
/// covariances as xx xy xz yy yz zz) and the IMU values, the magnetometer line only for a
/// non-null reading and the attitude line only when one is known. The stream is left with
/// showpos, fixed and precision 18 set, so every number carries a sign and 18 decimals.
/// Seconds of week that are neither normal nor zero (NaN, infinite, subnormal) are reported
/// through CoreAssert; the report is written anyway.
KELVO_GEODESY_EXPORT std::ostream& operator<<(std::ostream& stream, const SynchronizedGnssImuData& syncData);

} // namespace Kelvo::Geodesy
