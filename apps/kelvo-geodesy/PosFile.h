// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

// RTKLIB position files (".pos") as the library's GNSS reader accepts them: GPS week and
// seconds of week, latitude/longitude in degrees, ellipsoidal height, velocities written
// (24 columns per data line), header lines starting with "% ".
namespace Kelvo::Tool {

/// One data line of an RTKLIB position file, in the file's units: degrees, metres, m/s,
/// standard deviations [m, m/s] and the signed square roots of the covariances.
struct PosEpoch {
    std::int64_t week = 0;
    double secondsOfWeek = 0.0;
    double latitude = 0.0;  // [deg]
    double longitude = 0.0; // [deg]
    double height = 0.0;    // ellipsoidal [m]
    int quality = 1;        // Q: 1 fix, 2 float, 5 single
    int satellites = 0;     // ns
    double sdn = 0.0, sde = 0.0, sdu = 0.0, sdne = 0.0, sdeu = 0.0, sdun = 0.0;
    double age = 0.0;   // [s]
    double ratio = 0.0; // ambiguity ratio
    double vn = 0.0, ve = 0.0, vu = 0.0;
    double sdvn = 0.0, sdve = 0.0, sdvu = 0.0, sdvne = 0.0, sdveu = 0.0, sdvun = 0.0;
};

/// What a scan of a position file found, before the library is asked for anything. Its
/// records are read with the library's own line parser; their epochs hold the time, the
/// position and the velocities (not the standard deviations).
struct PosSummary {
    std::uint64_t count = 0; ///< data lines the library will read
    PosEpoch first;
    PosEpoch last;
    /// Seconds of week of the line before the last: the library answers up to there without
    /// reaching the end of the file.
    double secondToLast = 0.0;
    /// Records moving at the velocity threshold or faster, and the first and last of their
    /// times [s of week].
    std::uint64_t moving = 0;
    double firstMoving = 0.0;
    double lastMoving = 0.0;
    /// The line at which reading stopped early (a line that is not a data line), if any.
    std::optional<std::uint64_t> stoppedAtLine;
};

/// Reads `path` through and checks that the library can read it. Throws InputError for a
/// missing or empty file, no data line, calendar times, missing velocity columns, ECEF or
/// baseline coordinates. A record moves when one of |vn|, |ve|, |vu| [m/s] reaches
/// `velocityThreshold`, as the library counts it.
PosSummary scanPosFile(const std::filesystem::path& path, double velocityThreshold);

/// Every column of a data line as written (the inverse of writePosEpoch), or nothing when the
/// library would not read `line` as a data line.
std::optional<PosEpoch> parsePosLine(const std::string& line);

/// The header of an RTKLIB position file with velocities, as RTKLIB writes it.
struct PosHeader {
    std::string program;
    std::vector<std::string> inputs;
    PosEpoch first; ///< its time is the observation start, its position the reference
    PosEpoch last;  ///< its time is the observation end
};

/// Writes the header and the data lines as RTKLIB does, down to its line ends: the lines of
/// program, inputs, observation times and reference position and the lone "%" end in LF,
/// every other line in CRLF.
void writePosHeader(std::ostream& out, const PosHeader& header);
void writePosEpoch(std::ostream& out, const PosEpoch& epoch);

} // namespace Kelvo::Tool
