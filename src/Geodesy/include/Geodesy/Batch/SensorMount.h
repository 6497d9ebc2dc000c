// SPDX-License-Identifier: MIT
#pragma once

namespace Kelvo::Geodesy::Batch {

/// Where a scanner sits on the vehicle, in the body frame of the trajectory's attitude (x
/// forward, y right, z down), and how its clock relates to the trajectory's.
struct SensorMount {
    /// The scanner's origin in the body frame [m].
    struct LeverArm {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
    };
    /// The scanner's axes relative to the body frame [rad], applied as R = Rz(yaw) Ry(pitch)
    /// Rx(roll): a scanner vector v is the body vector R v.
    struct Boresight {
        double roll = 0.0;
        double pitch = 0.0;
        double yaw = 0.0;
    };

    LeverArm leverArm;
    Boresight boresight;
    /// Added to every point time [s] before its pose is looked up: a point stamped t was
    /// measured at trajectory time t + timeOffset.
    double timeOffset = 0.0;
};

} // namespace Kelvo::Geodesy::Batch
