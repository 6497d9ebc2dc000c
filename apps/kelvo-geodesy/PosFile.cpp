// SPDX-License-Identifier: MIT
#include "PosFile.h"

#include "Context.h"
#include "InputFiles.h"
#include "Numbers.h"
#include "TimeText.h"

#include "Geodesy/GNSS/RtkLibPosLine.h"
#include "Geodesy/GPSTime.h"
#include "Maths/Radian.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string_view>

namespace Kelvo::Tool {
namespace {

std::vector<std::string_view> tokens(std::string_view line)
{
    std::vector<std::string_view> result;
    constexpr std::string_view blanks = " \t\r\n\v\f";
    std::size_t position = line.find_first_not_of(blanks);
    while (position != std::string_view::npos) {
        const std::size_t end = line.find_first_of(blanks, position);
        result.push_back(line.substr(position, end == std::string_view::npos ? end : end - position));
        position = end == std::string_view::npos ? end : line.find_first_not_of(blanks, end);
    }
    return result;
}

bool isHeaderLine(std::string_view line)
{
    const auto words = tokens(line);
    return !words.empty() && words.front() == "%";
}

/// Why a header announces columns other than latitude/longitude/height, if it does.
std::optional<std::string> foreignColumns(const std::string& header)
{
    if (header.find("-ecef(m)") != std::string::npos) {
        return "ECEF coordinates; the library reads latitude/longitude (RTKLIB option out-solformat=llh)";
    }
    if (header.find("-baseline(m)") != std::string::npos) {
        return "baseline coordinates; the library reads latitude/longitude (RTKLIB option out-solformat=llh)";
    }
    return std::nullopt;
}

/// Why the first data line cannot be read, in the words of RTKLIB's options.
std::string unreadableFirstLine(std::string_view line, std::uint64_t lineNumber)
{
    const auto words = tokens(line);
    if (!words.empty() && words.front().find('/') != std::string_view::npos) {
        return "calendar times; the library reads GPS week and seconds of week (RTKLIB option out-timeform=tow)";
    }
    if (words.size() >= 14 && words.size() < 24) {
        return "no velocity columns (RTKLIB option out-outvel=on)";
    }
    return "line " + std::to_string(lineNumber) + " is not an RTKLIB data line (week, seconds of week, "
           "latitude, longitude, height and 19 more numbers)";
}

bool moves(const Geodesy::GNSS::GnssData& record, double threshold)
{
    const auto& velocity = record.velocity;
    return threshold <= std::abs(velocity.x) || threshold <= std::abs(velocity.y) || threshold <= std::abs(velocity.z);
}

/// The columns of a record as the file writes them: degrees, the height and the up velocity
/// with the signs the reader took off. Standard deviations are not part of the record.
PosEpoch fileValues(const Geodesy::GNSS::GnssData& record)
{
    PosEpoch epoch;
    epoch.week = static_cast<std::int64_t>(record.gpsTime.weekNumber);
    epoch.secondsOfWeek = record.gpsTime.secondsInWeek;
    epoch.latitude = record.position.latitude.toDegree();
    epoch.longitude = record.position.longitude.toDegree();
    epoch.height = -record.position.height;
    epoch.vn = record.velocity.x;
    epoch.ve = record.velocity.y;
    epoch.vu = -record.velocity.z;
    return epoch;
}

/// Ends a header line: RTKLIB writes LF after the lines it builds from its inputs and CRLF
/// after the others.
void line(std::ostream& out, const std::string& text, bool crlf)
{
    out << text << (crlf ? "\r\n" : "\n");
}

std::string gpstText(const PosEpoch& epoch)
{
    std::string calendar = calendarText(gpsToUnix(epoch.week, epoch.secondsOfWeek) + Geodesy::GPS_LEAP_SECONDS(), 1);
    std::replace(calendar.begin(), calendar.begin() + 10, '-', '/');
    std::string week = std::to_string(epoch.week);
    week.insert(0, week.size() < 4 ? 4 - week.size() : 0, '0');
    return calendar + " GPST (week" + week + " " + fixedWidth(epoch.secondsOfWeek, 8, 1) + "s)";
}

std::string integerWidth(std::int64_t value, std::size_t width)
{
    std::string text = std::to_string(value);
    text.insert(0, text.size() < width ? width - text.size() : 0, ' ');
    return text;
}

} // namespace

std::optional<PosEpoch> parsePosLine(const std::string& line)
{
    // A data line is what the library reads as one; its columns are then taken as written.
    if (!Geodesy::GNSS::parseRtkLibPosLine(line)) {
        return std::nullopt;
    }
    const auto words = tokens(line);
    if (words.size() < 24) {
        return std::nullopt;
    }
    std::vector<double> numbers;
    for (std::size_t i = 1; i < 24; ++i) {
        if (i == 5 || i == 6) {
            continue;
        }
        const auto value = parseDouble(words[i]);
        if (!value) {
            return std::nullopt;
        }
        numbers.push_back(*value);
    }
    const auto week = parseInteger(words[0]);
    const auto quality = parseInteger(words[5]);
    const auto satellites = parseInteger(words[6]);
    if (!week || !quality || !satellites || *week < 0) {
        return std::nullopt;
    }
    PosEpoch epoch;
    epoch.week = *week;
    epoch.quality = static_cast<int>(*quality);
    epoch.satellites = static_cast<int>(*satellites);
    double* const fields[] = {&epoch.secondsOfWeek, &epoch.latitude, &epoch.longitude, &epoch.height, &epoch.sdn,
                              &epoch.sde, &epoch.sdu, &epoch.sdne, &epoch.sdeu, &epoch.sdun, &epoch.age, &epoch.ratio,
                              &epoch.vn, &epoch.ve, &epoch.vu, &epoch.sdvn, &epoch.sdve, &epoch.sdvu, &epoch.sdvne,
                              &epoch.sdveu, &epoch.sdvun};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        *fields[i] = numbers[i];
    }
    return epoch;
}

