// SPDX-License-Identifier: MIT
#include "RtkLibPosReader.h"

#include "../FixedText.h"
#include "Core/Logging/LoggingCallbackPrivate.h"
#include "Geodesy/GNSS/RtkLibPosLine.h"
#include "Utils/CoreAssert.h"

#include <cmath>
#include <cstdint>
#include <ios>
#include <vector>

namespace Kelvo::Geodesy::GNSS {
namespace {

/// Moving when any one velocity component reaches the threshold; equality counts.
bool isMoving(const GnssData& record, double velocityThreshold)
{
    return velocityThreshold <= std::abs(record.velocity.x) || velocityThreshold <= std::abs(record.velocity.y)
        || velocityThreshold <= std::abs(record.velocity.z);
}

/// True for a header line: its first whitespace-delimited token is exactly "%".
bool isHeaderLine(std::string_view line)
{
    // The first token as `stream >> std::string` would give it (classic white space).
    constexpr std::string_view whitespace = " \t\n\v\f\r";
    const auto begin = line.find_first_not_of(whitespace);
    if (begin == std::string_view::npos) {
        return false;
    }
    // Without white space after it the token runs to the end: npos - begin still reaches it.
    return line.substr(begin, line.find_first_of(whitespace, begin) - begin) == "%";
}

/// True for RTKLIB's column line of ECEF or baseline solutions. Their data lines can hold 24
/// numbers too, which would otherwise be read as latitude, longitude and height.
bool namesForeignColumns(std::string_view headerLine)
{
    return headerLine.find("-ecef(m)") != std::string_view::npos
        || headerLine.find("-baseline(m)") != std::string_view::npos;
}

} // namespace

RtkLibPosReader::RtkLibPosReader(const Core::FileInfo& fileInfo, const double& velocityThreshold)
    : fileInfo(fileInfo)
{
    openStream();
    CORE_ASSERT(gnssStream);

    // Forward pass: where every line starts, and the first and last moving record.
    std::vector<std::istream::pos_type> linePositions;
    skipHeader();
    linePositions.push_back(gnssStream ? gnssStream->tellg() : std::istream::pos_type(-1));
    while (readRecord()) {
        linePositions.push_back(gnssStream->tellg());
        if (isMoving(current, velocityThreshold)) {
            timeInterval.expand(current.gpsTime.secondsInWeek);
        }
    }
    CORE_ASSERT(!linePositions.empty());

    // Backward pass from the last record: the interval ends at the last moving one.
    openStream();
    skipHeader();
    for (auto i = static_cast<std::ptrdiff_t>(linePositions.size()) - 2; i >= 0 && gnssStream; --i) {
        gnssStream->seekg(linePositions[static_cast<std::size_t>(i)]);
        const bool readOk = readRecord();
        CORE_ASSERT(readOk);
        if (isMoving(current, velocityThreshold)) {
            timeInterval.setUpper(current.gpsTime.secondsInWeek);
            break;
        }
    }
    CORE_ASSERT(timeInterval.isValid());

    Core::Logging::logAtLevel(0, "GNSS used time interval [s]: [" + toFixedText(timeInterval.data.first) + "; "
                                     + toFixedText(timeInterval.data.second) + "]");
}

GnssData RtkLibPosReader::getNext()
{
    const bool readOk = readRecord();
    CORE_ASSERT(readOk);
    return current;
}

bool RtkLibPosReader::endOfFile()
{
    return !gnssStream || std::istream::traits_type::eq_int_type(gnssStream->peek(), std::istream::traits_type::eof());
}

Maths::Interval<double> RtkLibPosReader::getTimeInterval() const
{
    CORE_ASSERT(timeInterval.isValid());
    return timeInterval;
}

void RtkLibPosReader::returnToBegin()
{
    openStream();
    skipHeader();
}

void RtkLibPosReader::openStream()
{
    gnssStream = fileInfo.makeStream(std::ios::in | std::ios::binary);
    // A file that could not be opened (missing, a folder, no permission) gives no stream.
    if (gnssStream && gnssStream->fail()) {
        gnssStream.reset();
    }
    if (gnssStream) {
        gnssStream->exceptions(std::ios::badbit);
    }
}

void RtkLibPosReader::skipHeader()
{
    if (!gnssStream) {
        return;
    }
    auto& stream = *gnssStream;
    foreignColumns = false;
    while (true) {
        const auto lineStart = stream.tellg();
        const bool read = static_cast<bool>(std::getline(stream, line));
        if (read && isHeaderLine(line) && namesForeignColumns(line)) {
            foreignColumns = true;
        }
        if (!read || !isHeaderLine(line)) {
            // Back to the start of the first line that is not a header line.
            stream.clear();
            stream.seekg(lineStart);
            return;
        }
    }
}

bool RtkLibPosReader::readRecord()
{
    if (!gnssStream || foreignColumns || !std::getline(*gnssStream, line)) {
        return false;
    }
    auto record = parseRtkLibPosLine(line);
    if (!record) {
        return false;
    }
    current = *record;
    return true;
}

} // namespace Kelvo::Geodesy::GNSS
