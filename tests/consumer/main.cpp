// SPDX-License-Identifier: MIT
// Built against the installed package: converts the GPS epoch and a later UTC time.
#include "Geodesy/Geodesy.h"

#include <iostream>

int main()
{
    using namespace Kelvo::Geodesy;
    // The GPS epoch in UTC is GPS time 18 s (the fixed leap-second offset).
    const double atEpoch = utcSecsOfEpochToGpsTime(GPS_EPOCH_IN_UNIX_SECONDS);
    // 2000 weeks and 100 s after the GPS epoch: GPS second 118 of the week.
    const double secondsOfWeek = utcSecsOfEpochToGpsWeek(GPS_EPOCH_IN_UNIX_SECONDS + 604800.0 * 2000 + 100.0);
    std::cout << "GPS time at the GPS epoch: " << atEpoch << " s; seconds of week: " << secondsOfWeek << '\n';
    return atEpoch == 18.0 && secondsOfWeek == 118.0 ? 0 : 1;
}