PosSummary scanPosFile(const std::filesystem::path& path, double velocityThreshold)
{
    checkReadableFile(path);
    std::ifstream file(path, std::ios::binary);
    std::string text;
    std::string header;
    std::uint64_t lineNumber = 0;
    bool inHeader = true;
    PosSummary summary;
    while (std::getline(file, text)) {
        ++lineNumber;
        if (inHeader && isHeaderLine(text)) {
            header += text;
            continue;
        }
        if (inHeader) {
            // ECEF and baseline lines would read as numbers too: the header tells them apart.
            if (const auto problem = foreignColumns(header)) {
                throw InputError(path, *problem);
            }
            inHeader = false;
        }
        // The library's own parse decides which lines are records, so the count and the
        // moving span are those the library will see.
        const auto record = Geodesy::GNSS::parseRtkLibPosLine(text);
        if (!record) {
            if (summary.count == 0) {
                throw InputError(path, unreadableFirstLine(text, lineNumber));
            }
            summary.stoppedAtLine = lineNumber;
            break;
        }
        const PosEpoch epoch = fileValues(*record);
        if (summary.count == 0) {
            summary.first = epoch;
        }
        summary.secondToLast = summary.last.secondsOfWeek;
        summary.last = epoch;
        ++summary.count;
        if (moves(*record, velocityThreshold)) {
            if (summary.moving == 0) {
                summary.firstMoving = epoch.secondsOfWeek;
            }
            summary.lastMoving = epoch.secondsOfWeek;
            ++summary.moving;
        }
    }
    if (summary.count == 0) {
        throw InputError(path, "no data line: the file holds only header lines");
    }
    if (summary.count < 2) {
        summary.secondToLast = summary.first.secondsOfWeek;
    }
    return summary;
}

void writePosHeader(std::ostream& out, const PosHeader& header)
{
    line(out, "% program   : " + header.program, false);
    for (const auto& input : header.inputs) {
        line(out, "% inp file  : " + input, false);
    }
    line(out, "% obs start : " + gpstText(header.first), false);
    line(out, "% obs end   : " + gpstText(header.last), false);
    line(out, "% pos mode  : Kinematic", true);
    line(out, "% freqs     : L1+2", true);
    line(out, "% solution  : Forward", true);
    line(out, "% elev mask : 15.0 deg", true);
    line(out, "% dynamics  : on", true);
    line(out, "% tidecorr  : off", true);
    line(out, "% ionos opt : Broadcast", true);
    line(out, "% tropo opt : Saastamoinen", true);
    line(out, "% ephemeris : Broadcast", true);
    line(out, "% navi sys  : GPS Galileo", true);
    line(out, "% amb res   : Continuous", true);
    line(out, "% val thres : 3.0", true);
    line(out, "% ref pos   : " + fixed(header.first.latitude, 9) + " " + fixedWidth(header.first.longitude, 14, 9) + " "
                  + fixedWidth(header.first.height, 10, 4),
         false);
    line(out, "%", false);
    line(out, "% (lat/lon/height=WGS84/ellipsoidal,Q=1:fix,2:float,3:sbas,4:dgps,5:single,6:ppp,ns=# of satellites)", true);
    line(out, "%  GPST          latitude(deg) longitude(deg)  height(m)   Q  ns   sdn(m)   sde(m)   sdu(m)  sdne(m)  "
              "sdeu(m)  sdun(m) age(s)  ratio    vn(m/s)    ve(m/s)    vu(m/s)      sdvn     sdve     sdvu    sdvne    "
              "sdveu    sdvun",
         true);
}

void writePosEpoch(std::ostream& out, const PosEpoch& e)
{
    // RTKLIB's columns: "%4d %10.3f %14.9f %14.9f %10.4f %3d %3d", six "%8.4f", "%6.2f %6.1f",
    // three "%10.5f", then "%9.5f" and five "%8.5f".
    std::string text = integerWidth(e.week, 4);
    const auto column = [&text](const std::string& value) {
        text += ' ';
        text += value;
    };
    column(fixedWidth(e.secondsOfWeek, 10, 3));
    column(fixedWidth(e.latitude, 14, 9));
    column(fixedWidth(e.longitude, 14, 9));
    column(fixedWidth(e.height, 10, 4));
    column(integerWidth(e.quality, 3));
    column(integerWidth(e.satellites, 3));
    for (const double value : {e.sdn, e.sde, e.sdu, e.sdne, e.sdeu, e.sdun}) {
        column(fixedWidth(value, 8, 4));
    }
    column(fixedWidth(e.age, 6, 2));
    column(fixedWidth(e.ratio, 6, 1));
    for (const double value : {e.vn, e.ve, e.vu}) {
        column(fixedWidth(value, 10, 5));
    }
    column(fixedWidth(e.sdvn, 9, 5));
    for (const double value : {e.sdve, e.sdvu, e.sdvne, e.sdveu, e.sdvun}) {
        column(fixedWidth(value, 8, 5));
    }
    line(out, text, true);
}

} // namespace Kelvo::Tool
