// SPDX-License-Identifier: MIT
#include "Geodesy/CoordinateSystem/CoordinateSystemConverter.h"

#include "Geodesy/CoordinateSystem/Ellipsoid.h"
#include "Utils/CoreAssert.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace Kelvo::Geodesy::CoordinateSystem {

using Maths::Matrix3;
using Maths::PointCloudBoundary;
using Maths::PositionVector3;
using Maths::Radian;

double earthRotationRate = 7.292115060085166e-05;

namespace {

constexpr double A = WGS84_SEMI_MAJOR_AXIS();
constexpr double E = WGS84_ECCENTRICITY();

// ecef2llh works from these stored values rather than from e, so that its result does not
// depend on how pow rounds e^2.
/// e^2.
constexpr double E2_STORED() { return 0.006694379990141381; }
/// 1 - e^2; its square root is b / a.
constexpr double ONE_MINUS_E2_STORED() { return 0.9933056200098587; }
/// 1.5 e^4, the coefficient of the Halley correction.
constexpr double HALLEY_COEFFICIENT() { return 6.722208517860797e-5; }
/// (a * 1e-16)^2 [m^2]: a squared horizontal distance below which a point is on the polar axis.
constexpr double POLAR_AXIS_THRESHOLD() { return 4.0680631590769e-19; }

/// Normal gravity at the equator [m/s^2].
constexpr double GAMMA_EQUATOR() { return 9.7803253359; }
/// Somigliana's constant k.
constexpr double SOMIGLIANA_K() { return 0.00193185265241; }
/// 1 + f + m.
constexpr double ONE_PLUS_F_PLUS_M() { return 1.0068025971715875; }
/// 2 f.
constexpr double TWO_F() { return 0.006705621329494961; }
/// 2 / a [1/m].
constexpr double TWO_OVER_A() { return 3.135711885774796e-7; }

/// e^2 as the forward formulas use it.
double eccentricitySquared()
{
    return std::pow(E, 2.0);
}

/// W = sqrt(1 - e^2 sin^2(lat)).
double w(double sinLatitude)
{
    return std::sqrt(1.0 - std::pow(sinLatitude * E, 2));
}

struct SinCos {
    double sin;
    double cos;
};

// sin and cos of an angle [rad], taking out the nearest multiple of pi/2 first so that libm
// only sees |r| <= pi/4, where it is fastest. For |angle| <= pi, every latitude and longitude,
// the subtraction is exact (Sterbenz), so the only added error is the rounding of pi/2 itself,
// 6e-17 rad per quadrant: below the resolution of the angle. The quadrant is applied without
// branches, as random angles would defeat branch prediction. Larger angles, NaN and infinities
// go to libm as they are.
SinCos sinCos(double angle)
{
    constexpr double halfPi = std::numbers::pi / 2.0;
    if (!(std::abs(angle) <= std::numbers::pi)) [[unlikely]] {
        return {std::sin(angle), std::cos(angle)};
    }
    constexpr double roundingShift = 0x1.8p52; // adding and removing it rounds to an integer
    // The nearest quadrant, -2 to 2 (a multiplication: a division would lengthen the chain).
    const double quadrant = (angle * (2.0 / std::numbers::pi) + roundingShift) - roundingShift;
    const double r = angle - quadrant * halfPi;
    const double sinCosR[2] = {std::sin(r), std::cos(r)};
    constexpr double sign[2] = {1.0, -1.0};
    const auto q = static_cast<unsigned>(static_cast<int>(quadrant));
    // Quadrant q: (sin, cos) = (s, c), (c, -s), (-s, -c), (-c, s) for q = 0, 1, 2, 3 (mod 4).
    return {sinCosR[q & 1u] * sign[(q >> 1) & 1u], sinCosR[(q & 1u) ^ 1u] * sign[((q + 1) >> 1) & 1u]};
}

Matrix3 nedRotation(double latitude, double longitude)
{
    const auto [sinLat, cosLat] = sinCos(latitude);
    const auto [sinLon, cosLon] = sinCos(longitude);
    return {-sinLat * cosLon, -sinLat * sinLon, cosLat, //
            -sinLon,          cosLon,           0.0,    //
            -cosLat * cosLon, -cosLat * sinLon, -sinLat};
}

} // namespace

