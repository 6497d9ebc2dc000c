// SPDX-License-Identifier: MIT
#pragma once

#include "Projection/ProjectionExport.h"

#include <string>
#include <vector>

namespace Kelvo::Projection {

/// What a coordinate reference system is, as PROJ reads it from a user's text: its name, its
/// kind, its identifier and its axes in the order `CrsTransformer` writes its columns
/// (longitude or easting first). Made by `describeCrs`.
struct CrsDescription {
    enum class Kind {
        geographic2D, ///< longitude, latitude
        geographic3D, ///< longitude, latitude, ellipsoidal height
        geocentric,   ///< Earth-centred X, Y, Z
        projected,    ///< easting, northing
        compound,     ///< a horizontal CRS plus a vertical one
        other,        ///< engineering and other derived CRSs; a bound CRS has the kind of its base
    };

    struct Axis {
        std::string name;         ///< "Easting", "Geodetic latitude"
        std::string abbreviation; ///< "E", "Lat"
        std::string direction;    ///< "east", "north", "up", "geocentricX"
        std::string unit;         ///< "metre", "degree", "US survey foot"
        double unitInSI = 0.0;    ///< the unit in metres or radians: 1 for metre, pi/180 for degree
    };

    std::string name;       ///< "ETRS89 / UTM zone 32N"; "unknown" for most PROJ strings
    Kind kind = Kind::other;
    std::string identifier; ///< "EPSG:25832", empty when PROJ knows none
    std::vector<Axis> axes;
};

/// "geographic 2D", "geographic 3D", "geocentric", "projected", "compound" or "other".
KELVO_PROJECTION_EXPORT const char* toString(CrsDescription::Kind kind);

/// Describes the CRS that `crs` names (any text `CrsTransformer` accepts). Throws
/// `Geodesy::Batch::ArgumentError` "<argument> '<crs>': <reason>" when PROJ cannot read it,
/// when it is not a CRS, when a bare name is not one of PROJ's names (PROJ itself would take
/// the nearest one, "Amersfoort" for "foo"), or when it is a vertical CRS alone, which has no
/// x and y.
KELVO_PROJECTION_EXPORT CrsDescription describeCrs(const std::string& crs, const std::string& argument = "CRS");

/// Checks a user's CRS text as `describeCrs` does, throwing the same errors.
KELVO_PROJECTION_EXPORT void validateCrs(const std::string& crs, const std::string& argument = "CRS");

} // namespace Kelvo::Projection
