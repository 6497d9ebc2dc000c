// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Maths/Interval.h"

#include <chrono>
#include <concepts>
#include <cstdint>
#include <type_traits>

namespace Kelvo::Geodesy {

/// The time scale a seconds value counts in: seconds from the start of the GPS week, or
/// seconds from the start of the day.
enum class TimeReference : std::int32_t {
    week = 0,
    day = 1,
};

// ---- Constants -------------------------------------------------------------------------

/// Seconds of a week [s].
constexpr double SECONDS_IN_WEEK() { return 604800.0; }
/// Seconds of a day [s].
constexpr double SECONDS_IN_DAY() { return 86400.0; }
/// GPS minus UTC [s]: one fixed offset for all dates. There is no leap-second table, so times
/// before the last leap second (2017-01-01) are off by the difference, deliberately.
constexpr double GPS_LEAP_SECONDS() { return 18.0; }
/// The GPS epoch, 1980-01-06 00:00:00, in UTC seconds since the Unix epoch.
inline constexpr double GPS_EPOCH_IN_UNIX_SECONDS = 315964800.0;
/// From the start of a week (Sunday 00:00) to the Unix epoch (a Thursday): four days [s].
inline constexpr double UNIX_EPOCH_SECONDS_IN_WEEK = 345600.0;
/// GPS adjusted time is GPS seconds since the GPS epoch minus this [s].
inline constexpr double GPS_ADJUSTED_TIME_OFFSET = 1000000000.0;

// ---- Conversions ------------------------------------------------------------------------
// All take and return seconds. None throws: a failed precondition or postcondition is
// reported through CoreAssert and the computed value is returned anyway.

/// UTC to GPS: seconds + 18. Asserts "seconds >= 0.0".
KELVO_GEODESY_EXPORT double utcToGps(double seconds);
/// GPS to UTC: seconds - 18. Asserts "seconds >= 0.0".
KELVO_GEODESY_EXPORT double gpsToUtc(double seconds);
/// Seconds since an epoch that starts a week to seconds of the week, in [0, 604800).
KELVO_GEODESY_EXPORT double secsOfEpochToSecsOfWeek(double secs);
/// Seconds of a week (or any count starting at midnight) to seconds of the day, [0, 86400).
KELVO_GEODESY_EXPORT double secsOfWeekToSecsOfDay(double secs);
/// UTC seconds of the UTC week to UTC seconds of the day (no leap-second term).
KELVO_GEODESY_EXPORT double utcSecsOfWeekToSecsOfDay(double utcSecsOfWeek);
/// UTC seconds since the Unix epoch to UTC seconds of the UTC week (no leap seconds).
KELVO_GEODESY_EXPORT double utcSecsOfEpochToSecsOfWeek(double utcSecsOfEpoch);
/// UTC seconds since the Unix epoch to GPS seconds since the GPS epoch. Asserts "utc >= 0".
KELVO_GEODESY_EXPORT double utcSecsOfEpochToGpsTime(double utc);
/// UTC seconds since the Unix epoch to GPS seconds of the GPS week (despite the name).
KELVO_GEODESY_EXPORT double utcSecsOfEpochToGpsWeek(double utcSecsOfEpoch);
/// UTC seconds since the Unix epoch to GPS adjusted time (GPS seconds - 1e9).
KELVO_GEODESY_EXPORT double utcSecsOfEpochToGpsAdjustedTime(double utcSecsOfEpoch);
/// GPS adjusted time to UTC seconds since the Unix epoch.
KELVO_GEODESY_EXPORT double gpsAdjustedTimeToUtcSecsOfEpoch(double gpsAdjusted);
/// GPS seconds of the week to UTC seconds of the day, in [0, 86400). Its checks report the
/// first 18 s of a GPS week and the last 18 s of every UTC day; the value is right anyway.
KELVO_GEODESY_EXPORT double gpsSecsOfWeekToUtcSecsOfDay(double gpsSecsOfWeek);

/// Whether `secsOfWeek` lies in `interval` (both ends included). An interval whose upper
/// bound is not above its lower bound wraps over the end of the week.
KELVO_GEODESY_EXPORT bool isInGpsWeekInterval(const Maths::Interval<double>& interval, double secsOfWeek);
/// Whether `secsOfWeek` lies in the half of the gap outside `interval` that comes before
/// the interval's start, going round the week.
KELVO_GEODESY_EXPORT bool isBeforeGpsWeekInterval(const Maths::Interval<double>& interval, double secsOfWeek);
/// A UTC interval (seconds since the Unix epoch, bounds in either order) as GPS seconds of
/// the week: the whole week {0, 604800} when it spans a week or more, else wrapped
/// (first > second) when it crosses a week boundary.
KELVO_GEODESY_EXPORT Maths::Interval<double> utcSecsOfEpochIntervalToGpsWeek(const Maths::Interval<double>& utcInterval);

// ---- GPSTime ----------------------------------------------------------------------------

/// A time stamp in GPS seconds of the week, with an optional week number and a carried
/// auxiliary seconds value. Comparisons and subtraction look at the seconds of the week
/// alone: two times with the same seconds in different weeks are equal, by design.
struct KELVO_GEODESY_EXPORT GPSTime {
    using Seconds = std::chrono::duration<std::int64_t, std::ratio<1, 1>>;

