// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace Kelvo::CRS {

/// Which leg of a transform to run.
enum class ConvertStep : std::int32_t {
    /// Geographic (latitude, longitude in degrees, height in metres) to the same units in the
    /// target reference frame.
    geographicDegrees = 1,
};

} // namespace Kelvo::CRS