ECEF llh2ecef(LatLonHeight position)
{
    const auto [sinLat, cosLat] = sinCos(position.latitude);
    const auto [sinLon, cosLon] = sinCos(position.longitude);
    const double n = A / w(sinLat);
    const double h = position.height;
    return {(n + h) * cosLat * cosLon, (n + h) * cosLat * sinLon, ((1.0 - eccentricitySquared()) * n + h) * sinLat};
}

// Fukushima's closed form: from the point's reduced coordinates, one Halley step on the
// parametric latitude gives (S1, Cc), proportional to (sin, cos) of the geodetic latitude.
// Working on |z| keeps every quantity non-negative; the sign is restored at the end.
LatLonHeight ecef2llh(ECEF position)
{
    const double ec = std::sqrt(ONE_MINUS_E2_STORED()); // b / a, folded at compile time
    const double p2 = position.x * position.x + position.y * position.y;
    const double longitude = p2 > 0.0 ? std::atan2(position.y, position.x) : 0.0;
    const double absZ = std::abs(position.z);

    double latitude = 0.0;
    double height = 0.0;
    if (p2 <= POLAR_AXIS_THRESHOLD()) {
        latitude = std::numbers::pi / 2.0;
        height = absZ - ec * A;
    } else {
        const double p = std::sqrt(p2);
        const double pa = p / A;
        const double za = absZ / A;
        const double c0 = ec * pa;
        const double s0 = za;
        const double a0 = std::sqrt(s0 * s0 + c0 * c0);
        const double a03 = a0 * a0 * a0;
        const double f0 = pa * a03 - E2_STORED() * c0 * c0 * c0;
        const double d0 = ec * za * a03 + E2_STORED() * za * za * za;
        const double b0 = HALLEY_COEFFICIENT() * za * za * c0 * c0 * pa * (a0 - ec);
        const double s1 = d0 * f0 - b0 * za;
        const double cc = ec * (f0 * f0 - b0 * c0);
        latitude = std::atan(s1 / cc);
        height = (p * cc + absZ * s1 - A * std::sqrt(ONE_MINUS_E2_STORED() * s1 * s1 + cc * cc)) /
                 std::sqrt(s1 * s1 + cc * cc);
    }
    if (position.z < 0.0) {
        latitude = -latitude;
    }
    return {Radian(latitude), Radian(longitude), height};
}

Matrix3 ecef2nedTransformMatrix(LatLonHeight position)
{
    return nedRotation(position.latitude, position.longitude);
}

Matrix3 ned2ecefTransformMatrix(LatLonHeight position)
{
    return nedRotation(position.latitude, position.longitude).transposed();
}

std::tuple<double, double> getRnRe(double latitude)
{
    const double wLat = w(std::sin(latitude));
    return {A / wLat, A * (1.0 - eccentricitySquared()) / std::pow(wLat, 3.0)};
}

double computeGravity(const LatLonHeight& posLlh)
{
    CORE_ASSERT(posLlh.height != 0.0);
    const double sinLat = std::sin(posLlh.latitude);
    const double sin2 = sinLat * sinLat;
    const double h = posLlh.height;
    const double gamma0 = GAMMA_EQUATOR() * (1.0 + SOMIGLIANA_K() * sin2) / w(sinLat);
    const double c = 1.0 + (ONE_PLUS_F_PLUS_M() - TWO_F() * sin2) * TWO_OVER_A() * h;
    return gamma0 * (c + (3.0 / std::pow(A, 2.0)) * h * h);
}

std::tuple<PositionVector3, PositionVector3> computeWnieWnen(const LatLonHeight& position,
                                                             const PositionVector3& velocityNed)
{
    const double latitude = position.latitude;
    const double h = position.height;
    const auto [n, m] = getRnRe(latitude);
    const PositionVector3 wnie(earthRotationRate * std::cos(latitude), 0.0, -earthRotationRate * std::sin(latitude));
    const PositionVector3 wnen(velocityNed.y / (n - h), -velocityNed.x / (m - h),
                               -velocityNed.y * std::tan(latitude) / (n - h));
    return {wnie, wnen};
}

