// SPDX-License-Identifier: MIT
#pragma once

#include "Context.h"
#include "InputFiles.h"

#include "Geodesy/CoordinateSystem/CoordinateSystem.h"
#include "Geodesy/Trajectory/Reader.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

// The subcommands of kelvo-geodesy, each a function of its parsed options. They write data
// to the context's output (or the --output file) and throw InputError or UsageError; the
// command line itself is parsed in Cli.cpp.
namespace Kelvo::Tool {

using Alignment = Geodesy::Trajectory::Reader::ImuAlignmentStatus;
using Path = std::filesystem::path;

/// The velocity from which an RTKLIB record counts as moving [m/s].
inline constexpr double DEFAULT_VELOCITY_THRESHOLD = 0.5;

struct InfoOptions {
    std::vector<Path> files;
    std::optional<FileFormat> format;
    double velocityThreshold = DEFAULT_VELOCITY_THRESHOLD;
    std::optional<std::int64_t> week;
    Alignment alignment = Alignment::FULL_NAVIGATION;
    std::optional<Path> output;
};
void runInfo(const InfoOptions& options, Context& context);

struct AtOptions {
    std::vector<Path> files;
    std::vector<double> times;
    std::optional<Path> timesFile;
    std::optional<double> every;
    bool day = false;
    std::optional<std::int64_t> week;
    Alignment alignment = Alignment::FULL_NAVIGATION;
    bool json = false;
    bool keepMissing = false;
    std::optional<Path> output;
};
void runAt(const AtOptions& options, Context& context);

struct GnssOptions {
    Path file;
    std::vector<double> secondsOfWeek;
    std::optional<double> every;
    double velocityThreshold = DEFAULT_VELOCITY_THRESHOLD;
    bool json = false;
    bool keepMissing = false;
    std::optional<Path> output;
};
void runGnss(const GnssOptions& options, Context& context);

struct DumpOptions {
    Path file;
    std::optional<FileFormat> format;
    std::optional<std::uint64_t> limit;
    bool radians = false;
    Alignment alignment = Alignment::FULL_NAVIGATION;
    std::optional<Path> output;
};
void runDump(const DumpOptions& options, Context& context);

struct ConvertOptions {
    Geodesy::CoordinateSystem::CoordinateSystem from = Geodesy::CoordinateSystem::CoordinateSystem::LLH;
    Geodesy::CoordinateSystem::CoordinateSystem to = Geodesy::CoordinateSystem::CoordinateSystem::TRF;
    /// Latitude, longitude [deg] and height [m] of the NED centre.
    std::optional<std::array<double, 3>> center;
    std::vector<double> values;
    std::optional<Path> output;
};
void runConvert(const ConvertOptions& options, Context& context);

struct UtmOptions {
    double latitude = 0.0;  // [deg]
    double longitude = 0.0; // [deg]
};
void runUtm(const UtmOptions& options, Context& context);

struct SimulateOptions {
    Path directory;
    double duration = 300.0; // [s]
    double rate = 100.0;     // [Hz]
    /// UTC seconds since the Unix epoch of the first record.
    double start = 1719217200.0; // 2024-06-24 08:20:00 UTC
};
/// What simulate wrote.
struct SimulatedSurvey {
    Path sbet;
    Path apxRaw;
    Path smrmsg;
    Path pos;
    std::uint64_t records = 0;    ///< SBET and raw APX records each
    std::uint64_t posEpochs = 0;  ///< 1 Hz records of the RTKLIB and SMRMSG files
    std::int64_t week = 0;        ///< GPS week of the survey
    double firstSecondOfWeek = 0; ///< GPS time of the first record
    double lastSecondOfWeek = 0;
};
SimulatedSurvey simulateSurvey(const SimulateOptions& options, Context& context);
void runSimulate(const SimulateOptions& options, Context& context);

void runDemo(Context& context);

} // namespace Kelvo::Tool
