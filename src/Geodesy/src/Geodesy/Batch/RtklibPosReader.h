// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Batch/GnssColumn.h"
#include "Geodesy/Batch/GnssFileDescription.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace Kelvo::Geodesy::Batch {

/// Every solution of one RTKLIB position file, as columns: what `GnssSolutionTable` is made of.
struct RtklibPosSolutions {
    GnssFileDescription description;
    /// GPS seconds since the GPS epoch, strictly increasing.
    std::vector<double> times;
    /// One value per solution for each column the file's forms give, empty for the others.
    std::array<std::vector<double>, GNSS_COLUMN_COUNT()> columns;
    std::vector<std::uint8_t> qualities;
    std::vector<std::uint16_t> satellites;
};

/// Reads an RTKLIB position file of any form (see `GnssSolutionTable`). Lines end in LF or
/// CRLF; lines starting with '%' are header lines, of which the column-name line decides the
/// time system and the position and velocity forms, and blank lines are skipped. Numbers are
/// read independently of the locale.
///
/// Throws std::system_error when the file cannot be opened or read, and `FileFormatError`
/// "<path>: line <n>: <problem>" for a data line before the column-name line (the forms
/// cannot be told from the numbers alone: lat/lon/height, ECEF and ENU all have three), a
/// wrong number of fields, a field that is not a finite number (or a date, a time of day, a
/// Q or ns), a time not after the previous line's, an unreadable `ref pos` line, or an
/// unknown position column; "<path>: no solution" for a file without data lines.
RtklibPosSolutions readRtklibPos(const std::filesystem::path& path);

} // namespace Kelvo::Geodesy::Batch
