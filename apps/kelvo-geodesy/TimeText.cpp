// SPDX-License-Identifier: MIT
#include "TimeText.h"

#include "Numbers.h"

#include "Geodesy/GPSTime.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>

namespace Kelvo::Tool {
namespace {

struct Split {
    std::int64_t days;        // whole days since the epoch of the count
    std::int64_t secondOfDay; // 0 to 86399
    std::int64_t fraction;    // in units of 10^-decimals s
};

std::int64_t powerOfTen(int exponent)
{
    std::int64_t result = 1;
    for (int i = 0; i < exponent; ++i) {
        result *= 10;
    }
    return result;
}

/// Rounds first, then splits, so that 59.9996 s prints as the next minute, not as "60.000".
Split split(double seconds, int decimals)
{
    const std::int64_t scale = powerOfTen(decimals);
    const auto ticks = static_cast<std::int64_t>(std::llround(seconds * static_cast<double>(scale)));
    const std::int64_t ticksPerDay = 86400 * scale;
    std::int64_t days = ticks / ticksPerDay;
    std::int64_t rest = ticks % ticksPerDay;
    if (rest < 0) {
        rest += ticksPerDay;
        --days;
    }
    return {days, rest / scale, rest % scale};
}

std::string twoDigits(std::int64_t value)
{
    return std::string{static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
}

std::string clockText(const Split& time, int decimals)
{
    std::string text = twoDigits(time.secondOfDay / 3600) + ":" + twoDigits(time.secondOfDay / 60 % 60) + ":"
                       + twoDigits(time.secondOfDay % 60);
    if (decimals > 0) {
        std::string digits = std::to_string(time.fraction);
        digits.insert(0, static_cast<std::size_t>(decimals) - digits.size(), '0');
        text += "." + digits;
    }
    return text;
}

/// Reads exactly `count` digits at `position`.
std::optional<int> digitsAt(std::string_view text, std::size_t position, std::size_t count)
{
    if (position + count > text.size()) {
        return std::nullopt;
    }
    int value = 0;
    for (std::size_t i = position; i < position + count; ++i) {
        if (text[i] < '0' || text[i] > '9') {
            return std::nullopt;
        }
        value = value * 10 + (text[i] - '0');
    }
    return value;
}

} // namespace

double gpsToUnix(std::int64_t week, double secondsOfWeek)
{
    return Geodesy::GPS_EPOCH_IN_UNIX_SECONDS + static_cast<double>(week) * Geodesy::SECONDS_IN_WEEK()
           + secondsOfWeek - Geodesy::GPS_LEAP_SECONDS();
}

GpsWeekTime unixToGps(double unixSeconds)
{
    const double gpsSeconds = Geodesy::utcSecsOfEpochToGpsTime(unixSeconds);
    const auto week = static_cast<std::int64_t>(std::floor(gpsSeconds / Geodesy::SECONDS_IN_WEEK()));
    return {week, gpsSeconds - static_cast<double>(week) * Geodesy::SECONDS_IN_WEEK()};
}

std::string calendarText(double unixSeconds, int decimals)
{
    const Split time = split(unixSeconds, decimals);
    const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{time.days}}};
    const int year = static_cast<int>(date.year());
    std::string text = std::to_string(year) + "-" + twoDigits(static_cast<unsigned>(date.month())) + "-"
                       + twoDigits(static_cast<unsigned>(date.day()));
    return text + " " + clockText(time, decimals);
}

std::string weekdayText(double secondsOfWeek, int decimals)
{
    static constexpr std::array<const char*, 7> names{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    const Split time = split(secondsOfWeek, decimals);
    const auto day = static_cast<std::size_t>(((time.days % 7) + 7) % 7);
    return std::string(names[day]) + " " + clockText(time, decimals);
}

std::optional<double> parseIsoUtc(std::string_view text)
{
    if (!text.empty() && (text.back() == 'Z' || text.back() == 'z')) {
        text.remove_suffix(1);
    }
    const auto year = digitsAt(text, 0, 4);
    const auto month = digitsAt(text, 5, 2);
    const auto day = digitsAt(text, 8, 2);
    if (!year || !month || !day || text[4] != '-' || text[7] != '-') {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year{*year}, std::chrono::month{static_cast<unsigned>(*month)},
                                           std::chrono::day{static_cast<unsigned>(*day)}};
    if (!date.ok()) {
        return std::nullopt;
    }
    const double days = static_cast<double>(std::chrono::sys_days{date}.time_since_epoch().count());
    if (text.size() == 10) {
        return days * 86400.0;
    }

    const auto hour = digitsAt(text, 11, 2);
    const auto minute = digitsAt(text, 14, 2);
    const auto second = digitsAt(text, 17, 2);
    if (!hour || !minute || !second || (text[10] != 'T' && text[10] != 't' && text[10] != ' ') || text[13] != ':'
        || text[16] != ':' || *hour > 23 || *minute > 59 || *second > 59) {
        return std::nullopt;
    }
    double fraction = 0.0;
    if (text.size() > 19) {
        // ".5", ".125": the point and at least one digit, read as a number below one.
        const std::string_view decimals = text.substr(19);
        if (decimals.size() < 2 || decimals.front() != '.'
            || decimals.find_first_not_of("0123456789", 1) != std::string_view::npos) {
            return std::nullopt;
        }
        fraction = parseDouble("0" + std::string(decimals)).value_or(0.0);
    }
    return days * 86400.0 + *hour * 3600.0 + *minute * 60.0 + *second + fraction;
}

} // namespace Kelvo::Tool
