// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/ECEF.h"
#include "Geodesy/GeodesyExport.h"
#include "Geodesy/LatLonHeight.h"
#include "Maths/Matrix3.h"
#include "Maths/PositionVector3.h"

#include <tuple>

// Geodetic (latitude, longitude [rad], ellipsoidal height [m]) to and from Earth-centred
// Earth-fixed x, y, z [m] on the WGS84 ellipsoid, the rotation between ECEF and a local
// north-east-down frame, and the terms of an inertial navigation step: radii of curvature,
// normal gravity, Earth rate and transport rate in NED. None of these functions checks its
// input: NaN and infinities go through IEEE arithmetic (no iteration, so nothing can hang),
// and the only assertion is computeGravity's.
namespace Kelvo::Geodesy::CoordinateSystem {

/// WGS84 semi-major axis a [m].
constexpr double WGS84_SEMI_MAJOR_AXIS() { return 6378137.0; }
/// WGS84 first eccentricity e (dimensionless).
constexpr double WGS84_ECCENTRICITY() { return 0.081819190842622; }

/// Earth rotation rate [rad/s] used by computeWnieWnen. Library-wide and writable, so that a
/// program can adopt another value; starts at 7.292115060085166e-05.
extern KELVO_GEODESY_EXPORT double earthRotationRate;

/// Geodetic to ECEF: X = (N + h) cos(lat) cos(lon), Y = (N + h) cos(lat) sin(lon),
/// Z = ((1 - e^2) N + h) sin(lat), N the prime-vertical radius. Agrees with a reference
/// implementation to better than a micrometre from -10 km to 1000 km of height.
KELVO_GEODESY_EXPORT ECEF llh2ecef(LatLonHeight position);

/// ECEF to geodetic, in closed form: a starting estimate and one Halley correction, no loop.
/// Latitude within 1e-12 rad and height within 1e-8 m of the exact values from -10 km to
/// 1000 km of height. Longitude is atan2(y, x), and 0 on the axis itself; points within
/// a * 1e-16 of the polar axis get latitude +-pi/2 and height |z| - b.
KELVO_GEODESY_EXPORT LatLonHeight ecef2llh(ECEF position);

/// The rotation from ECEF to the north-east-down frame at (latitude, longitude); the height
/// is ignored. Rows are the north, east and down unit vectors in ECEF.
KELVO_GEODESY_EXPORT Maths::Matrix3 ecef2nedTransformMatrix(LatLonHeight position);

/// The rotation from NED at (latitude, longitude) to ECEF: the transpose of
/// ecef2nedTransformMatrix. The height is ignored.
KELVO_GEODESY_EXPORT Maths::Matrix3 ned2ecefTransformMatrix(LatLonHeight position);

/// The radii of curvature [m] at `latitude` [rad]: element 0 is the prime-vertical radius
/// N = a / W, element 1 the meridian radius M = a (1 - e^2) / W^3, W = sqrt(1 - e^2 sin^2(lat)).
KELVO_GEODESY_EXPORT std::tuple<double, double> getRnRe(double latitude);

/// Normal gravity [m/s^2] at `posLlh`: Somigliana's surface gravity times a second-order
/// height factor 1 + (1 + f + m - 2f sin^2(lat)) (2/a) h + (3/a^2) h^2. The first-order term
/// is added, so the value grows with height: the library's established behaviour. Asserts
/// "posLlh.height != 0.0" (a height of exactly zero is reported; NaN is not) and computes
/// the value anyway.
KELVO_GEODESY_EXPORT double computeGravity(const LatLonHeight& posLlh);

/// The Earth rate Wnie = (w cos(lat), 0, -w sin(lat)) and the transport rate
/// Wnen = (vE / (N - h), -vN / (M - h), -vE tan(lat) / (N - h)) [rad/s], both in NED, for a
/// velocity (vN, vE, vD) [m/s] at `position`. w is earthRotationRate. The radii are reduced
/// by the height, not increased: that is the library's established behaviour, keep it.
KELVO_GEODESY_EXPORT std::tuple<Maths::PositionVector3, Maths::PositionVector3>
computeWnieWnen(const LatLonHeight& position, const Maths::PositionVector3& velocityNed);

} // namespace Kelvo::Geodesy::CoordinateSystem
