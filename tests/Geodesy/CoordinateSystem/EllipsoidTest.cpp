// SPDX-License-Identifier: MIT
// The ellipsoid functions against GeographicLib over the globe, plus the values and signs
// that a reference comparison cannot pin down.
#include "Geodesy/CoordinateSystem/Ellipsoid.h"

#include "support/AssertionRecorder.h"

#include <GeographicLib/Ellipsoid.hpp>
#include <GeographicLib/Geocentric.hpp>
#include <GeographicLib/NormalGravity.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <vector>

namespace Kelvo::Geodesy::CoordinateSystem {
namespace {

using Maths::Matrix3;
using Maths::PositionVector3;
using Maths::Radian;
using Testing::AssertionRecorder;
using ::testing::ElementsAre;

constexpr double pi = std::numbers::pi;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

double toRadians(double degrees)
{
    return degrees * pi / 180.0;
}

LatLonHeight llhDeg(double latitude, double longitude, double height)
{
    return {Radian(toRadians(latitude)), Radian(toRadians(longitude)), height};
}

struct GridPoint {
    double latitude;  // [deg]
    double longitude; // [deg]
    double height;    // [m]
};

// Every whole degree of latitude (poles included) plus points a few metres and a few
// millimetres from the poles, longitudes every 7.5 deg from -180 to 180, heights -10 km..1000 km.
std::vector<GridPoint> grid()
{
    std::vector<double> latitudes;
    for (int latitude = -90; latitude <= 90; ++latitude) {
        latitudes.push_back(latitude);
    }
    for (const double nearPole : {89.99999, 89.99999999, 89.9999999999}) {
        latitudes.push_back(nearPole);
        latitudes.push_back(-nearPole);
    }
    std::vector<GridPoint> points;
    for (const double latitude : latitudes) {
        for (double longitude = -180.0; longitude <= 180.0; longitude += 7.5) {
            for (const double height : {-10000.0, -1.0, 0.0, 0.001, 100.0, 8848.0, 35000.0, 400000.0, 1000000.0}) {
                points.push_back({latitude, longitude, height});
            }
        }
    }
    return points;
}

double angleDifference(double a, double b)
{
    return std::abs(std::remainder(a - b, 2.0 * pi));
}

TEST(Ellipsoid, ConversionsAgreeWithGeographicLibOverTheGlobe)
{
    const GeographicLib::Geocentric& reference = GeographicLib::Geocentric::WGS84();
    double worstEcef = 0.0;
    double worstLatitude = 0.0;
    double worstLongitude = 0.0;
    double worstHeight = 0.0;
    double worstRoundTripLatitude = 0.0;
    double worstRoundTripHeight = 0.0;
    for (const GridPoint& point : grid()) {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        reference.Forward(point.latitude, point.longitude, point.height, x, y, z);
        const LatLonHeight geodetic = llhDeg(point.latitude, point.longitude, point.height);
        const ECEF ecef = llh2ecef(geodetic);
        worstEcef = std::max({worstEcef, std::abs(ecef.x - x), std::abs(ecef.y - y), std::abs(ecef.z - z)});

        double latitude = 0.0;
        double longitude = 0.0;
        double height = 0.0;
        reference.Reverse(x, y, z, latitude, longitude, height);
        const LatLonHeight back = ecef2llh(ECEF(x, y, z));
        worstLatitude = std::max(worstLatitude, std::abs(back.latitude - toRadians(latitude)));
        worstHeight = std::max(worstHeight, std::abs(back.height - height));
        // On the axis itself the longitude is undefined.
        if (x != 0.0 || y != 0.0) {
            worstLongitude = std::max(worstLongitude, angleDifference(back.longitude, toRadians(longitude)));
        }

        const LatLonHeight roundTrip = ecef2llh(ecef);
        worstRoundTripLatitude =
            std::max(worstRoundTripLatitude, std::abs(roundTrip.latitude - geodetic.latitude));
        worstRoundTripHeight = std::max(worstRoundTripHeight, std::abs(roundTrip.height - geodetic.height));
    }
    EXPECT_LE(worstEcef, 1e-6);
    EXPECT_LE(worstLatitude, 1e-12);
    EXPECT_LE(worstLongitude, 1e-12);
    EXPECT_LE(worstHeight, 1e-8);
    EXPECT_LE(worstRoundTripLatitude, 1e-12);
    EXPECT_LE(worstRoundTripHeight, 1e-8);
    std::printf("worst llh2ecef %.3g m; ecef2llh latitude %.3g rad, longitude %.3g rad, height %.3g m; "
                "round trip latitude %.3g rad, height %.3g m\n",
                worstEcef, worstLatitude, worstLongitude, worstHeight, worstRoundTripLatitude,
                worstRoundTripHeight);
}

TEST(Ellipsoid, RadiiOfCurvatureAgreeWithGeographicLib)
{
    const GeographicLib::Ellipsoid& reference = GeographicLib::Ellipsoid::WGS84();
    double worst = 0.0;
    for (double latitude = -90.0; latitude <= 90.0; latitude += 0.25) {
        const auto [n, m] = getRnRe(toRadians(latitude));
        worst = std::max({worst, std::abs(n - reference.TransverseCurvatureRadius(latitude)),
                          std::abs(m - reference.MeridionalCurvatureRadius(latitude))});
    }
    EXPECT_LE(worst, 1e-7);
    std::printf("worst radius of curvature %.3g m\n", worst);

    const auto [nEquator, mEquator] = getRnRe(0.0);
    EXPECT_EQ(nEquator, 6378137.0);
    EXPECT_NEAR(mEquator, 6335439.327, 1e-3);
    const auto [nPole, mPole] = getRnRe(pi / 2.0);
    EXPECT_NEAR(nPole, mPole, 1e-8);
}

TEST(Ellipsoid, NedRotationsAreOrthonormalTransposesWithGeographicLibAxes)
{
    const GeographicLib::Geocentric& reference = GeographicLib::Geocentric::WGS84();
    double worstOrthonormality = 0.0;
    double worstAxis = 0.0;
    for (double latitude = -90.0; latitude <= 90.0; latitude += 5.0) {
        for (double longitude = -180.0; longitude <= 180.0; longitude += 15.0) {
            const LatLonHeight position = llhDeg(latitude, longitude, 1234.0);
            const Matrix3 toNed = ecef2nedTransformMatrix(position);
            const Matrix3 toEcef = ned2ecefTransformMatrix(position);
            ASSERT_EQ(toEcef, toNed.transposed());

            // The reference's matrix maps (east, north, up) to ECEF: its columns are the axes.
            double x = 0.0;
            double y = 0.0;
            double z = 0.0;
            std::vector<double> enuToEcef(9);
            reference.Forward(latitude, longitude, 1234.0, x, y, z, enuToEcef);
            for (unsigned row = 0; row < 3; ++row) {
                const double north = enuToEcef[3 * row + 1];
                const double east = enuToEcef[3 * row];
                const double down = -enuToEcef[3 * row + 2];
                worstAxis = std::max({worstAxis, std::abs(toEcef.at(row, 0) - north),
                                      std::abs(toEcef.at(row, 1) - east), std::abs(toEcef.at(row, 2) - down)});
                for (unsigned column = 0; column < 3; ++column) {
                    double product = 0.0;
                    for (unsigned k = 0; k < 3; ++k) {
                        product += toNed.at(row, k) * toEcef.at(k, column);
                    }
                    worstOrthonormality =
                        std::max(worstOrthonormality, std::abs(product - (row == column ? 1.0 : 0.0)));
                }
            }
        }
    }
    EXPECT_LE(worstOrthonormality, 1e-15);
    EXPECT_LE(worstAxis, 1e-15);
    std::printf("worst NED orthonormality %.3g, axis difference %.3g\n", worstOrthonormality, worstAxis);
}

TEST(Ellipsoid, ReferencePointsAndThePolarAxis)
{
    EXPECT_EQ(llh2ecef(llhDeg(0, 0, 0)), ECEF(6378137.0, 0.0, 0.0));

    const double b = 6356752.314245179;
    for (const double z : {b, -b, b + 1000.0}) {
        SCOPED_TRACE(z);
        const LatLonHeight pole = ecef2llh(ECEF(0.0, 0.0, z));
        EXPECT_EQ(pole.latitude, std::copysign(pi / 2.0, z));
        EXPECT_EQ(pole.longitude, 0.0);
        EXPECT_NEAR(pole.height, std::abs(z) - b, 1e-8);
    }
    // Within a * 1e-16 of the axis the point counts as on it; the longitude is still atan2.
    const LatLonHeight nearAxis = ecef2llh(ECEF(-4e-10, 1e-10, -b));
    EXPECT_EQ(nearAxis.latitude, -pi / 2.0);
    EXPECT_DOUBLE_EQ(nearAxis.longitude, std::atan2(1e-10, -4e-10));
    // Longitude keeps the sign of y at +-180 deg.
    EXPECT_EQ(ecef2llh(ECEF(-7e6, 0.0, 0.0)).longitude, pi);
    EXPECT_EQ(ecef2llh(ECEF(-7e6, -0.0, 0.0)).longitude, -pi);
}

TEST(Ellipsoid, GravityIsSomiglianaAtTheSurfaceAndGrowsWithHeight)
{
    const GeographicLib::NormalGravity& reference = GeographicLib::NormalGravity::WGS84();
    {
        // A height of exactly zero is what gets reported, on every call.
        AssertionRecorder recorder;
        double worst = 0.0;
        for (double latitude = -90.0; latitude <= 90.0; latitude += 10.0) {
            worst = std::max(worst,
                             std::abs(computeGravity(llhDeg(latitude, 0, 0.0)) - reference.SurfaceGravity(latitude)));
        }
        EXPECT_LE(worst, 1e-9);
        EXPECT_EQ(recorder.records().size(), 19u);
        EXPECT_EQ(recorder.messages()[0], Testing::assertText("posLlh.height != 0.0"));
        EXPECT_EQ(recorder.records()[0].file, "src/Geodesy/src/Geodesy/CoordinateSystem/CoordinateSystemConverter.cpp");
        EXPECT_EQ(computeGravity(llhDeg(0, 0, 0.0)), 9.7803253359);
        EXPECT_EQ(computeGravity(llhDeg(0, 0, -0.0)), 9.7803253359);
    }
    // Any other height, NaN included, passes the check. The first-order term is added:
    // about +3.09e-6 m/s^2 per metre at the equator.
    const double gammaEquator = 9.7803253359;
    EXPECT_GT(computeGravity(llhDeg(0, 0, 1.0)), gammaEquator);
    EXPECT_NEAR(computeGravity(llhDeg(0, 0, 1000.0)) - gammaEquator, 3.088e-3, 5e-6);
    EXPECT_NEAR(computeGravity(llhDeg(0, 0, -1000.0)) - gammaEquator, -3.088e-3, 5e-6);
    EXPECT_TRUE(std::isnan(computeGravity(llhDeg(0, 0, nan))));
}

TEST(Ellipsoid, EarthAndTransportRatesInNed)
{
    const double omega = 7.292115060085166e-05;
    ASSERT_EQ(earthRotationRate, omega);

    const auto [wnieEquator, wnenEquator] = computeWnieWnen(llhDeg(0, 0, 0), {0, 0, 0});
    EXPECT_EQ(wnieEquator, PositionVector3(omega, 0.0, 0.0));
    EXPECT_TRUE(wnenEquator.isNull());

    // The transport rate divides by the radii reduced by the height. Radii from the reference.
    const GeographicLib::Ellipsoid& ellipsoid = GeographicLib::Ellipsoid::WGS84();
    const double n = ellipsoid.TransverseCurvatureRadius(45.0) - 2000.0;
    const double m = ellipsoid.MeridionalCurvatureRadius(45.0) - 2000.0;
    const auto [wnie, wnen] = computeWnieWnen(llhDeg(45, 10, 2000.0), {30.0, -40.0, 5.0});
    EXPECT_NEAR(wnie.x, omega * std::sqrt(0.5), 1e-18);
    EXPECT_EQ(wnie.y, 0.0);
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
    struct Case {
        ECEF input;
        bool latitudeIsNan;
        double height; // NaN: expected NaN
    };
    const Case cases[] = {
        {{nan, 0.0, 0.0}, true, nan},    {{inf, 0.0, 0.0}, true, nan},   {{1e7, nan, 1e6}, true, nan},
        {{-inf, inf, 0.0}, true, nan},   {{1e7, 0.0, nan}, true, nan},   {{0.0, 0.0, nan}, false, nan},
        {{0.0, 0.0, -inf}, false, inf},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.input.x << ' ' << c.input.y << ' ' << c.input.z);
        const LatLonHeight result = ecef2llh(c.input);
        EXPECT_EQ(std::isnan(result.latitude), c.latitudeIsNan);
        if (std::isnan(c.height)) {
            EXPECT_TRUE(std::isnan(result.height));
        } else {
            EXPECT_EQ(result.height, c.height);
        }
    }

