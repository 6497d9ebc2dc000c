// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

namespace Kelvo::Geodesy::ApxRaw {

/// The fields of a raw APX navigation record that ApxRaw::Reader uses, in the units the file
/// stores them. ApxRaw::Writer writes them (and zeros in the fields no reader uses);
/// ApxRaw::Reader turns them into a Trajectory::Record.
struct RawRecord {
    /// GPS time of week [ms].
    std::uint32_t timeOfWeek;
    /// IMU alignment state, compared as a number with Trajectory::Reader::ImuAlignmentStatus.
    std::uint8_t alignmentStatus;
    /// 0 means the record is not usable.
    std::uint8_t solutionFlag;
    /// Latitude and longitude [deg], ellipsoidal height [m].
    double latitude;
    double longitude;
    double height;
    /// Velocity x, y, z [m/s].
    std::array<float, 3> velocity;
    /// Attitude [deg].
    double roll;
    double pitch;
    double heading;
    /// [deg/s]; the reader converts it to [rad/s] and stores it in the force slots.
    std::array<float, 3> firstTriple;
    /// Stored by the reader, unconverted, in the angular-rate slots.
    std::array<float, 3> secondTriple;
};

} // namespace Kelvo::Geodesy::ApxRaw
