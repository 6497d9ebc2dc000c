// SPDX-License-Identifier: MIT
#include "Geodesy/GNSS/RtkLibPosLine.h"

#include "RTKLIB/StreamNumberScanner.h"

#include <cstdint>

namespace Kelvo::Geodesy::GNSS {

std::optional<GnssData> parseRtkLibPosLine(std::string_view line)
{
    // The columns in file order; see the class comment for where each one goes.
    std::uint64_t week = 0;
    double seconds = 0.0;
    double latitude = 0.0;
    double longitude = 0.0;
    double height = 0.0;
    std::uint64_t quality = 0;
    std::uint64_t satellites = 0;
    double sdn = 0.0, sde = 0.0, sdu = 0.0, sdne = 0.0, sdeu = 0.0, sdun = 0.0;
    double age = 0.0, ratio = 0.0;
    double vn = 0.0, ve = 0.0, vu = 0.0;
    double sdvn = 0.0, sdve = 0.0, sdvu = 0.0, sdvne = 0.0, sdveu = 0.0, sdvun = 0.0;

    // The groups of columns of a line, each of which must be read in full.
    StreamNumberScanner scanner(line);
    const bool readOk = scanner.read(week, seconds) && scanner.read(latitude, longitude, height)
                     && scanner.read(quality, satellites) && scanner.read(sdn, sde, sdu, sdne, sdeu, sdun)
                     && scanner.read(age, ratio) && scanner.read(vn, ve, vu)
                     && scanner.read(sdvn, sdve, sdvu, sdvne, sdveu, sdvun);
    if (!readOk) {
        return std::nullopt;
    }

    GnssData record;
    record.gpsTime = GPSTime(seconds, week);
    record.position = LatLonHeight(Maths::Radian(Maths::Degree(latitude)), Maths::Radian(Maths::Degree(longitude)),
                                   -height);
    record.velocity = Maths::PositionVector3(vn, ve, -vu);
    // Only the off-diagonal elements come from the file; the diagonals keep their 0.01.
    record.positionCovariance.xy = sdne;
    record.positionCovariance.yz = sdeu;
    record.positionCovariance.xz = sdun;
    record.velocityCovariance.xy = sdvne;
    record.velocityCovariance.yz = sdveu;
    record.velocityCovariance.xz = sdvun;
    return record;
}

} // namespace Kelvo::Geodesy::GNSS
