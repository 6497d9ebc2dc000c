// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Kelvo::Geodesy::Batch {

/// The real-valued columns of a GNSS solution table (`GnssSolutionTable`). Which of them a
/// table carries follows from its files' forms (`GnssFileDescription`):
///
/// - `latitude`, `longitude` [rad] and `height` [m, as written: positive up]: every table,
///   ENU baselines only when their file gives a reference position;
/// - `ecefX/Y/Z` [m] and `sdx` ... `sdzx`: ECEF files; `east/north/up` [m]: ENU baselines;
/// - `sdn` ... `sdun` [m]: geodetic files and ENU baselines (whose sde sdn sdu sden sdnu sdue
///   land in the north/east/up slots, so the order is the same for both);
/// - `age` [s] and `ratio`: every table;
/// - `velocityNorth/East/Down` [m/s]: every file with velocities (down = -up; ECEF velocities
///   rotated to north-east-down at the solution's position);
/// - `sdvn` ... `sdvun` [m/s]: files with north/east/up velocities; `velocityX/Y/Z` and
///   `sdvx` ... `sdvzx` [m/s]: ECEF files with velocities.
///
/// The standard-deviation columns are RTKLIB's, kept exactly as written: the first three
/// are standard deviations, the last three the signed square roots of the covariances,
/// sign(c) * sqrt(|c|). `GnssSolutionTable::covarianceFromSignedRoots` turns them into
/// covariances.
enum class GnssColumn : std::uint8_t {
    latitude,
    longitude,
    height,
    ecefX,
    ecefY,
    ecefZ,
    east,
    north,
    up,
    sdn,
    sde,
    sdu,
    sdne,
    sdeu,
    sdun,
    sdx,
    sdy,
    sdz,
    sdxy,
    sdyz,
    sdzx,
    age,
    ratio,
    velocityNorth,
    velocityEast,
    velocityDown,
    velocityX,
    velocityY,
    velocityZ,
    sdvn,
    sdve,
    sdvu,
    sdvne,
    sdveu,
    sdvun,
    sdvx,
    sdvy,
    sdvz,
    sdvxy,
    sdvyz,
    sdvzx,
};

/// Number of `GnssColumn` values.
constexpr std::size_t GNSS_COLUMN_COUNT() { return 41; }

/// The column's index in [0, GNSS_COLUMN_COUNT()).
constexpr std::size_t columnIndex(GnssColumn column) { return static_cast<std::size_t>(column); }

/// The column's name as a program or a Python record array would show it: "latitude",
/// "sdne", "velocityDown".
constexpr std::string_view columnName(GnssColumn column)
{
    constexpr std::array<std::string_view, GNSS_COLUMN_COUNT()> names{
        "latitude", "longitude", "height", "ecefX", "ecefY", "ecefZ", "east", "north", "up",
        "sdn", "sde", "sdu", "sdne", "sdeu", "sdun", "sdx", "sdy", "sdz", "sdxy", "sdyz", "sdzx",
        "age", "ratio", "velocityNorth", "velocityEast", "velocityDown", "velocityX", "velocityY",
        "velocityZ", "sdvn", "sdve", "sdvu", "sdvne", "sdveu", "sdvun", "sdvx", "sdvy", "sdvz",
        "sdvxy", "sdvyz", "sdvzx"};
    return names[columnIndex(column)];
}

/// The column's unit: "rad", "m", "s", "m/s", or "" for the ratio.
constexpr std::string_view columnUnit(GnssColumn column)
{
    if (column == GnssColumn::latitude || column == GnssColumn::longitude) {
        return "rad";
    }
    if (column == GnssColumn::age) {
        return "s";
    }
    if (column == GnssColumn::ratio) {
        return "";
    }
    return column < GnssColumn::velocityNorth ? "m" : "m/s";
}

} // namespace Kelvo::Geodesy::Batch
