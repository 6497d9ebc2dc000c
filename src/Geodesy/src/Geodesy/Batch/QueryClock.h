// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Batch/TimeScale.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/SbetPositionAttitudeProvider.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace Kelvo::Geodesy::Batch {

/// Turns query times of one TimeSpec into the scale a trajectory table compares them in:
/// its epoch times T [GPS s from the start of the week of its first epoch] minus
/// `keyOffset()`. UTC queries are compared as the providers compare them, UTC seconds of the
/// week against T - 18 s, so that brackets and fractions come out as the providers' do; GPS
/// queries against T itself.
class QueryClock {
public:
    /// `tableWeek`: the GPS week of the table's first epoch, if known. `firstTime`: that
    /// epoch's time T0. Without a week, seconds of week are taken in the week-long window
    /// that starts at the first epoch. `timeOffset` [s] is added to every query time first.
    QueryClock(const TimeSpec& timeSpec, std::optional<std::uint32_t> tableWeek, double firstTime,
               double timeOffset = 0.0)
        : scale(timeSpec.scale)
        , timeOffset(timeOffset)
        , keyShift(timeSpec.scale == TimeScale::utc ? GPS_LEAP_SECONDS() : 0.0)
        , windowStart(firstTime - keyShift)
    {
        if (!tableWeek) {
            return;
        }
        const double week = *tableWeek;
        switch (scale) {
        case TimeScale::utc:
            absolute = true;
            // UTC weeks counted from the one that holds the Unix epoch, like the reduction of
            // utcSecsOfEpochToSecsOfWeek; GPS week 0 is that count's week 523.
            weekOrigin = (GPS_EPOCH_IN_UNIX_SECONDS + UNIX_EPOCH_SECONDS_IN_WEEK) / SECONDS_IN_WEEK() + week;
            break;
        case TimeScale::gpsWeek:
            if (timeSpec.week) {
                absolute = true;
                origin = (week - static_cast<double>(*timeSpec.week)) * SECONDS_IN_WEEK();
            }
            break;
        case TimeScale::gpsAdjusted:
            absolute = true;
            origin = week * SECONDS_IN_WEEK() - GPS_ADJUSTED_TIME_OFFSET;
            break;
        }
    }

    /// What the table's times are lowered by before they are compared with keys [s].
    double keyOffset() const { return keyShift; }

    /// The query time `queryTime` (finite) as a key; NaN when it has no place (UTC before 1970).
    double key(double queryTime) const
    {
        const double time = queryTime + timeOffset;
        switch (scale) {
        case TimeScale::utc:
            return utcKey(time);
        case TimeScale::gpsWeek:
            return absolute ? time - origin : inWindow(time);
        case TimeScale::gpsAdjusted:
            return absolute ? time - origin : inWindow(adjustedSecondsOfWeek(time));
        }
        return std::numeric_limits<double>::quiet_NaN();
    }

private:
    double utcKey(double utc) const
    {
        if (!(utc >= 0.0)) {
            return std::numeric_limits<double>::quiet_NaN();
        }
        // UTC seconds of the UTC week, the value utcSecsOfEpochToSecsOfWeek returns (without
        // its reports, which never fire from here on).
        const double shifted = utc + UNIX_EPOCH_SECONDS_IN_WEEK;
        double secondsOfWeek;
        if (!ProviderTime::reduce(shifted, SECONDS_IN_WEEK(), secondsOfWeek)) {
            secondsOfWeek = std::fmod(shifted, SECONDS_IN_WEEK());
        }
        if (!absolute) {
            return inWindow(secondsOfWeek);
        }
        const double weeks = std::nearbyint((shifted - secondsOfWeek) / SECONDS_IN_WEEK());
        return secondsOfWeek + (weeks - weekOrigin) * SECONDS_IN_WEEK();
    }

    /// GPS seconds of week of a GPS adjusted time, exactly: only whole seconds are subtracted.
    static double adjustedSecondsOfWeek(double adjusted)
    {
        const double weeks = std::floor((adjusted + GPS_ADJUSTED_TIME_OFFSET) / SECONDS_IN_WEEK());
        double seconds = adjusted - (weeks * SECONDS_IN_WEEK() - GPS_ADJUSTED_TIME_OFFSET);
        if (seconds < 0.0) {
            seconds += SECONDS_IN_WEEK();
        } else if (seconds >= SECONDS_IN_WEEK()) {
            seconds -= SECONDS_IN_WEEK();
        }
        return seconds;
    }

    double inWindow(double secondsOfWeek) const
    {
        return secondsOfWeek < windowStart ? secondsOfWeek + SECONDS_IN_WEEK() : secondsOfWeek;
    }

    TimeScale scale;
    double timeOffset;
    double keyShift;
    double windowStart;
    bool absolute = false;
    /// Subtracted from a GPS query time to give a key (absolute scales).
    double origin = 0.0;
    /// The UTC week count of the table's week (UTC queries, absolute).
    double weekOrigin = 0.0;
};

} // namespace Kelvo::Geodesy::Batch