    for (const double badLatitude : {nan, inf}) {
        const LatLonHeight bad(Radian(badLatitude), Radian(0.5), 0.0);
        const ECEF ecef = llh2ecef(bad);
        EXPECT_TRUE(std::isnan(ecef.x) && std::isnan(ecef.y) && std::isnan(ecef.z));
        EXPECT_TRUE(std::isnan(ecef2nedTransformMatrix(bad).at(0, 0)));
        EXPECT_TRUE(std::isnan(std::get<0>(getRnRe(badLatitude))));
    }
    for (const double badLongitude : {nan, -inf}) {
        const ECEF ecef = llh2ecef(LatLonHeight(Radian(0.5), Radian(badLongitude), 0.0));
        EXPECT_TRUE(std::isnan(ecef.x) && std::isnan(ecef.y));
        EXPECT_TRUE(std::isfinite(ecef.z));
    }
    EXPECT_EQ(llh2ecef(llhDeg(0, 0, inf)).x, inf);
    const auto [wnie, wnen] = computeWnieWnen(llhDeg(0, 0, 0), {inf, nan, 0});
    EXPECT_EQ(wnie.x, earthRotationRate);
    EXPECT_EQ(wnen.y, -inf);
    EXPECT_TRUE(std::isnan(wnen.x));
}

} // namespace
} // namespace Kelvo::Geodesy::CoordinateSystem
