// SPDX-License-Identifier: MIT
#include "RtklibPosReader.h"

#include "../GNSS/RTKLIB/StreamNumberScanner.h"
#include "../Trajectory/FileAccess.h"
#include "GnssLeapSeconds.h"
#include "Geodesy/Batch/FileFormatError.h"
#include "Geodesy/CoordinateSystem/Ellipsoid.h"
#include "Geodesy/ECEF.h"
#include "Maths/Degree.h"
#include "Maths/Matrix3.h"
#include "Maths/PositionVector3.h"
#include "Maths/Radian.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <cstdint>
#include <fstream>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace Kelvo::Geodesy::Batch {
namespace {

/// The most fields a data line has: two for the time, seven for a degree-minute-second
/// position, Q and ns, six standard deviations, age and ratio, nine velocity columns.
constexpr std::size_t MAX_FIELDS = 28;

constexpr std::int64_t SECONDS_PER_DAY = 86400;
constexpr std::int64_t SECONDS_PER_WEEK = 604800;
/// JST is UTC + 9 h.
constexpr std::int64_t JST_AHEAD_OF_UTC = 9 * 3600;

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view trim(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// Splits `line` at blanks into `fields` and returns how many fields the line has, also
/// counting those beyond the array's room.
std::size_t splitFields(std::string_view line, std::array<std::string_view, MAX_FIELDS>& fields)
{
    std::size_t count = 0;
    std::size_t index = 0;
    while (true) {
        while (index < line.size() && isBlank(line[index])) {
            ++index;
        }
        if (index == line.size()) {
            return count;
        }
        const std::size_t start = index;
        while (index < line.size() && !isBlank(line[index])) {
            ++index;
        }
        if (count < MAX_FIELDS) {
            fields[count] = line.substr(start, index - start);
        }
        ++count;
    }
}

std::vector<std::string> splitWords(std::string_view text)
{
    std::vector<std::string> words;
    for (text = trim(text); !text.empty(); text = trim(text)) {
        const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return words;
}

/// Reads a plain decimal ("-12.345", "7", ".5") at `cursor` up to the first blank or the
/// end, and moves `cursor` there. Succeeds only when its digits make an integer below 2^53
/// and it has at most 22 decimals, which is everything RTKLIB writes: that integer divided by
/// a power of ten, both exact doubles, is correctly rounded, the very value from_chars gives.
/// Otherwise (exponents, long digit strings, text) it fails and leaves `cursor` alone.
bool parsePlainDecimal(const char*& cursor, const char* end, double& value)
{
    static constexpr std::array<double, 23> powersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr std::uint64_t exactIntegers = std::uint64_t{1} << 53;
    const char* at = cursor;
    const bool negative = at != end && *at == '-';
    at += at != end && (*at == '-' || *at == '+') ? 1 : 0;
    std::uint64_t mantissa = 0;
    const char* const integerStart = at;
    for (; at != end && isDigit(*at); ++at) {
        mantissa = mantissa * 10 + static_cast<std::uint64_t>(*at - '0');
    }
    std::size_t digits = static_cast<std::size_t>(at - integerStart);
    std::size_t decimals = 0;
    if (at != end && *at == '.') {
        const char* const fractionStart = ++at;
        for (; at != end && isDigit(*at); ++at) {
            mantissa = mantissa * 10 + static_cast<std::uint64_t>(*at - '0');
        }
        decimals = static_cast<std::size_t>(at - fractionStart);
        digits += decimals;
    }
    // Up to 19 digits the mantissa cannot have wrapped around.
    if ((at != end && !isBlank(*at)) || digits == 0 || digits > 19 || mantissa > exactIntegers
        || decimals >= powersOfTen.size()) {
        return false;
    }
    const double magnitude = static_cast<double>(mantissa) / powersOfTen[decimals];
    value = negative ? -magnitude : magnitude;
    cursor = at;
    return true;
}

/// A decimal number, the whole text and nothing else, finite: the plain decimals of
/// parsePlainDecimal, anything else through from_chars.
bool parseNumber(std::string_view text, double& value)
{
    const char* cursor = text.data();
    if (parsePlainDecimal(cursor, text.data() + text.size(), value) && cursor == text.data() + text.size()) {
        return true;
    }
    // from_chars takes no leading '+'.
    const std::string_view number = text.starts_with('+') ? text.substr(1) : text;
    double result = 0.0;
    const auto [stop, error] = std::from_chars(number.data(), number.data() + number.size(), result);
    if (error != std::errc{} || stop != number.data() + number.size() || !std::isfinite(result)) {
        return false;
    }
    value = result;
    return true;
}

/// Decimal digits only, no sign.
bool parseUnsigned(std::string_view text, std::uint64_t& value)
{
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && stop == text.data() + text.size() && !text.empty();
}

/// Seconds written as digits with an optional fraction ("518400.000", "05.5"), as whole
/// seconds and the fraction's value, so that the time adds up without rounding twice.
bool parseSeconds(std::string_view text, std::int64_t& whole, double& fraction)
{
    const std::size_t point = text.find('.');
    const std::string_view decimals = point == std::string_view::npos ? std::string_view{} : text.substr(point);
    std::uint64_t seconds = 0;
    if (!parseUnsigned(text.substr(0, point), seconds) || seconds > 1'000'000'000'000ULL
        || !std::all_of(decimals.begin() + (decimals.empty() ? 0 : 1), decimals.end(), isDigit)) {
        return false;
    }
    whole = static_cast<std::int64_t>(seconds);
    fraction = 0.0;
    return decimals.size() <= 1 || parseNumber(decimals, fraction);
}

/// `text` as numbers separated by `separator`: "2023/01/08", "10:00:00.000" (the last part
/// is left as text for parseSeconds).
template <std::size_t N>
bool splitAt(std::string_view text, char separator, std::array<std::string_view, N>& parts)
{
    for (std::size_t i = 0; i + 1 < N; ++i) {
        const std::size_t at = text.find(separator);
        if (at == std::string_view::npos) {
            return false;
        }
        parts[i] = text.substr(0, at);
        text.remove_prefix(at + 1);
    }
    parts[N - 1] = text;
    return text.find(separator) == std::string_view::npos;
}

double degreesToRadians(double degrees) { return Maths::Radian(Maths::Degree(degrees)); }

/// Reads a position file line by line into columns.
class Parser {
public:
    Parser(const std::filesystem::path& path, std::uintmax_t fileSize)
        : fileSize(fileSize)
    {
        result.description.path = path;
    }

    /// One line of the file, without its '\n'.
    void line(std::string_view text)
    {
        ++lineNumber;
        if (!text.empty() && text.back() == '\r') {
            text.remove_suffix(1);
        }
        if (text.starts_with('%')) {
            // Comment lines between solutions say nothing about the columns.
            if (!dataStarted) {
                headerLine(trim(text.substr(1)));
            }
            return;
        }
        if (trim(text).empty()) {
            return;
        }
        dataLine(text);
    }

    RtklibPosSolutions finish()
    {
        if (result.times.empty()) {
            throw FileFormatError(result.description.path, "no solution: the file holds no data line");
        }
        result.description.rowCount = result.times.size();
        return std::move(result);
    }

private:
    [[noreturn]] void fail(const std::string& problem) const
    {
        throw FileFormatError(result.description.path, "line " + std::to_string(lineNumber) + ": " + problem);
    }

    GnssFileDescription& description() { return result.description; }
    std::vector<double>& column(GnssColumn which) { return result.columns[columnIndex(which)]; }

    // ---- Header ------------------------------------------------------------------------

    void headerLine(std::string_view content)
    {
        if (content.starts_with('(')) {
            // "(lat/lon/height=WGS84/ellipsoidal,Q=1:fix,..." or ".../geodetic,..."
            if (content.find("/geodetic") != std::string_view::npos) {
                description().ellipsoidalHeight = false;
            }
            return;
        }
        const std::string_view firstWord = content.substr(0, std::min(content.find_first_of(" \t"), content.size()));
        if (firstWord == "GPST" || firstWord == "UTC" || firstWord == "JST") {
            columnNamesLine(content);
            return;
        }
        const std::size_t colon = content.find(':');
        if (colon == std::string_view::npos) {
            return;
        }
        const std::string_view key = trim(content.substr(0, colon));
        const std::string_view value = trim(content.substr(colon + 1));
        if (key == "program") {
            description().program = std::string(value);
        } else if (key == "ref pos") {
            referenceLine(value);
        }
    }

    /// "ref pos" holds latitude, longitude [deg] and height, or ECEF x, y, z [m] in files of
    /// ECEF form. Only ECEF metres lie thousands of kilometres from the origin, which tells the
    /// two apart whatever the file's form. RTKLIB writes the longitude with a fixed width, so a
    /// negative one can touch the latitude ("40.086179918-105.206044414"): the numbers are read
    /// as stream extraction reads them, a sign starting a new number.
    void referenceLine(std::string_view value)
    {
        GNSS::StreamNumberScanner scanner(value);
        double first = 0.0;
        double second = 0.0;
        double third = 0.0;
        if (!scanner.read(first, second, third)) {
            fail("the ref pos line '" + std::string(value) + "' does not hold three numbers");
        }
        if (std::hypot(first, second, third) > 1.0e5) {
            description().referencePosition = CoordinateSystem::ecef2llh(ECEF(first, second, third));
        } else {
            description().referencePosition =
                LatLonHeight(Maths::Radian(degreesToRadians(first)), Maths::Radian(degreesToRadians(second)), third);
        }
    }

    /// "%  GPST  latitude(deg) longitude(deg)  height(m)   Q  ns   sdn(m) ...": the time
    /// system, the position and velocity forms, and so the number of fields of a data line.
    void columnNamesLine(std::string_view content)
    {
        GnssFileDescription& file = description();
        file.columnNames = splitWords(content);
        const std::string& time = file.columnNames.front();
        file.timeSystem = time == "GPST"  ? GnssTimeSystem::gpst
                        : time == "UTC" ? GnssTimeSystem::utc
                                        : GnssTimeSystem::jst;
        const std::string position = file.columnNames.size() > 1 ? file.columnNames[1] : std::string();
        if (position == "latitude(deg)") {
            file.positionForm = GnssPositionForm::geodeticDegrees;
        } else if (position == "latitude(d'\")") {
            file.positionForm = GnssPositionForm::geodeticDms;
        } else if (position == "x-ecef(m)") {
            file.positionForm = GnssPositionForm::ecef;
        } else if (position == "e-baseline(m)") {
            file.positionForm = GnssPositionForm::enuBaseline;
        } else {
            fail("unknown position column '" + position + "' in the column-name line");
        }
        const auto& names = file.columnNames;
        file.velocityForm = std::ranges::find(names, "vn(m/s)") != names.end()   ? GnssVelocityForm::northEastUp
                          : std::ranges::find(names, "vx(m/s)") != names.end() ? GnssVelocityForm::ecef
                                                                                 : GnssVelocityForm::none;

        // Fields per named column: the time and each d-m-s angle take several.
        const std::size_t angleFields = file.positionForm == GnssPositionForm::geodeticDms ? 3 : 1;
        std::vector<std::size_t> widths{2, angleFields, angleFields, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
        if (file.velocityForm != GnssVelocityForm::none) {
            widths.insert(widths.end(), 9, 1);
        }
        fieldColumn.clear();
        for (std::size_t name = 0; name < widths.size(); ++name) {
            fieldColumn.insert(fieldColumn.end(), widths[name], name);
        }
        haveColumnNames = true;
    }

    /// "field 3 (latitude(deg))", or "field 3" when the header line names fewer columns.
    std::string fieldLabel(std::size_t field) const
    {
        const auto& names = result.description.columnNames;
        std::string label = "field " + std::to_string(field + 1);
        if (field < fieldColumn.size() && fieldColumn[field] < names.size()) {
            label += " (" + names[fieldColumn[field]] + ")";
        }
        return label;
    }

    [[noreturn]] void failFieldCount() const
    {
        std::array<std::string_view, MAX_FIELDS> fields;
        fail("expected " + std::to_string(fieldColumn.size()) + " fields, found "
             + std::to_string(splitFields(dataText, fields)));
    }

    /// The field just read is not what its column holds. A line of the wrong length says so
    /// first: its fields are not where their names are.
    [[noreturn]] void failField(std::string_view expected) const
    {
        std::array<std::string_view, MAX_FIELDS> fields;
        if (splitFields(dataText, fields) != fieldColumn.size()) {
            failFieldCount();
        }
        fail(fieldLabel(fieldIndex - 1) + " '" + std::string(fields[fieldIndex - 1]) + "' is not "
             + std::string(expected));
    }

    // ---- Data --------------------------------------------------------------------------

    /// Settles what the first data line shows: the time form, the columns to fill and, for
    /// ENU baselines, the rotation from the reference position's frame.
    void startData()
    {
        dataStarted = true;
        GnssFileDescription& file = description();
        const std::string_view trimmed = trim(dataText);
        const std::string_view firstField = trimmed.substr(0, std::min(trimmed.find_first_of(" \t"), trimmed.size()));
        const bool calendar = firstField.find('/') != std::string_view::npos;
        file.timeForm = calendar ? GnssTimeForm::calendar : GnssTimeForm::weekSeconds;

        const bool geodetic = file.positionForm != GnssPositionForm::enuBaseline || file.referencePosition;
        if (file.positionForm == GnssPositionForm::enuBaseline && file.referencePosition) {
            referenceEcef = CoordinateSystem::llh2ecef(*file.referencePosition);
            nedToEcef = CoordinateSystem::ned2ecefTransformMatrix(*file.referencePosition);
        }
        const bool ecefPosition = file.positionForm == GnssPositionForm::ecef;
        const bool enu = file.positionForm == GnssPositionForm::enuBaseline;
        const bool velocity = file.velocityForm != GnssVelocityForm::none;
        const bool ecefVelocity = file.velocityForm == GnssVelocityForm::ecef;
        const auto use = [this](GnssColumn from, GnssColumn to, bool wanted) {
            for (auto c = columnIndex(from); wanted && c <= columnIndex(to); ++c) {
                activeColumns.push_back(c);
            }
        };
        use(GnssColumn::latitude, GnssColumn::height, geodetic);
        use(GnssColumn::ecefX, GnssColumn::ecefZ, ecefPosition);
        use(GnssColumn::east, GnssColumn::up, enu);
        use(GnssColumn::sdn, GnssColumn::sdun, !ecefPosition);
        use(GnssColumn::sdx, GnssColumn::sdzx, ecefPosition);
        use(GnssColumn::age, GnssColumn::ratio, true);
        use(GnssColumn::velocityNorth, GnssColumn::velocityDown, velocity);
        use(GnssColumn::velocityX, GnssColumn::velocityZ, ecefVelocity);
        use(GnssColumn::sdvn, GnssColumn::sdvun, velocity && !ecefVelocity);
        use(GnssColumn::sdvx, GnssColumn::sdvzx, ecefVelocity);

        // Lines of one file are about equally long: the file size tells the row count.
        const std::size_t rows = fileSize / (dataText.size() + 1) + 1;
        result.times.reserve(rows);
        result.qualities.reserve(rows);
        result.satellites.reserve(rows);
        for (const std::size_t c : activeColumns) {
            result.columns[c].reserve(rows);
        }
    }

    // The fields of a data line are read in order, each number parsed where it stands.

    /// Skips the blanks before the next field; a line that ends first is too short.
    void nextField()
    {
        while (cursor != lineEnd && isBlank(*cursor)) {
            ++cursor;
        }
        if (cursor == lineEnd) {
            failFieldCount();
        }
        ++fieldIndex;
    }

    std::string_view text()
    {
        nextField();
        const char* const start = cursor;
        while (cursor != lineEnd && !isBlank(*cursor)) {
            ++cursor;
        }
        return {start, static_cast<std::size_t>(cursor - start)};
    }

    double number()
    {
        nextField();
        double value = 0.0;
        if (parsePlainDecimal(cursor, lineEnd, value)) {
            return value;
        }
        --fieldIndex;
        if (!parseNumber(text(), value)) {
            failField("a number");
        }
        return value;
    }

    std::uint64_t count(std::uint64_t maximum, std::string_view expected)
    {
        std::uint64_t value = 0;
        if (!parseUnsigned(text(), value) || value > maximum) {
            failField(expected);
        }
        return value;
    }

    /// Degrees, minutes and seconds in three fields to radians. The sign is the degree
    /// field's, "-0" included, so that "-0 30 00.0" is -0.5 deg.
    double dmsAngle()
    {
        const double degrees = number();
        const double minutes = number();
        const double seconds = number();
        const double magnitude = std::fabs(degrees) + minutes / 60.0 + seconds / 3600.0;
        return degreesToRadians(std::signbit(degrees) ? -magnitude : magnitude);
    }

    /// The time of the line as GPS seconds since the GPS epoch: whole seconds in integers
    /// (calendar, time system and leap seconds are exact), the fraction added last.
    double lineTime()
    {
        std::int64_t seconds = 0;
        double fraction = 0.0;
        std::int64_t whole = 0;
        if (result.description.timeForm == GnssTimeForm::weekSeconds) {
            const auto week = static_cast<std::int64_t>(count(100000, "a GPS week"));
            if (!parseSeconds(text(), whole, fraction)) {
                failField("seconds of the week");
            }
            seconds = week * SECONDS_PER_WEEK + whole;
        } else {
            std::array<std::string_view, 3> date;
            std::array<std::string_view, 3> clock;
            std::uint64_t year = 0;
            std::uint64_t month = 0;
            std::uint64_t day = 0;
            std::uint64_t hour = 0;
            std::uint64_t minute = 0;
            if (!splitAt(text(), '/', date) || !parseUnsigned(date[0], year) || !parseUnsigned(date[1], month)
                || !parseUnsigned(date[2], day) || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) {
                failField("a date yyyy/mm/dd");
            }
            if (!splitAt(text(), ':', clock) || !parseUnsigned(clock[0], hour) || !parseUnsigned(clock[1], minute)
                || !parseSeconds(clock[2], whole, fraction) || hour > 23 || minute > 59 || whole > 60) {
                failField("a time of day hh:mm:ss");
            }
            seconds = daysSinceGpsEpoch(static_cast<std::int64_t>(year), static_cast<unsigned>(month),
                                        static_cast<unsigned>(day))
                        * SECONDS_PER_DAY
                    + static_cast<std::int64_t>(hour * 3600 + minute * 60) + whole;
        }
        switch (result.description.timeSystem) {
        case GnssTimeSystem::jst:
            seconds -= JST_AHEAD_OF_UTC;
            [[fallthrough]];
        case GnssTimeSystem::utc:
            seconds += gpsMinusUtc(seconds);
            break;
        case GnssTimeSystem::gpst:
            break;
        }
        return static_cast<double>(seconds) + fraction;
    }

    void dataLine(std::string_view content)
    {
        if (!haveColumnNames) {
            fail("data line before the column-name header line: its time system and position form are unknown");
        }
        dataText = content;
        cursor = content.data();
        lineEnd = content.data() + content.size();
        fieldIndex = 0;
        if (!dataStarted) {
            startData();
        }

        const double time = lineTime();
        const std::string_view timeText(content.data(), static_cast<std::size_t>(cursor - content.data()));
        const GnssFileDescription& file = result.description;
        std::optional<LatLonHeight> geodetic;
        switch (file.positionForm) {
        case GnssPositionForm::geodeticDegrees: {
            const double latitude = degreesToRadians(number());
            const double longitude = degreesToRadians(number());
            geodetic = LatLonHeight(Maths::Radian(latitude), Maths::Radian(longitude), number());
            break;
        }
        case GnssPositionForm::geodeticDms: {
            const double latitude = dmsAngle();
            const double longitude = dmsAngle();
            geodetic = LatLonHeight(Maths::Radian(latitude), Maths::Radian(longitude), number());
            break;
        }
        case GnssPositionForm::ecef:
        case GnssPositionForm::enuBaseline: {
            const double first = number();
            const double second = number();
            const Maths::PositionVector3 position(first, second, number());
            const bool ecef = file.positionForm == GnssPositionForm::ecef;
            column(ecef ? GnssColumn::ecefX : GnssColumn::east).push_back(position.x);
            column(ecef ? GnssColumn::ecefY : GnssColumn::north).push_back(position.y);
            column(ecef ? GnssColumn::ecefZ : GnssColumn::up).push_back(position.z);
            if (ecef) {
                geodetic = CoordinateSystem::ecef2llh(ECEF(position.x, position.y, position.z));
            } else if (referenceEcef) {
                // e, n, u as north, east, down in the reference position's frame.
                geodetic = CoordinateSystem::ecef2llh(
                    *referenceEcef + nedToEcef * Maths::PositionVector3(position.y, position.x, -position.z));
            }
            break;
        }
        }
        if (geodetic) {
            column(GnssColumn::latitude).push_back(geodetic->latitude);
            column(GnssColumn::longitude).push_back(geodetic->longitude);
            column(GnssColumn::height).push_back(geodetic->height);
        }

        const auto quality = static_cast<std::uint8_t>(count(255, "a Q from 0 to 255"));
        const auto satellites = static_cast<std::uint16_t>(count(65535, "a satellite count"));
        std::array<double, 6> deviations{};
        for (double& deviation : deviations) {
            deviation = number();
        }
        if (file.positionForm == GnssPositionForm::enuBaseline) {
            // sde sdn sdu sden sdnu sdue into the order sdn sde sdu sdne sdeu sdun.
            deviations = {deviations[1], deviations[0], deviations[2], deviations[3], deviations[5], deviations[4]};
        }
        const GnssColumn firstDeviation =
            file.positionForm == GnssPositionForm::ecef ? GnssColumn::sdx : GnssColumn::sdn;
        for (std::size_t i = 0; i < deviations.size(); ++i) {
            result.columns[columnIndex(firstDeviation) + i].push_back(deviations[i]);
        }
        column(GnssColumn::age).push_back(number());
        column(GnssColumn::ratio).push_back(number());
        if (file.velocityForm != GnssVelocityForm::none) {
            velocityColumns(geodetic);
        }

        while (cursor != lineEnd && isBlank(*cursor)) {
            ++cursor;
        }
        if (cursor != lineEnd) {
            failFieldCount();
        }
        if (!result.times.empty() && !(time > result.times.back())) {
            fail("time " + std::string(trim(timeText)) + " is not after the time of line "
                 + std::to_string(previousDataLine));
        }
        previousDataLine = lineNumber;
        result.times.push_back(time);
        result.qualities.push_back(quality);
        result.satellites.push_back(satellites);
    }

    /// vn ve vu into north/east/down; vx vy vz kept and rotated to north/east/down at the
    /// solution's position; the six standard-deviation columns as written.
    void velocityColumns(const std::optional<LatLonHeight>& position)
    {
        const double first = number();
        const double second = number();
        const Maths::PositionVector3 velocity(first, second, number());
        Maths::PositionVector3 ned(velocity.x, velocity.y, -velocity.z);
        GnssColumn firstDeviation = GnssColumn::sdvn;
        if (result.description.velocityForm == GnssVelocityForm::ecef) {
            column(GnssColumn::velocityX).push_back(velocity.x);
            column(GnssColumn::velocityY).push_back(velocity.y);
            column(GnssColumn::velocityZ).push_back(velocity.z);
            constexpr double nan = std::numeric_limits<double>::quiet_NaN();
            ned = position ? CoordinateSystem::ecef2nedTransformMatrix(*position) * velocity
                           : Maths::PositionVector3(nan, nan, nan);
            firstDeviation = GnssColumn::sdvx;
        }
        column(GnssColumn::velocityNorth).push_back(ned.x);
        column(GnssColumn::velocityEast).push_back(ned.y);
        column(GnssColumn::velocityDown).push_back(ned.z);
        for (std::size_t i = 0; i < 6; ++i) {
            result.columns[columnIndex(firstDeviation) + i].push_back(number());
        }
    }

    std::uintmax_t fileSize;
    RtklibPosSolutions result;
    std::size_t lineNumber = 0;
    bool haveColumnNames = false;
    bool dataStarted = false;
    /// For each field of a data line, the index of its name in the column-name line.
    std::vector<std::size_t> fieldColumn;
    std::vector<std::size_t> activeColumns;
    std::optional<ECEF> referenceEcef;
    Maths::Matrix3 nedToEcef;
    /// The data line being read, the next character to read and the fields read so far.
    std::string_view dataText;
    const char* cursor = nullptr;
    const char* lineEnd = nullptr;
    std::size_t fieldIndex = 0;
    std::size_t previousDataLine = 0;
};

} // namespace

RtklibPosSolutions readRtklibPos(const std::filesystem::path& path)
{
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    const int openError = errno;
    std::error_code sizeError;
    if (!file.is_open() || std::filesystem::is_directory(path, sizeError)) {
        throw Trajectory::openFailure(!file.is_open() ? (openError != 0 ? openError : ENOENT) : EISDIR, path);
    }
    const std::uintmax_t size = std::filesystem::file_size(path, sizeError);
    Parser parser(path, sizeError ? 0 : size);

    // Blocks of the file; a line cut at a block's end is moved to the front and completed
    // by the next read.
    std::vector<char> buffer(std::size_t{1} << 20);
    std::size_t filled = 0;
    while (true) {
        if (filled == buffer.size()) {
            buffer.resize(buffer.size() * 2);
        }
        file.read(buffer.data() + filled, static_cast<std::streamsize>(buffer.size() - filled));
        const auto got = static_cast<std::size_t>(file.gcount());
        if (file.bad()) {
            throw Trajectory::openFailure(EIO, path);
        }
        filled += got;
        std::size_t start = 0;
        while (const void* newline = std::memchr(buffer.data() + start, '\n', filled - start)) {
            const auto end = static_cast<std::size_t>(static_cast<const char*>(newline) - buffer.data());
            parser.line(std::string_view(buffer.data() + start, end - start));
            start = end + 1;
        }
        if (got == 0) {
            if (start < filled) {
                parser.line(std::string_view(buffer.data() + start, filled - start));
            }
            break;
        }
        std::memmove(buffer.data(), buffer.data() + start, filled - start);
        filled -= start;
    }
    return parser.finish();
}

} // namespace Kelvo::Geodesy::Batch
