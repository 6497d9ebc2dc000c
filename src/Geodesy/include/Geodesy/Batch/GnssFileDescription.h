// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/LatLonHeight.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::Batch {

/// The time system of an RTKLIB position file's time column. GPST is GPS time; UTC lines
/// become GPS with the leap-second count of their own date (GPS - UTC: 0 before 1981-07-01,
/// ..., 18 since 2017-01-01); JST is UTC + 9 h.
enum class GnssTimeSystem : std::uint8_t {
    gpst,
    utc,
    jst,
};

/// How the time column is written: GPS week and seconds of week ("2244  36000.000") or a
/// calendar date and time of day ("2023/01/08 10:00:00.000"), in either time system.
enum class GnssTimeForm : std::uint8_t {
    weekSeconds,
    calendar,
};

/// How the position columns are written: latitude/longitude in decimal degrees with height,
/// latitude/longitude as degrees, minutes and seconds (three fields each) with height,
/// ECEF x/y/z, or an east/north/up baseline from the file's reference position.
enum class GnssPositionForm : std::uint8_t {
    geodeticDegrees,
    geodeticDms,
    ecef,
    enuBaseline,
};

/// Which velocity columns the file has: none, north/east/up (vn ve vu), or ECEF (vx vy vz).
enum class GnssVelocityForm : std::uint8_t {
    none,
    northEastUp,
    ecef,
};

/// What the header of one RTKLIB position file says, and where its solutions are in the
/// table that loaded it.
struct GnssFileDescription {
    std::filesystem::path path;
    /// The `% program   :` line's text ("RTKLIB ver.2.4.3"); empty when the file has none.
    std::string program;
    GnssTimeSystem timeSystem = GnssTimeSystem::gpst;
    GnssTimeForm timeForm = GnssTimeForm::weekSeconds;
    GnssPositionForm positionForm = GnssPositionForm::geodeticDegrees;
    GnssVelocityForm velocityForm = GnssVelocityForm::none;
    /// False when the header says the heights are geodetic (above the geoid) rather than
    /// ellipsoidal; the table keeps them as written either way.
    bool ellipsoidalHeight = true;
    /// The `% ref pos   :` line (base station of a relative solution) as latitude, longitude
    /// [rad] and height [m]; ECEF reference positions are converted. Without it an ENU
    /// baseline file has no geodetic position.
    std::optional<LatLonHeight> referencePosition;
    /// The names of the column-name header line as written, time column first:
    /// "GPST", "latitude(deg)", ..., "sdvun".
    std::vector<std::string> columnNames;
    /// The file's solutions are rows [firstRow, firstRow + rowCount) of the table.
    std::size_t firstRow = 0;
    std::size_t rowCount = 0;
};

} // namespace Kelvo::Geodesy::Batch
