// SPDX-License-Identifier: MIT
#include "support/TrajectoryFiles.h"

#include "Geodesy/ApxRaw/Writer.h"
#include "Geodesy/Sbet/Writer.h"

namespace Kelvo::Testing {

Geodesy::Trajectory::Record syntheticRecord(double t)
{
    return {Geodesy::Trajectory::Record::Status::VALID, t,
            0.5 + 1e-8 * t, -2.0 + 2e-8 * t, 100.0 + 1e-3 * t, // latitude, longitude [rad], height [m]
            10.0 + 1e-5 * t, -5.0 + 2e-5 * t, 0.25 + 3e-5 * t, // velocity [m/s]
            0.01 + 1e-7 * t, -0.02 + 2e-7 * t, 1.0 + 1e-6 * t, 0.03 + 3e-7 * t, // roll, pitch, heading, wander [rad]
            0.1 + 1e-4 * t, -0.2 + 2e-4 * t, 9.8 + 3e-4 * t, // force [m/s^2]
            0.001 + 1e-9 * t, -0.002 + 2e-9 * t, 0.003 + 3e-9 * t}; // angular rate [rad/s]
}

std::vector<Geodesy::Trajectory::Record> syntheticTrajectory(double start, double step, std::size_t count)
{
    std::vector<Geodesy::Trajectory::Record> records;
    for (std::size_t i = 0; i < count; ++i) {
        records.push_back(syntheticRecord(start + step * static_cast<double>(i)));
    }
    return records;
}

std::string sbetBytes(const std::vector<Geodesy::Trajectory::Record>& records)
{
    return writtenBytes<Geodesy::Sbet::Writer>(records);
}

Geodesy::ApxRaw::RawRecord syntheticRawRecord(std::uint32_t timeOfWeek, std::uint8_t alignmentStatus,
                                              std::uint8_t solutionFlag)
{
    const double t = timeOfWeek / 1000.0;
    const auto f = [t](double a, double b) { return static_cast<float>(a + b * t); };
    return {timeOfWeek, alignmentStatus, solutionFlag,
            45.0 + 1e-6 * t, 7.0 + 2e-6 * t, 300.0 + 1e-3 * t, // latitude, longitude [deg], height [m]
            {f(1.0, 1e-5), f(-2.0, 2e-5), f(0.5, 3e-5)},
            1.0 + 1e-5 * t, -2.0 + 2e-5 * t, 90.0 + 1e-4 * t, // roll, pitch, heading [deg]
            {f(0.1, 1e-6), f(-0.2, 2e-6), f(0.3, 3e-6)},
            {f(0.01, 1e-7), f(-0.02, 2e-7), f(9.81, 3e-7)}};
}

std::string apxRawBytes(const std::vector<Geodesy::ApxRaw::RawRecord>& records)
{
    return writtenBytes<Geodesy::ApxRaw::Writer>(records);
}

std::array<double, 17> valuesOf(const Geodesy::Trajectory::Record& r)
{
    return {r.time,        r.latitude, r.longitude, r.height,       r.velocityX,    r.velocityY,
            r.velocityZ,   r.roll,     r.pitch,     r.heading,      r.wanderAngle,  r.forceX,
            r.forceY,      r.forceZ,   r.angularRateX, r.angularRateY, r.angularRateZ};
}

std::array<double, 10> valuesOf(const Geodesy::Smrmsg::Record& r)
{
    return {r.time,           r.northPositionRms, r.eastPositionRms, r.downPositionRms, r.northVelocityRms,
            r.eastVelocityRms, r.downVelocityRms, r.rollRms,         r.pitchRms,        r.headingRms};
}

} // namespace Kelvo::Testing
