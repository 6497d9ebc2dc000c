// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"

#include <cstdint>
#include <string>

namespace Kelvo::Geodesy::CoordinateSystem {

/// The coordinate systems a position can be expressed in. Whatever the system, a position
/// travels as a PositionVector3; for LLH its x is the latitude [rad], y the longitude [rad]
/// and z the ellipsoidal height [m].
enum class CoordinateSystem : std::int32_t {
    TRF = 0,        ///< Earth-centred Earth-fixed Cartesian x, y, z [m] ("trf")
    NED = 1,        ///< north-east-down about a converter's NED centre ("ned")
    LLH = 2,        ///< geodetic latitude, longitude [rad] and height [m] ("llh")
    PROJECTION = 3, ///< a map projection, which the converter never handles ("proj")
    UNKNOWN = 4,    ///< not set; has no name
};

/// The system called `name`, whatever its letter case ("LLH", "Llh" and "llh" are all LLH).
/// Throws OutputCoordinateSystemNotSupportedException, with an empty message, for a name
/// that is not one of "trf", "ned", "llh" and "proj".
KELVO_GEODESY_EXPORT CoordinateSystem fromString(std::string name);

/// The lower-case name of `value`. Throws OutputCoordinateSystemNotSupportedException, with
/// an empty message, for UNKNOWN and for any number outside the enumeration.
KELVO_GEODESY_EXPORT std::string toString(CoordinateSystem value);

} // namespace Kelvo::Geodesy::CoordinateSystem
