// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Maths/Point.h"

#include <cstdint>
#include <optional>

namespace Kelvo::Geodesy {

/// A measured point: x, y, z (frame and unit those of its producer) with per-point
/// attributes, among them an intensity normalized to [0, 1]. Building a point with an
/// intensity outside [0, 1] (NaN included) logs an error event (category
/// Core::Event::ERROR_CATEGORY, package 24, code INTENSITY_EVENT_CODE(), carrying geodesy
/// error 0) and then reports the failed range check through CoreAssert; the point keeps the
/// given value. Equality deliberately ignores `flag` and `optionalIndex`: points that differ
/// only in them compare equal.
class KELVO_GEODESY_EXPORT Point : public Maths::Point<double> {
public:
    /// Code of the event logged for an intensity outside [0, 1].
    static constexpr std::uint32_t INTENSITY_EVENT_CODE() { return 30; }

    Point() = default;
    Point(double x, double y, double z, double measuredValue, double intensity, unsigned char byteAttribute,
          std::optional<double> optionalValue, std::uint64_t wideIndex, std::uint32_t firstIndex, bool flag,
          std::optional<std::uint32_t> optionalIndex);

    /// Compares the coordinates, measuredValue, intensity (exactly: NaN is unequal),
    /// byteAttribute, optionalValue, wideIndex and firstIndex, in that order.
    bool operator==(const Point& other) const;

    double measuredValue = 0.0;
    double intensity = 0.0;
    unsigned char byteAttribute = 0;
    std::optional<double> optionalValue;
    std::uint64_t wideIndex = 0;
    std::uint32_t firstIndex = 0;
    bool flag = false;
    std::optional<std::uint32_t> optionalIndex;
};

} // namespace Kelvo::Geodesy
