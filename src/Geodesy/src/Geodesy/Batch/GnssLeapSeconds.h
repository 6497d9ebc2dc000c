// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

// Calendar dates and the real leap-second count, for RTKLIB files that write UTC or JST.
// The rest of the library uses one fixed GPS - UTC of 18 s; a file's own UTC lines carry
// their date, so they get the count that held on it.
namespace Kelvo::Geodesy::Batch {

/// Days from the GPS epoch 1980-01-06 to `year`/`month`/`day` of the proleptic Gregorian
/// calendar (negative before it). Howard Hinnant's days-from-civil, shifted to the GPS epoch.
constexpr std::int64_t daysSinceGpsEpoch(std::int64_t year, unsigned month, unsigned day)
{
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const auto yearOfEra = static_cast<unsigned>(year - era * 400);
    const unsigned dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    constexpr std::int64_t unixEpochToGpsEpochDays = 3657;
    return era * 146097 + static_cast<std::int64_t>(dayOfEra) - 719468 - unixEpochToGpsEpochDays;
}

static_assert(daysSinceGpsEpoch(1980, 1, 6) == 0);
static_assert(daysSinceGpsEpoch(1970, 1, 1) == -3657);

/// GPS - UTC [s] at a UTC time given as seconds of UTC days since 1980-01-06T00:00:00 UTC
/// (86400 to a day, the leap seconds themselves not counted): 0 before 1981-07-01, one more
/// at the start of each date of the table, 18 since 2017-01-01. Announce a new leap second
/// by adding its date.
constexpr int gpsMinusUtc(std::int64_t utcSeconds)
{
    struct Date {
        std::int64_t year;
        unsigned month;
    };
    // The first day of each month from which GPS - UTC grew by one second.
    constexpr std::array<Date, 18> steps{{{1981, 7}, {1982, 7}, {1983, 7}, {1985, 7}, {1988, 1}, {1990, 1},
                                          {1991, 1}, {1992, 7}, {1993, 7}, {1994, 7}, {1996, 1}, {1997, 7},
                                          {1999, 1}, {2006, 1}, {2009, 1}, {2012, 7}, {2015, 7}, {2017, 1}}};
    int count = 0;
    for (const Date& step : steps) {
        count += utcSeconds >= daysSinceGpsEpoch(step.year, step.month, 1) * 86400 ? 1 : 0;
    }
    return count;
}

} // namespace Kelvo::Geodesy::Batch
