// SPDX-License-Identifier: MIT
// The RTKLIB line parser against the reading it stands for: formatted extraction from a
// std::istringstream in the classic locale, group by group. For every line of the input
// both must accept or refuse it alike and, when they accept, give the same bits.
// Input: text; each line is parsed on its own.
#include "FuzzSupport.h"

#include "Geodesy/GNSS/RtkLibPosLine.h"
#include "Maths/Degree.h"
#include "Maths/Radian.h"

#include <array>
#include <locale>
#include <optional>
#include <sstream>
#include <string>

using namespace Kelvo;
using namespace Kelvo::Fuzzing;

namespace {

/// The 24 columns as stream extraction reads them, or nothing.
struct Columns {
    std::uint64_t week = 0;
    std::uint64_t quality = 0;
    std::uint64_t satellites = 0;
    std::array<double, 21> values{}; // seconds, lat, lon, height, sdn..sdun, age, ratio, vn, ve, vu, sdvn..sdvun
};

std::optional<Columns> streamColumns(const std::string& line)
{
    std::istringstream stream(line);
    stream.imbue(std::locale::classic());
    Columns c;
    auto& v = c.values;
    stream >> c.week >> v[0];
    stream >> v[1] >> v[2] >> v[3];
    stream >> c.quality >> c.satellites;
    for (std::size_t i = 4; i < 21; ++i) {
        stream >> v[i];
    }
    if (stream.fail()) {
        return std::nullopt;
    }
    return c;
}

double radians(double degrees)
{
    return Maths::Radian(Maths::Degree(degrees));
}

void compare(const std::string& line)
{
    const auto parsed = Geodesy::GNSS::parseRtkLibPosLine(line);
    const auto expected = streamColumns(line);
    expect(parsed.has_value() == expected.has_value(), "the line parser and stream extraction disagree on a line");
    if (!parsed) {
        return;
    }
    const auto& v = expected->values;
    const auto& p = *parsed;
    const double pairs[][2] = {
        {p.gpsTime.secondsInWeek, v[0]},
        {p.position.latitude, radians(v[1])},
        {p.position.longitude, radians(v[2])},
        {p.position.height, -v[3]},
        {p.positionCovariance.xy, v[7]},
        {p.positionCovariance.yz, v[8]},
        {p.positionCovariance.xz, v[9]},
        {p.velocity.getX(), v[12]},
        {p.velocity.getY(), v[13]},
        {p.velocity.getZ(), -v[14]},
        {p.velocityCovariance.xy, v[18]},
        {p.velocityCovariance.yz, v[19]},
        {p.velocityCovariance.xz, v[20]},
    };
    for (const auto& [got, want] : pairs) {
        expect(sameBits(got, want), "the line parser reads another number than stream extraction");
    }
    expect(p.gpsTime.weekNumber == expected->week, "the line parser reads another week than stream extraction");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    quietLibrary();
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        compare(text.substr(start, end - start));
        start = end + 1;
    }
    return 0;
}
