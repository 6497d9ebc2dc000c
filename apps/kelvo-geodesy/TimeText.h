// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Calendar text for the times the tool reads and prints. UTC and GPS differ by the library's
// one fixed leap-second count (GPS_LEAP_SECONDS()), whatever the date.
namespace Kelvo::Tool {

/// A GPS time as week number and seconds of the week [s].
struct GpsWeekTime {
    std::int64_t week = 0;
    double secondsOfWeek = 0.0;
};

/// UTC seconds since the Unix epoch of a GPS week and seconds of week.
double gpsToUnix(std::int64_t week, double secondsOfWeek);

/// The GPS week and seconds of week of UTC seconds since the Unix epoch (after 1980-01-06).
GpsWeekTime unixToGps(double unixSeconds);

/// "YYYY-MM-DD hh:mm:ss.fff" of seconds since the Unix epoch, rounded to `decimals` digits
/// of a second (0 to 6; 0 drops the point).
std::string calendarText(double unixSeconds, int decimals = 3);

/// "Ddd hh:mm:ss.fff" for seconds from the start of a week (Sunday 00:00); used when a file
/// tells the time of the week but not which week. Values outside [0, 604800) wrap round.
std::string weekdayText(double secondsOfWeek, int decimals = 3);

/// Seconds since the Unix epoch of an ISO 8601 UTC date-time: "YYYY-MM-DDThh:mm:ss" with
/// optional decimals and an optional "Z" ('T' may be a blank), or a plain date
/// "YYYY-MM-DD". Nothing for any other text or an impossible date (2024-02-30, 24:00:00).
std::optional<double> parseIsoUtc(std::string_view text);

} // namespace Kelvo::Tool
