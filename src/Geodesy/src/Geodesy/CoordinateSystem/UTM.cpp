// SPDX-License-Identifier: MIT
#include "Geodesy/CoordinateSystem/UTM.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/Sbet/Reader.h"
#include "Utils/CoreAssert.h"

#include <cmath>
#include <cstdlib>
#include <memory>

namespace Kelvo::Geodesy::CoordinateSystem::UTM {

using namespace Maths::Literals;

int zone(Maths::Degree lat, Maths::Degree lon)
{
    CORE_ASSERT(lat <= +84.0_deg);
    CORE_ASSERT(lat >= -80.0_deg);

    // fmod keeps the sign: the longitude lies strictly between -360 and 360.
    lon = Maths::Degree(std::fmod(lon, 360.0));
    CORE_ASSERT(lon >= -360.0_deg);
    CORE_ASSERT(lon <= +360.0_deg);
    if (lon < 0.0_deg) {
        lon += 360.0_deg;
    }
    CORE_ASSERT(lon >= +0.0_deg);
    CORE_ASSERT(lon <= +360.0_deg);

    // Zone 1 starts at 180 degrees: sector 0 (0 to 6 degrees east) is zone 31. A longitude
    // that is not a number has already been reported; it counts as sector 0.
    const double sector = std::floor(lon / 6.0_deg);
    const int z = ((std::isfinite(sector) ? static_cast<int>(sector) : 0) + 30) % 60 + 1;
    CORE_ASSERT(z >= 1);
    CORE_ASSERT(z <= 60);

    return std::signbit(static_cast<double>(lat)) ? -z : z;
}

int zone(Maths::Radian lat, Maths::Radian lon)
{
    return zone(Maths::Degree(lat), Maths::Degree(lon));
}

int zone(const LatLonHeight& position)
{
    return zone(position.latitude, position.longitude);
}

std::size_t epsgWGS84(int zone)
{
    if (std::abs(zone) < 1) {
        CORE_ASSERT(std::abs( zone ) >= 1);
    }
    if (std::abs(zone) > 60) {
        CORE_ASSERT(std::abs( zone ) <= 60);
    }
    // WGS84 / UTM south, then north.
    if (zone < 0) {
        return 32700u + static_cast<std::size_t>(std::abs(zone));
    }
    return 32600u + static_cast<std::size_t>(zone);
}

LatLonHeight readNthPosition(const std::filesystem::path& path, std::size_t index)
{
    CORE_ASSERT(!path.empty());
    CORE_ASSERT(path.is_absolute());

    const Core::FileInfo fileInfo(path);
    // Value 0: every record counts, whatever its alignment.
    const auto anyAlignment = Trajectory::Reader::ImuAlignmentStatus{0};
    std::unique_ptr<Trajectory::Reader> reader;
    if (path.extension() == ApxRaw::Reader::FILE_EXTENSION()) {
        reader = std::make_unique<ApxRaw::Reader>(fileInfo, anyAlignment);
    } else {
        reader = std::make_unique<Sbet::Reader>(fileInfo, anyAlignment);
    }

    if (index >= reader->getCount()) {
        CORE_ASSERT(index < reader->getCount());
    }
    LatLonHeight position;
    for (std::size_t i = 0; i <= index; ++i) {
        position = reader->getNextLLH().second;
    }
    return position;
}

} // namespace Kelvo::Geodesy::CoordinateSystem::UTM
