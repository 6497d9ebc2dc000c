// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Batch/GnssColumn.h"

#include <array>
#include <cstdint>
#include <span>

namespace Kelvo::Geodesy::Batch {

/// Where `GnssSolutionTable::at` writes its answers: caller-owned arrays, one value per query
/// time. An empty span is a column the caller does not want; a non-empty one must hold
/// exactly as many values as there are times. A wanted column that the table does not carry
/// (velocities of a file without them, ECEF columns of a geodetic file) is filled with NaN.
///
///     GnssColumns out;
///     out[GnssColumn::latitude] = latitudes;
///     out.valid = mask;
///     table.at(times, {TimeScale::gpsAdjusted, {}}, out);
struct GnssColumns {
    /// The real-valued columns, indexed by `columnIndex(GnssColumn)`: NaN where not valid.
    std::array<std::span<double>, GNSS_COLUMN_COUNT()> values{};
    /// Q of the answer (1 fix, 2 float, 3 sbas, 4 dgps, 5 single, 6 ppp): between two
    /// solutions the worse, i.e. larger, of the two; 0 where not valid.
    std::span<std::uint8_t> quality;
    /// Number of satellites: between two solutions the smaller count; 0 where not valid.
    std::span<std::uint16_t> satellites;
    /// 1 where the time has an answer, 0 where it lies outside the table or inside a gap.
    std::span<std::uint8_t> valid;

    std::span<double>& operator[](GnssColumn column) { return values[columnIndex(column)]; }
    const std::span<double>& operator[](GnssColumn column) const { return values[columnIndex(column)]; }
};

} // namespace Kelvo::Geodesy::Batch
