// SPDX-License-Identifier: MIT
// The ellipsoid functions against GeographicLib over the globe, plus the values and signs
// that a reference comparison cannot pin down.
#include "Geodesy/CoordinateSystem/Ellipsoid.h"

#include "support/AssertionRecorder.h"

#include <GeographicLib/Ellipsoid.hpp>
#include <GeographicLib/Geocentric.hpp>
#include <GeographicLib/NormalGravity.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <vector>

namespace Kelvo::Geodesy::CoordinateSystem {
namespace {

using Maths::PositionVector3;
using Maths::Radian;

constexpr double pi = std::numbers::pi;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double b = 6356752.314245179; // WGS84 semi-minor axis [m]

double rad(double degrees)
{
    return degrees * pi / 180.0;
}

LatLonHeight llhDeg(double latitude, double longitude, double height)
{
    return {Radian(rad(latitude)), Radian(rad(longitude)), height};
}

void keepWorst(double& worst, double error)
{
    worst = std::max(worst, std::abs(error));
}

TEST(Ellipsoid, ConversionsAgreeWithGeographicLibOverTheGlobe)
{
    // Every degree of latitude plus points metres to micrometres from the poles, longitudes
    // every 7.5 deg over [-180, 180], heights from -10 km to 1000 km.
    std::vector<double> latitudes{89.99999, -89.99999, 89.9999999999, -89.9999999999};
    for (int latitude = -90; latitude <= 90; ++latitude) {
        latitudes.push_back(latitude);
    }
    const GeographicLib::Geocentric& reference = GeographicLib::Geocentric::WGS84();
    double ecefError = 0.0, latitudeError = 0.0, longitudeError = 0.0, heightError = 0.0;
    for (const double lat : latitudes) {
        for (double lon = -180.0; lon <= 180.0; lon += 7.5) {
            for (const double h : {-10000.0, -1.0, 0.0, 0.001, 8848.0, 35000.0, 400000.0, 1000000.0}) {
                double x = 0.0, y = 0.0, z = 0.0, refLat = 0.0, refLon = 0.0, refH = 0.0;
                reference.Forward(lat, lon, h, x, y, z);
                reference.Reverse(x, y, z, refLat, refLon, refH);
                const ECEF ecef = llh2ecef(llhDeg(lat, lon, h));
                for (const double error : {ecef.x - x, ecef.y - y, ecef.z - z}) {
                    keepWorst(ecefError, error);
                }
                const LatLonHeight back = ecef2llh(ECEF(x, y, z));
                keepWorst(latitudeError, back.latitude - rad(refLat));
                keepWorst(heightError, back.height - refH);
                if (x != 0.0 || y != 0.0) { // on the axis itself the longitude is undefined
                    keepWorst(longitudeError, std::remainder(back.longitude - rad(refLon), 2.0 * pi));
                }
            }
        }
    }
    EXPECT_LE(ecefError, 1e-6);
    EXPECT_LE(latitudeError, 1e-12);
    EXPECT_LE(longitudeError, 1e-12);
    EXPECT_LE(heightError, 1e-8);
    std::printf("worst llh2ecef %.3g m; ecef2llh latitude %.3g rad, longitude %.3g rad, height %.3g m\n", ecefError,
                latitudeError, longitudeError, heightError);
}

TEST(Ellipsoid, RadiiAndNedAxesAgreeWithGeographicLib)
{
    const GeographicLib::Ellipsoid& ellipsoid = GeographicLib::Ellipsoid::WGS84();
    double radiusError = 0.0;
    for (double lat = -90.0; lat <= 90.0; lat += 0.25) {
        const auto [n, m] = getRnRe(rad(lat));
        keepWorst(radiusError, n - ellipsoid.TransverseCurvatureRadius(lat));
        keepWorst(radiusError, m - ellipsoid.MeridionalCurvatureRadius(lat));
    }
    EXPECT_LE(radiusError, 1e-7);
    EXPECT_EQ(std::get<0>(getRnRe(0.0)), 6378137.0);
    EXPECT_NEAR(std::get<1>(getRnRe(0.0)), 6335439.327, 1e-3);
    EXPECT_NEAR(std::get<0>(getRnRe(pi / 2)), std::get<1>(getRnRe(pi / 2)), 1e-8);

    // The reference's matrix maps (east, north, up) to ECEF: its columns are the NED axes
    // (north, east, -up). ned2ecef is the transpose, so both are orthonormal as the reference's is.
    double axisError = 0.0;
    for (double lat = -90.0; lat <= 90.0; lat += 5.0) {
        for (double lon = -180.0; lon <= 180.0; lon += 15.0) {
            const Maths::Matrix3 toEcef = ned2ecefTransformMatrix(llhDeg(lat, lon, -50.0));
            ASSERT_EQ(toEcef, ecef2nedTransformMatrix(llhDeg(lat, lon, 1234.0)).transposed());
            double x = 0.0, y = 0.0, z = 0.0;
            std::vector<double> enu(9);
            GeographicLib::Geocentric::WGS84().Forward(lat, lon, 0.0, x, y, z, enu);
            for (unsigned row = 0; row < 3; ++row) {
                keepWorst(axisError, toEcef.at(row, 0) - enu[3 * row + 1]);
                keepWorst(axisError, toEcef.at(row, 1) - enu[3 * row]);
                keepWorst(axisError, toEcef.at(row, 2) + enu[3 * row + 2]);
            }
        }
    }
    EXPECT_LE(axisError, 1e-15);
    std::printf("worst radius of curvature %.3g m, NED axis %.3g\n", radiusError, axisError);
}

TEST(Ellipsoid, ReferencePointsAndThePolarAxis)
{
    EXPECT_EQ(llh2ecef(llhDeg(0, 0, 0)), ECEF(6378137.0, 0.0, 0.0));
    const LatLonHeight southPole = ecef2llh(ECEF(0.0, 0.0, -b));
    EXPECT_EQ(southPole.latitude, -pi / 2.0);
    EXPECT_EQ(southPole.longitude, 0.0);
    EXPECT_NEAR(southPole.height, 0.0, 1e-8);
    // Within a * 1e-16 of the axis a point counts as on it, but keeps its longitude.
    const LatLonHeight nearAxis = ecef2llh(ECEF(-4e-10, 1e-10, b + 1000.0));
    EXPECT_EQ(nearAxis.latitude, pi / 2.0);
    EXPECT_DOUBLE_EQ(nearAxis.longitude, std::atan2(1e-10, -4e-10));
    EXPECT_NEAR(nearAxis.height, 1000.0, 1e-8);
}

TEST(Ellipsoid, GravityIsSomiglianaAtTheSurfaceAndGrowsWithHeight)
{
    {
        // A height of exactly zero is what gets reported, on every call.
        Testing::AssertionRecorder recorder;
        double error = 0.0;
        for (double lat = -90.0; lat <= 90.0; lat += 10.0) {
            const double reference = GeographicLib::NormalGravity::WGS84().SurfaceGravity(lat);
            keepWorst(error, computeGravity(llhDeg(lat, 0, 0.0)) - reference);
        }
        EXPECT_LE(error, 1e-9);
        EXPECT_EQ(computeGravity(llhDeg(0, 0, -0.0)), 9.7803253359);
        ASSERT_EQ(recorder.records().size(), 20u);
        EXPECT_EQ(recorder.messages()[19], Testing::assertText("posLlh.height != 0.0"));
        EXPECT_EQ(recorder.records()[19].file,
                  "src/Geodesy/src/Geodesy/CoordinateSystem/CoordinateSystemConverter.cpp");
    }
    // Any other height passes. The first-order term is added: about +3.09e-6 m/s^2 per metre.
    EXPECT_NEAR(computeGravity(llhDeg(0, 0, 1000.0)) - 9.7803253359, 3.088e-3, 5e-6);
    EXPECT_NEAR(computeGravity(llhDeg(0, 0, -1000.0)) - 9.7803253359, -3.088e-3, 5e-6);
    EXPECT_TRUE(std::isnan(computeGravity(llhDeg(0, 0, nan))));
}

TEST(Ellipsoid, EarthAndTransportRatesInNed)
{
    const double omega = 7.292115060085166e-05;
    ASSERT_EQ(earthRotationRate, omega);
    const auto [wnieEquator, wnenEquator] = computeWnieWnen(llhDeg(0, 0, 0), {0, 0, 0});
    EXPECT_EQ(wnieEquator, PositionVector3(omega, 0.0, 0.0));
    EXPECT_TRUE(wnenEquator.isNull());

    // The transport rate divides by the radii reduced by the height (radii from the reference).
    const double n = GeographicLib::Ellipsoid::WGS84().TransverseCurvatureRadius(45.0) - 2000.0;
    const double m = GeographicLib::Ellipsoid::WGS84().MeridionalCurvatureRadius(45.0) - 2000.0;
    const auto [wnie, wnen] = computeWnieWnen(llhDeg(45, 10, 2000.0), {30.0, -40.0, 5.0});
    EXPECT_NEAR(wnie.x, omega * std::sqrt(0.5), 1e-18);
    EXPECT_NEAR(wnie.z, -omega * std::sqrt(0.5), 1e-18);
    EXPECT_NEAR(wnen.x, -40.0 / n, 1e-18);
    EXPECT_NEAR(wnen.y, -30.0 / m, 1e-18);
    EXPECT_NEAR(wnen.z, 40.0 / n, 1e-18);

    // The rate is library-wide and writable.
    earthRotationRate = 1.0;
    EXPECT_EQ(std::get<0>(computeWnieWnen(llhDeg(0, 0, 0), {0, 0, 0})).x, 1.0);
    earthRotationRate = omega;
}

TEST(Ellipsoid, NanAndInfinitiesGoThroughTheArithmetic)
{
    // ecef2llh: input, whether the latitude comes out NaN, the height (NaN: expected NaN).
    const std::tuple<ECEF, bool, double> cases[] = {
        {{nan, 0.0, 0.0}, true, nan}, {{inf, 0.0, 0.0}, true, nan},   {{1e7, nan, 1e6}, true, nan},
        {{-inf, inf, 0.0}, true, nan}, {{0.0, 0.0, nan}, false, nan}, {{0.0, 0.0, -inf}, false, inf},
    };
    for (const auto& [input, latitudeIsNan, height] : cases) {
        const LatLonHeight result = ecef2llh(input);
        EXPECT_EQ(std::isnan(result.latitude), latitudeIsNan) << input.x << ' ' << input.y << ' ' << input.z;
        EXPECT_TRUE(std::isnan(height) ? std::isnan(result.height) : result.height == height);
    }
    for (const double bad : {nan, inf}) {
        const ECEF badLatitude = llh2ecef(LatLonHeight(Radian(bad), Radian(0.5), 0.0));
        EXPECT_TRUE(std::isnan(badLatitude.x) && std::isnan(badLatitude.y) && std::isnan(badLatitude.z));
        const ECEF badLongitude = llh2ecef(LatLonHeight(Radian(0.5), Radian(-bad), 0.0));
        EXPECT_TRUE(std::isnan(badLongitude.x) && std::isnan(badLongitude.y) && std::isfinite(badLongitude.z));
        EXPECT_TRUE(std::isnan(ecef2nedTransformMatrix(LatLonHeight(Radian(bad), Radian(0), 0)).at(0, 0)));
        EXPECT_TRUE(std::isnan(std::get<0>(getRnRe(bad))));
    }
    const auto [wnie, wnen] = computeWnieWnen(llhDeg(0, 0, 0), {inf, nan, 0});
    EXPECT_EQ(wnie.x, earthRotationRate);
    EXPECT_EQ(wnen.y, -inf);
    EXPECT_TRUE(std::isnan(wnen.x));
}

} // namespace
} // namespace Kelvo::Geodesy::CoordinateSystem
