// SPDX-License-Identifier: MIT
#include "Geodesy/SynchronizedGnssImuData.h"

#include "Utils/CoreAssert.h"

#include <iomanip>
#include <ostream>

namespace Kelvo::Geodesy {

SynchronizedGnssImuData::SynchronizedGnssImuData(const GPSTime& gpsTime, const GNSS::GnssData& gnssData,
                                                 const Maths::PositionVector3& specificForces,
                                                 const Maths::PositionVector3& angularRates,
                                                 const Maths::PositionVector3& magnetometer,
                                                 const std::optional<Maths::EulerAngles>& attitude)
    : gpsTime(gpsTime)
    , gnssData(gnssData)
    , specificForces(specificForces)
    , angularRates(angularRates)
    , magnetometer(magnetometer)
    , attitude(attitude)
{
}

namespace {

void writeCovariance(std::ostream& stream, const char* name, const GNSS::CovarianceElements& covariance)
{
    stream << "Covariance " << name << " {xx; xy; xz; yy; yz; zz}: {" << covariance.xx << ' ' << covariance.xy << ' '
           << covariance.xz << ' ' << covariance.yy << ' ' << covariance.yz << ' ' << covariance.zz << '}'
           << std::endl;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const SynchronizedGnssImuData& syncData)
{
    CORE_ASSERT(std::isnormal( syncData.gpsTime.secondsInWeek ) || syncData.gpsTime.secondsInWeek == 0.0);

    // Deliberately not restored: whatever the caller writes next shares the report's format.
    stream << std::showpos << std::fixed << std::setprecision(18);

    const GNSS::GnssData& gnss = syncData.gnssData;
    stream << "GPS TIME:----------------------------------------------------- " << std::endl;
    stream << "Week seconds [s]: " << syncData.gpsTime.secondsInWeek << std::endl;
    // Standard libraries differ on whether showpos signs unsigned values; the week is written
    // with its plus explicitly so that it is signed like every other number of the report.
    stream << "Week number: +" << std::noshowpos << syncData.gpsTime.weekNumber << std::showpos << std::endl;
    stream << "GNSS:----------------------------------------------------- " << std::endl;
    stream << "Latitude [deg]: " << static_cast<double>(gnss.position.latitude.toDegree()) << std::endl;
    stream << "Longitude [deg]: " << static_cast<double>(gnss.position.longitude.toDegree()) << std::endl;
    stream << "Height [m]: " << gnss.position.height << std::endl;
    stream << "Velocity [m.s^-1]: " << gnss.velocity << std::endl;
    writeCovariance(stream, "Position", gnss.positionCovariance);
    writeCovariance(stream, "Velocity", gnss.velocityCovariance);
    stream << "IMU:----------------------------------------------------- " << std::endl;
    stream << "Specific forces [m.s^-2]: " << syncData.specificForces << std::endl;
    stream << "Angular rates [rad.s^-1]: " << syncData.angularRates << std::endl;
    if (!syncData.magnetometer.isNull()) {
        stream << "Magnetometer: " << syncData.magnetometer << std::endl;
    }
    if (syncData.attitude) {
        stream << "Attitude [rad]: " << *syncData.attitude << std::endl;
    }
    return stream;
}

} // namespace Kelvo::Geodesy