CoordinateSystemConverter::CoordinateSystemConverter(CoordinateSystem output)
    : outputCoordinateSystem(output)
    , inputCoordinateSystem(CoordinateSystem::UNKNOWN)
{
}

CoordinateSystemConverter::CoordinateSystemConverter(CoordinateSystem output,
                                                     std::unique_ptr<LatLonHeight>&& nedCenter)
    : outputCoordinateSystem(output)
    , inputCoordinateSystem(CoordinateSystem::UNKNOWN)
{
    initNedCenter(std::move(nedCenter));
}

CoordinateSystemConverter::CoordinateSystemConverter(CoordinateSystem input, CoordinateSystem output)
    : outputCoordinateSystem(output)
    , inputCoordinateSystem(input)
{
}

void CoordinateSystemConverter::initNedCenter(std::unique_ptr<LatLonHeight>&& nedCenter)
{
    CORE_ASSERT(nedCenter != nullptr);
    this->nedCenter = std::move(nedCenter);
    if (this->nedCenter == nullptr) {
        return; // reported above; the rotations keep their previous values
    }
    ecef2ned = ecef2nedTransformMatrix(*this->nedCenter);
    ned2ecef = ned2ecefTransformMatrix(*this->nedCenter);
}

PositionVector3 CoordinateSystemConverter::convertLlh(LatLonHeight position)
{
    switch (outputCoordinateSystem) {
    case CoordinateSystem::LLH:
        return {position.latitude, position.longitude, position.height};
    case CoordinateSystem::TRF:
        return llh2ecef(position).ecef2PositionVector3();
    case CoordinateSystem::NED:
        if (nedCenter == nullptr) {
            initNedCenter(std::make_unique<LatLonHeight>(position));
        }
        return llh2ecef(position).transformWith(ecef2ned);
    default:
        CORE_NEVER_COME_HERE("Unsupported data format");
        return {};
    }
}

void CoordinateSystemConverter::convertBoundaries(PointCloudBoundary& boundary)
{
    const auto is = [this](CoordinateSystem input, CoordinateSystem output) {
        return inputCoordinateSystem == input && outputCoordinateSystem == output;
    };
    using enum CoordinateSystem;
    if (is(LLH, TRF) || is(TRF, LLH) || is(TRF, NED) || is(NED, TRF)) {
        convertBoundariesWithDeformation(boundary);
    } else if (is(LLH, NED) || is(NED, LLH)) {
        PositionVector3 lower(boundary.x.min, boundary.y.min, boundary.z.min);
        PositionVector3 upper(boundary.x.max, boundary.y.max, boundary.z.max);
        convert(lower, inputCoordinateSystem, outputCoordinateSystem);
        convert(upper, inputCoordinateSystem, outputCoordinateSystem);
        boundary = {{lower.x, upper.x}, {lower.y, upper.y}, {lower.z, upper.z}};
    } else {
        CORE_NEVER_COME_HERE("Operation no supported. Added a new convertion type?");
    }
}

void CoordinateSystemConverter::convertBoundariesWithDeformation(PointCloudBoundary& boundary)
{
    // A curved mapping can push any corner of the box outwards, so all eight are converted.
    constexpr PointCloudBoundary::Range empty{std::numeric_limits<double>::max(),
                                              std::numeric_limits<double>::lowest()};
    PointCloudBoundary result{empty, empty, empty};
    const auto widen = [](PointCloudBoundary::Range& range, double value) {
        range.min = std::min(range.min, value);
        range.max = std::max(range.max, value);
    };
    for (const double x : {boundary.x.min, boundary.x.max}) {
        for (const double y : {boundary.y.min, boundary.y.max}) {
            for (const double z : {boundary.z.min, boundary.z.max}) {
                PositionVector3 corner(x, y, z);
                convert(corner, inputCoordinateSystem, outputCoordinateSystem);
                widen(result.x, corner.x);
                widen(result.y, corner.y);
                widen(result.z, corner.z);
            }
        }
    }
    boundary = result;
}

} // namespace Kelvo::Geodesy::CoordinateSystem
