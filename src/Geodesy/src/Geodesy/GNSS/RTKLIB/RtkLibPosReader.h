// SPDX-License-Identifier: MIT
#pragma once

#include "Core/FileInfo.h"
#include "Geodesy/GNSS/GnssData.h"
#include "Geodesy/GNSS/RtkLibPosLine.h"
#include "Maths/Interval.h"

#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Kelvo::Geodesy::GNSS {

/// Reads an RTKLIB solution file (".pos", time as GPS week and seconds of week, latitude and
/// longitude in decimal degrees, velocities written) line by line into GnssData records:
/// latitude and longitude in radians, the third position component = -height [m], velocity
/// north/east/down [m/s] (the file's up velocity negated). The off-diagonal covariance
/// elements take the file's signed square roots unchanged (sdne, sdun, sdeu and their
/// velocity twins); the diagonals are always 0.01.
///
/// Lines whose first token is a lone "%" before the first data line are the header. A data
/// line needs 24 numbers, read as stream extraction reads them; anything after the 24th is
/// ignored, and a trailing carriage return is white space. Files in calendar time or without
/// velocities fail on their first data line and give no records; so do files whose header
/// names ECEF or baseline columns, whose lines would otherwise parse as latitude/longitude.
///
/// Construction scans the file for its "used time interval": from the first to the last
/// record moving at least `velocityThreshold` [m/s] along any one axis. The forward scan ends
/// at the first line that is not a data line. Failures are assertions: "gnssStream" (no
/// stream), "readOk" (a line that must be a record is not), "timeInterval.isValid()" or
/// "v > data.first" (no moving record, one, or all at one time). A read error that sets the
/// stream's badbit throws the stream's exception. A file that cannot be opened gives no
/// stream: "gnssStream" is reported and the file reads as an empty one.
class RtkLibPosReader {
public:
    RtkLibPosReader(const Core::FileInfo& fileInfo, const double& velocityThreshold);

    /// Reads the next data line. Asserts "readOk" and then returns the last record read.
    GnssData getNext();

    /// True when no character is left to read.
    bool endOfFile();

    /// Seconds of week of the first and last moving record. Asserts "timeInterval.isValid()".
    Maths::Interval<double> getTimeInterval() const;

    /// Starts over: opens the file again and skips its header.
    void returnToBegin();

private:
    void openStream();
    void skipHeader();
    /// Reads one line into `current`; false, leaving `current` alone, when the stream has no
    /// line or the line is not a data line.
    bool readRecord();

    std::unique_ptr<std::istream> gnssStream;
    Core::FileInfo fileInfo;
    GnssData current;
    Maths::Interval<double> timeInterval;
    bool foreignColumns = false; // the header names ECEF or baseline columns
    std::string line; // reused by every read to spare an allocation per line
};

} // namespace Kelvo::Geodesy::GNSS
