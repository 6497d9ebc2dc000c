// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

namespace Kelvo::Geodesy::Batch {

/// Caller-owned output columns of TrajectoryTable::poses, one element per query time. Every
/// non-empty span must have exactly as many elements as there are times; an empty span is a
/// column not wanted (position, attitude and `valid` are always wanted).
///
/// Where `valid[i]` is 0 (outside the table, inside a gap, another week) every value of row
/// i is a quiet NaN.
struct PoseColumns {
    /// Latitude, longitude [rad] and ellipsoidal height [m].
    std::span<double> latitude;
    std::span<double> longitude;
    std::span<double> height;
    /// Roll, pitch and true heading (yaw) [rad], in [-pi, pi).
    std::span<double> roll;
    std::span<double> pitch;
    std::span<double> yaw;
    /// Velocity north, east, down [m/s]; optional.
    std::span<double> velocityNorth;
    std::span<double> velocityEast;
    std::span<double> velocityDown;
    /// 1 where the row holds a pose, 0 where it holds NaNs.
    std::span<std::uint8_t> valid;
};

} // namespace Kelvo::Geodesy::Batch
