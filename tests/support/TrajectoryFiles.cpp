// SPDX-License-Identifier: MIT
#include "support/TrajectoryFiles.h"

#include "Geodesy/ApxRaw/Writer.h"
#include "Geodesy/Sbet/Writer.h"

#include <sstream>

namespace Kelvo::Testing {

Geodesy::Trajectory::Record syntheticRecord(double time)
{
    const double t = time;
    return {Geodesy::Trajectory::Record::Status::VALID,
            t,
            0.5 + 1e-8 * t,      // latitude [rad]
            -2.0 + 2e-8 * t,     // longitude [rad]
            100.0 + 1e-3 * t,    // height [m]
            10.0 + 1e-5 * t,     // velocity x [m/s]
            -5.0 + 2e-5 * t,     // velocity y
            0.25 + 3e-5 * t,     // velocity z
            0.01 + 1e-7 * t,     // roll [rad]
            -0.02 + 2e-7 * t,    // pitch
            1.0 + 1e-6 * t,      // heading
            0.03 + 3e-7 * t,     // wander angle
            0.1 + 1e-4 * t,      // force x [m/s^2]
            -0.2 + 2e-4 * t,     // force y
            9.8 + 3e-4 * t,      // force z
            0.001 + 1e-9 * t,    // angular rate x [rad/s]
            -0.002 + 2e-9 * t,   // angular rate y
            0.003 + 3e-9 * t};   // angular rate z
}

std::vector<Geodesy::Trajectory::Record> syntheticTrajectory(double start, double step, std::size_t count)
{
    std::vector<Geodesy::Trajectory::Record> records;
    records.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        records.push_back(syntheticRecord(start + step * static_cast<double>(i)));
    }
    return records;
}

std::string sbetBytes(const std::vector<Geodesy::Trajectory::Record>& records)
{
    std::ostringstream bytes;
    Geodesy::Sbet::Writer writer(bytes);
    for (const auto& record : records) {
        writer.write(record);
    }
    return bytes.str();
}

Geodesy::ApxRaw::RawRecord syntheticRawRecord(std::uint32_t timeOfWeek, std::uint8_t alignmentStatus,
                                              std::uint8_t solutionFlag)
{
    const double t = timeOfWeek / 1000.0;
    const auto f = [t](double a, double b) { return static_cast<float>(a + b * t); };
    return {timeOfWeek,
            alignmentStatus,
            solutionFlag,
            45.0 + 1e-6 * t,  // latitude [deg]
            7.0 + 2e-6 * t,   // longitude [deg]
            300.0 + 1e-3 * t, // height [m]
            {f(1.0, 1e-5), f(-2.0, 2e-5), f(0.5, 3e-5)},
            1.0 + 1e-5 * t,  // roll [deg]
            -2.0 + 2e-5 * t, // pitch [deg]
            90.0 + 1e-4 * t, // heading [deg]
            {f(0.1, 1e-6), f(-0.2, 2e-6), f(0.3, 3e-6)},
            {f(0.01, 1e-7), f(-0.02, 2e-7), f(9.81, 3e-7)}};
}

std::string apxRawBytes(const std::vector<Geodesy::ApxRaw::RawRecord>& records)
{
    std::ostringstream bytes;
    Geodesy::ApxRaw::Writer writer(bytes);
    for (const auto& record : records) {
        writer.write(record);
    }
    return bytes.str();
}

} // namespace Kelvo::Testing
