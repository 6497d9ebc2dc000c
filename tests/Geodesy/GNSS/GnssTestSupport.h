// SPDX-License-Identifier: MIT
// Text of RTKLIB position files for tests that write their own.
#pragma once

#include <string>

namespace Kelvo::Testing {

/// Header lines as RTKLIB writes them: a lone "%" line and mixed line ends.
inline const std::string posHeader = "% program   : RTKLIB ver.2.4.3\n%\n"
                                     "%  GPST          latitude(deg) longitude(deg)  height(m)   Q  ns\r\n";

/// A data line in RTKLIB's layout, ending in CRLF: time, height and velocity north/east/up
/// as given, the other columns fixed.
inline std::string dataLine(double seconds, double vn = 0.0, double ve = 0.0, double vu = 0.0, double height = 320.0009)
{
    return "2244 " + std::to_string(seconds) + "   48.780735774    9.173352864 " + std::to_string(height)
           + "   1   6   0.0070   0.0045   0.0162  -0.0021  -0.0012  -0.0075   0.00  999.9 " + std::to_string(vn) + " "
           + std::to_string(ve) + " " + std::to_string(vu) + "   0.03022  0.02303  0.01821 -0.01007  0.00341 -0.00704\r\n";
}

/// The same line without its line end.
inline std::string withoutLineEnd(const std::string& line)
{
    return line.substr(0, line.find_first_of("\r\n"));
}

/// The same line with 23 columns, still ending in CRLF.
inline std::string withoutLastColumn(const std::string& line)
{
    const std::string text = withoutLineEnd(line);
    return text.substr(0, text.rfind(' ')) + "\r\n";
}

} // namespace Kelvo::Testing
