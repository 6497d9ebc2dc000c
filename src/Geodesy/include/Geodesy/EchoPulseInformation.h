// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"

#include <cstdint>

namespace Kelvo::Geodesy {

/// Per-echo pulse data that may accompany a lidar return. The library carries and copies the
/// three values as a block and never interprets them; their meaning belongs to the sensor
/// integration that fills them.
struct KELVO_GEODESY_EXPORT EchoPulseInformation {
    std::uint32_t firstValue = 0;
    std::uint32_t secondValue = 0;
    std::uint32_t thirdValue = 0;

    bool operator==(const EchoPulseInformation&) const = default;
};

} // namespace Kelvo::Geodesy
