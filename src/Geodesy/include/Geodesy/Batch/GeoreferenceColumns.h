// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

namespace Kelvo::Geodesy::Batch {

/// The coordinates Georeferencer writes.
enum class GeoreferenceFrame : std::uint8_t {
    /// ECEF x, y, z [m] on WGS84.
    ecef,
    /// Latitude, longitude [rad] and ellipsoidal height [m] on WGS84.
    geodetic,
};

/// Caller-owned output columns of Georeferencer::georeference, one element per point, each
/// exactly as long as the point columns. For GeoreferenceFrame::ecef `first`, `second`,
/// `third` are x, y, z [m]; for GeoreferenceFrame::geodetic latitude, longitude [rad] and
/// height [m]. Where `valid[i]` is 0 the three values are quiet NaNs.
struct GeoreferenceColumns {
    std::span<double> first;
    std::span<double> second;
    std::span<double> third;
    std::span<std::uint8_t> valid;
};

} // namespace Kelvo::Geodesy::Batch
