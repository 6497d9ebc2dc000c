// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace Kelvo::Geodesy::Batch {

/// The time scale of an array of query times given to the batch engine.
///
/// - `utc`: UTC seconds since the Unix epoch (1970-01-01T00:00:00Z), as the position/attitude
///   providers take them. GPS = UTC + 18 s, the library's one fixed leap-second count.
/// - `gpsWeek`: GPS seconds of the week [0, 604800), with the GPS week beside them (`TimeSpec`).
/// - `gpsAdjusted`: GPS seconds since the GPS epoch (1980-01-06T00:00:00) minus 1e9, the
///   "adjusted standard GPS time" of LAS 1.4 point records.
enum class TimeScale : std::uint8_t {
    utc,
    gpsWeek,
    gpsAdjusted,
};

/// How the engine reads an array of query times: their scale and, for `TimeScale::gpsWeek`,
/// the GPS week they belong to (ignored for the other scales, which carry their week).
struct TimeSpec {
    TimeScale scale = TimeScale::utc;
    std::optional<std::uint32_t> week;
};

} // namespace Kelvo::Geodesy::Batch
