// SPDX-License-Identifier: MIT
// Built against the installed package: converts the GPS epoch and a later UTC time, and with
// Kelvo::Projection projects a point to ETRS89 / UTM zone 32N.
#include "Geodesy/Geodesy.h"

#ifdef CONSUMER_WITH_PROJECTION
#include "Projection/Projection.h"
#endif

#include <cmath>
#include <iostream>
#include <numbers>
#include <vector>

namespace {

#ifdef CONSUMER_WITH_PROJECTION
/// 48 N 9 E lies on the zone's central meridian: easting 500000 m, northing 5316300.2243 m
/// (GeographicLib's TransverseMercator on GRS80).
bool projects()
{
    const Kelvo::Projection::CrsTransformer transformer(Kelvo::Projection::CrsTransformer::Frame::geodetic,
                                                        "EPSG:25832");
    std::vector<double> latitude{48.0 * std::numbers::pi / 180.0}, longitude{9.0 * std::numbers::pi / 180.0},
        height{500.0};
    const std::size_t failed = transformer.transformInPlace(latitude, longitude, height);
    std::cout << "EPSG:25832: " << latitude[0] << ", " << longitude[0] << '\n';
    return failed == 0 && std::abs(latitude[0] - 500000.0) < 1e-3 && std::abs(longitude[0] - 5316300.2243) < 1e-3;
}
#else
bool projects()
{
    return true;
}
#endif

} // namespace

int main()
{
    using namespace Kelvo::Geodesy;
    // The GPS epoch in UTC is GPS time 18 s (the fixed leap-second offset).
    const double atEpoch = utcSecsOfEpochToGpsTime(GPS_EPOCH_IN_UNIX_SECONDS);
    // 2000 weeks and 100 s after the GPS epoch: GPS second 118 of the week.
    const double secondsOfWeek = utcSecsOfEpochToGpsWeek(GPS_EPOCH_IN_UNIX_SECONDS + 604800.0 * 2000 + 100.0);
    std::cout << "GPS time at the GPS epoch: " << atEpoch << " s; seconds of week: " << secondsOfWeek << '\n';
    return atEpoch == 18.0 && secondsOfWeek == 118.0 && projects() ? 0 : 1;
}
