// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "OutputFile.h"
#include "Table.h"

#include "Geodesy/CoordinateSystem/CoordinateSystemConverter.h"
#include "Geodesy/CoordinateSystem/UTM.h"
#include "Maths/Degree.h"

#include <cmath>

namespace Kelvo::Tool {
namespace {

using Geodesy::CoordinateSystem::CoordinateSystem;
using Maths::PositionVector3;

std::vector<std::string> columnsOf(CoordinateSystem system)
{
    switch (system) {
    case CoordinateSystem::LLH:
        return {"latitude_deg", "longitude_deg", "height_m"};
    case CoordinateSystem::NED:
        return {"north_m", "east_m", "down_m"};
    default:
        return {"x_m", "y_m", "z_m"};
    }
}

/// Latitude and longitude are typed and printed in degrees; the library works in radians.
PositionVector3 toLibrary(PositionVector3 position, CoordinateSystem system)
{
    if (system == CoordinateSystem::LLH) {
        position.x = Maths::Degree(position.x).toRadian();
        position.y = Maths::Degree(position.y).toRadian();
    }
    return position;
}

PositionVector3 fromLibrary(PositionVector3 position, CoordinateSystem system)
{
    if (system == CoordinateSystem::LLH) {
        position.x = Maths::Radian(position.x).toDegree();
        position.y = Maths::Radian(position.y).toDegree();
    }
    return position;
}

} // namespace

void runConvert(const ConvertOptions& options, Context& context)
{
    if (options.values.empty() || options.values.size() % 3 != 0) {
        throw UsageError("convert takes positions as three values each (" + std::to_string(options.values.size())
                         + " given)");
    }
    for (const double value : options.values) {
        if (!std::isfinite(value)) {
            throw UsageError("convert takes finite numbers only");
        }
    }
    if (options.from == CoordinateSystem::NED && !options.center) {
        throw UsageError("--from ned needs --center LAT,LON,H: a NED position means nothing without its centre");
    }

    // Without a centre, the converter takes the first position as the NED centre.
    std::optional<Geodesy::CoordinateSystem::CoordinateSystemConverter> converter;
    if (options.center) {
        const auto& [latitude, longitude, height] = *options.center;
        converter.emplace(options.to, std::make_unique<Geodesy::LatLonHeight>(
                                          Maths::Radian(Maths::Degree(latitude)), Maths::Radian(Maths::Degree(longitude)), height));
        converter->setInputCoordinateSystem(options.from);
    } else {
        converter.emplace(options.from, options.to);
    }

    DataOutput output(context.out, options.output);
    TableWriter table(output.stream(), columnsOf(options.to));
    for (std::size_t i = 0; i < options.values.size(); i += 3) {
        PositionVector3 position =
            toLibrary({options.values[i], options.values[i + 1], options.values[i + 2]}, options.from);
        converter->convert(position, options.from, options.to);
        position = fromLibrary(position, options.to);
        table.row({position.x, position.y, position.z});
    }
    table.finish();
    output.commit();
}

void runUtm(const UtmOptions& options, Context& context)
{
    if (!std::isfinite(options.latitude) || !std::isfinite(options.longitude)) {
        throw UsageError("utm takes a finite latitude and longitude in degrees");
    }
    const int zone = Geodesy::CoordinateSystem::UTM::zone(Maths::Degree(options.latitude), Maths::Degree(options.longitude));
    TableWriter table(context.out, {"zone", "hemisphere", "epsg"});
    table.row({static_cast<double>(std::abs(zone)), std::string(zone < 0 ? "S" : "N"),
               static_cast<double>(Geodesy::CoordinateSystem::UTM::epsgWGS84(zone))});
    table.finish();
}

} // namespace Kelvo::Tool