    /// Seconds of week [s] and an auxiliary seconds value; week number 0.
    GPSTime(double secondsInWeek, double auxiliarySeconds)
        : secondsInWeek(secondsInWeek)
        , auxiliarySeconds(auxiliarySeconds)
    {
    }

    /// Seconds of week [s] and GPS week number; auxiliary seconds 0.
    GPSTime(double secondsInWeek, std::uint64_t weekNumber)
        : secondsInWeek(secondsInWeek)
        , weekNumber(weekNumber)
    {
    }

    /// Any other integer type is a week number too, so that GPSTime(100.0, 5u) is not
    /// ambiguous.
    template <std::integral Integer>
        requires(!std::is_same_v<Integer, std::uint64_t>)
    GPSTime(double secondsInWeek, Integer weekNumber)
        : GPSTime(secondsInWeek, static_cast<std::uint64_t>(weekNumber))
    {
    }

    bool operator==(const GPSTime& other) const { return secondsInWeek == other.secondsInWeek; }
    /// Strictly before or after: false when either side is NaN.
    bool operator!=(const GPSTime& other) const { return *this < other || *this > other; }
    bool operator<(const GPSTime& other) const { return secondsInWeek < other.secondsInWeek; }
    bool operator<=(const GPSTime& other) const { return secondsInWeek <= other.secondsInWeek; }
    bool operator>(const GPSTime& other) const { return secondsInWeek > other.secondsInWeek; }
    bool operator>=(const GPSTime& other) const { return secondsInWeek >= other.secondsInWeek; }

    operator double() const { return secondsInWeek; }

    /// Whole seconds between the two seconds-of-week values, truncated toward zero through a
    /// checked narrowing to a 32-bit int. Week boundaries are not corrected.
    Seconds operator-(const GPSTime& other) const;

    /// The reference GPSTime values are kept in: TimeReference::week.
    static TimeReference timeReference() { return TimeReference::week; }

    /// UTC seconds of the week (week) or UTC seconds of the day (day). Any other value is
    /// reported and gives a signalling NaN.
    double toUtc(TimeReference reference) const;

    /// toUtc for a reference known at compile time.
    template <TimeReference TR>
    double toUtc() const
    {
        static_assert(TR == TimeReference::week || TR == TimeReference::day);
        if constexpr (TR == TimeReference::week) {
            return gpsToUtc(secondsInWeek);
        } else {
            return gpsSecsOfWeekToUtcSecsOfDay(secondsInWeek);
        }
    }

    double secondsInWeek;
    double auxiliarySeconds = 0.0;
    std::uint64_t weekNumber = 0;
};

} // namespace Kelvo::Geodesy
