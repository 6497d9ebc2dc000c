// SPDX-License-Identifier: MIT
// Helpers of the GNSS tests: RTKLIB file text and expected assertion reports.
#pragma once

#include "Geodesy/GNSS/GnssData.h"
#include "support/AssertionRecorder.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace Kelvo::Testing {

/// Header lines as RTKLIB writes them: a lone "%" line and mixed line ends.
inline const std::string posHeader = "% program   : RTKLIB ver.2.4.3\n%\n%  GPST   latitude(deg) longitude(deg)\r\n";

/// A data line in RTKLIB's layout ending in CRLF: time and velocity north/east/up as given.
inline std::string dataLine(double seconds, double vn = 0.0, double ve = 0.0, double vu = 0.0)
{
    return "2244 " + std::to_string(seconds) + " 48.780735774 9.173352864 320.0009 1 6 0.0070 0.0045 0.0162 -0.0021 "
           "-0.0012 -0.0075 0.00 999.9 " + std::to_string(vn) + " " + std::to_string(ve) + " " + std::to_string(vu)
           + " 0.03022 0.02303 0.01821 -0.01007 0.00341 -0.00704\r\n";
}

/// Every number of a record, time and week first, to compare records field by field.
inline std::vector<double> valuesOf(const Geodesy::GNSS::GnssData& d)
{
    const auto& p = d.positionCovariance;
    const auto& v = d.velocityCovariance;
    return {d.gpsTime.secondsInWeek, static_cast<double>(d.gpsTime.weekNumber), d.position.latitude,
            d.position.longitude, d.position.height, d.velocity.x, d.velocity.y, d.velocity.z,
            p.xx, p.xy, p.xz, p.yy, p.yz, p.zz, v.xx, v.xy, v.xz, v.yy, v.yz, v.zz};
}

/// The reports of failed assertions on these expressions, in order.
inline std::vector<std::string> assertTexts(std::initializer_list<std::string> expressions)
{
    std::vector<std::string> texts;
    for (const auto& expression : expressions) {
        texts.push_back(assertText(expression));
    }
    return texts;
}

} // namespace Kelvo::Testing
