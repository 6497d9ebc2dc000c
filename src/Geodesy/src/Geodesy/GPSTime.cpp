// SPDX-License-Identifier: MIT
#include "Geodesy/GPSTime.h"

#include "Geodesy/SignallingNaN.h"
#include "Utils/CoreAssert.h"
#include "Utils/SafeCast.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace Kelvo::Geodesy {
namespace {

// Truncates toward zero into a 32-bit int, saturating instead of overflowing.
std::int32_t truncateToInt32(double value)
{
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    if (!(value > lowest)) {
        return std::isnan(value) ? 0 : std::numeric_limits<std::int32_t>::min();
    }
    if (!(value < highest)) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<std::int32_t>(value);
}

} // namespace

double utcToGps(double seconds)
{
    CORE_ASSERT(seconds >= 0.0);
    return seconds + GPS_LEAP_SECONDS();
}

double gpsToUtc(double seconds)
{
    CORE_ASSERT(seconds >= 0.0);
    return seconds - GPS_LEAP_SECONDS();
}

double secsOfEpochToSecsOfWeek(double secs)
{
    CORE_ASSERT(secs >= 0.0);
    const double result = std::fmod(secs, SECONDS_IN_WEEK());
    CORE_ASSERT(std::fmod( secs, SECONDS_IN_WEEK() ) == secs - std::floor( secs/ SECONDS_IN_WEEK() ) * SECONDS_IN_WEEK());
    CORE_ASSERT(result >= 0.0);
    CORE_ASSERT(result < SECONDS_IN_WEEK());
    return result;
}

double secsOfWeekToSecsOfDay(double secs)
{
    CORE_ASSERT(secs >= 0.0);
    const double result = std::fmod(secs, SECONDS_IN_DAY());
    CORE_ASSERT(result >= 0.0);
    CORE_ASSERT(result < SECONDS_IN_DAY());
    return result;
}

double utcSecsOfWeekToSecsOfDay(double utcSecsOfWeek)
{
    return secsOfWeekToSecsOfDay(utcSecsOfWeek);
}

double utcSecsOfEpochToSecsOfWeek(double utcSecsOfEpoch)
{
    return secsOfEpochToSecsOfWeek(utcSecsOfEpoch + UNIX_EPOCH_SECONDS_IN_WEEK);
}

double utcSecsOfEpochToGpsTime(double utc)
{
    CORE_ASSERT(utc >= 0);
    // The seconds of week come from the Unix-epoch time shifted by four days and the week
    // count from the GPS-epoch time; they meet because 315964800 + 345600 is a whole number
    // of weeks.
    const double secondsOfWeek = secsOfEpochToSecsOfWeek(utcToGps(utc) + UNIX_EPOCH_SECONDS_IN_WEEK);
    const std::int32_t week = truncateToInt32(utcToGps(utc - GPS_EPOCH_IN_UNIX_SECONDS) / SECONDS_IN_WEEK());
    const double result =
        static_cast<double>(static_cast<std::int64_t>(week) * static_cast<std::int64_t>(SECONDS_IN_WEEK()))
        + secondsOfWeek;
    CORE_ASSERT(result >= 0);
    return result;
}

double utcSecsOfEpochToGpsWeek(double utcSecsOfEpoch)
{
    return secsOfEpochToSecsOfWeek(utcSecsOfEpochToGpsTime(utcSecsOfEpoch));
}

double utcSecsOfEpochToGpsAdjustedTime(double utcSecsOfEpoch)
{
    const double result = utcSecsOfEpochToGpsTime(utcSecsOfEpoch) - GPS_ADJUSTED_TIME_OFFSET;
    CORE_ASSERT(result > 0);
    return result;
}

double gpsAdjustedTimeToUtcSecsOfEpoch(double gpsAdjusted)
{
    CORE_ASSERT(gpsAdjusted > 0);
    const double result = gpsToUtc(gpsAdjusted) + GPS_ADJUSTED_TIME_OFFSET + GPS_EPOCH_IN_UNIX_SECONDS;
    CORE_ASSERT(result > 0);
    return result;
}

double gpsSecsOfWeekToUtcSecsOfDay(double gpsSecsOfWeek)
{
    CORE_ASSERT(gpsSecsOfWeek >= 0.0);
    CORE_ASSERT(gpsSecsOfWeek < SECONDS_IN_WEEK());
    const double utcSecsOfWeek = gpsToUtc(gpsSecsOfWeek);
    // The floor form stays in [0, 86400) for the negative values of the first 18 s of a
    // week, where fmod would keep the sign; the checks below report those and the last 18 s
    // of each UTC day.
    const double result = utcSecsOfWeek - std::floor(utcSecsOfWeek / SECONDS_IN_DAY()) * SECONDS_IN_DAY();
    CORE_ASSERT(result == std::fmod( utcSecsOfWeek, SECONDS_IN_DAY() ));
    CORE_ASSERT(result >= -GPS_LEAP_SECONDS());
    CORE_ASSERT(result < SECONDS_IN_DAY() - GPS_LEAP_SECONDS());
    return result;
}

bool isInGpsWeekInterval(const Maths::Interval<double>& interval, double secsOfWeek)
{
    const double first = interval.data.first;
    const double second = interval.data.second;
    if (second > first) {
        return first <= secsOfWeek && secsOfWeek <= second;
    }
    return secsOfWeek >= first || secsOfWeek <= second;
}

bool isBeforeGpsWeekInterval(const Maths::Interval<double>& interval, double secsOfWeek)
{
    const double first = interval.data.first;
    const double second = interval.data.second;
    // The middle of the gap outside the interval, going round the week.
    double middle = 0.0;
    if (second > first) {
        const double halfGap = (SECONDS_IN_WEEK() - (second - first)) * 0.5;
        middle = first >= halfGap ? first - halfGap : second + halfGap;
    } else {
        middle = (first - second) * 0.5 + second;
    }
    if (first > middle) {
        return middle <= secsOfWeek && secsOfWeek < first;
    }
    return secsOfWeek >= middle || secsOfWeek < first;
}

Maths::Interval<double> utcSecsOfEpochIntervalToGpsWeek(const Maths::Interval<double>& utcInterval)
{
    if (std::abs(utcInterval.data.second - utcInterval.data.first) >= SECONDS_IN_WEEK()) {
        return {0.0, SECONDS_IN_WEEK()};
    }
    const double lower = std::min(utcInterval.data.first, utcInterval.data.second);
    const double upper = std::max(utcInterval.data.first, utcInterval.data.second);
    return {secsOfEpochToSecsOfWeek(utcSecsOfEpochToGpsTime(lower)),
            secsOfEpochToSecsOfWeek(utcSecsOfEpochToGpsTime(upper))};
}

GPSTime::Seconds GPSTime::operator-(const GPSTime& other) const
{
    return Seconds(Utils::safeCast<std::int32_t>(secondsInWeek - other.secondsInWeek));
}

double GPSTime::toUtc(TimeReference reference) const
{
    switch (reference) {
    case TimeReference::week: return toUtc<TimeReference::week>();
    case TimeReference::day: return toUtc<TimeReference::day>();
    }
    CORE_NEVER_COME_HERE("Unexpected Kelvo::Geodesy::TimeReference enum-class value.");
    CORE_NEVER_COME_HERE("Unmanaged Kelvo::Geodesy::TimeReference enum-class value: undefined behavior!");
    return SIGNALLING_NAN();
}

} // namespace Kelvo::Geodesy
