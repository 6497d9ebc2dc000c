// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/SignallingNaN.h"

#include <cstdint>

namespace Kelvo::Geodesy::Trajectory {

/// One epoch of a trajectory as every trajectory reader returns it: a validity status and
/// the seventeen values of an SBET record, in SBET file order. Times are GPS seconds of the
/// week [s], angles [rad], lengths [m], velocities [m/s], specific forces [m/s^2] and
/// angular rates [rad/s]. A record that holds no file data has every double set to a
/// signalling NaN.
struct Record {
    /// Whether the record may be used.
    enum class Status : std::uint8_t {
        /// Nothing could be read; every double is a signalling NaN.
        INVALID = 0,
        /// Read, but the IMU had not yet reached the alignment the reader requires.
        NOT_ALIGNED = 1,
        /// A complete, usable record.
        VALID = 2,
    };
    /// The statuses under shorter names, as in `record.status != Record::INVALID`.
    static constexpr Status INVALID = Status::INVALID;
    static constexpr Status NOT_ALIGNED = Status::NOT_ALIGNED;
    static constexpr Status VALID = Status::VALID;

    /// The record of a read that got nothing from the file: INVALID, every double a
    /// signalling NaN.
    static constexpr Record invalid()
    {
        constexpr double nan = SIGNALLING_NAN();
        return {INVALID, nan, nan, nan, nan, nan, nan, nan, nan, nan, nan, nan, nan, nan, nan, nan, nan, nan};
    }

    Status status;
    double time;
    double latitude;
    double longitude;
    double height;
    double velocityX;
    double velocityY;
    double velocityZ;
    double roll;
    double pitch;
    double heading;
    double wanderAngle;
    double forceX;
    double forceY;
    double forceZ;
    double angularRateX;
    double angularRateY;
    double angularRateZ;
};

} // namespace Kelvo::Geodesy::Trajectory
