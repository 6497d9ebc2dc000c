// SPDX-License-Identifier: MIT
// Transformations checked against GeographicLib's projections and geocentric conversion, the
// column conventions, the errors, and identical bits for every thread count.
#include "Projection/CrsTransformer.h"

#include "support/LogRecorder.h"

#include "Geodesy/Batch/ArgumentError.h"

#include <GeographicLib/Geocentric.hpp>
#include <GeographicLib/TransverseMercator.hpp>
#include <GeographicLib/UTMUPS.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <string>
#include <thread>
#include <vector>

namespace Kelvo::Projection {
namespace {

using Geodesy::Batch::ArgumentError;
using Geodesy::Batch::ThreadCount;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double millimetre = 1e-3;

double rad(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

/// EPSG:25832 as `projinfo EPSG:25832 -o WKT2:2019` (PROJ 9.1) writes it, shortened: two of
/// the datum ensemble's members, no area of use.
constexpr const char* etrs89Utm32Wkt = R"wkt(PROJCRS["ETRS89 / UTM zone 32N",
    BASEGEOGCRS["ETRS89",
        ENSEMBLE["European Terrestrial Reference System 1989 ensemble",
            MEMBER["European Terrestrial Reference Frame 1989"],
            MEMBER["European Terrestrial Reference Frame 2014"],
            ELLIPSOID["GRS 1980",6378137,298.257222101,
                LENGTHUNIT["metre",1]],
            ENSEMBLEACCURACY[0.1]],
        PRIMEM["Greenwich",0,
            ANGLEUNIT["degree",0.0174532925199433]],
        ID["EPSG",4258]],
    CONVERSION["UTM zone 32N",
        METHOD["Transverse Mercator",
            ID["EPSG",9807]],
        PARAMETER["Latitude of natural origin",0,
            ANGLEUNIT["degree",0.0174532925199433],
            ID["EPSG",8801]],
        PARAMETER["Longitude of natural origin",9,
            ANGLEUNIT["degree",0.0174532925199433],
            ID["EPSG",8802]],
        PARAMETER["Scale factor at natural origin",0.9996,
            SCALEUNIT["unity",1],
            ID["EPSG",8805]],
        PARAMETER["False easting",500000,
            LENGTHUNIT["metre",1],
            ID["EPSG",8806]],
        PARAMETER["False northing",0,
            LENGTHUNIT["metre",1],
            ID["EPSG",8807]]],
    CS[Cartesian,2],
        AXIS["(E)",east,
            ORDER[1],
            LENGTHUNIT["metre",1]],
        AXIS["(N)",north,
            ORDER[2],
            LENGTHUNIT["metre",1]],
    ID["EPSG",25832]])wkt";

/// Geodetic columns [rad, rad, m] of a grid over zone 32 and a degree beyond, equator to 80 N.
struct Geodetic {
    std::vector<double> latitude, longitude, height;
    std::vector<double> latitudeDegrees, longitudeDegrees;
};

Geodetic grid()
{
    Geodetic points;
    for (double lat = 0.0; lat <= 80.0; lat += 4.25) {
        for (double lon = 5.0; lon <= 13.0; lon += 0.8) {
            points.latitudeDegrees.push_back(lat);
            points.longitudeDegrees.push_back(lon);
            points.latitude.push_back(rad(lat));
            points.longitude.push_back(rad(lon));
            points.height.push_back(lat * 10.0 - 50.0);
        }
    }
    return points;
}

struct Columns {
    std::vector<double> x, y, z;
    explicit Columns(std::size_t n)
        : x(n), y(n), z(n)
    {
    }
};

Columns transformed(const CrsTransformer& transformer, const Geodetic& points, ThreadCount threads = ThreadCount())
{
    Columns out(points.latitude.size());
    EXPECT_EQ(transformer.transform(points.latitude, points.longitude, points.height, out.x, out.y, out.z, threads),
              0U);
    return out;
}

TEST(CrsTransformer, UtmZone32AgreesWithGeographicLibToAMillimetre)
{
    const Geodetic points = grid();
    // WGS84 UTM from GeographicLib's UTMUPS; ETRS89 UTM is the same projection on GRS80.
    const GeographicLib::TransverseMercator grs80Utm(6378137.0, 1.0 / 298.257222101, 0.9996);
    const auto wgs84 = [&](std::size_t i, double& easting, double& northing) {
        int zone = 0;
        bool north = false;
        GeographicLib::UTMUPS::Forward(points.latitudeDegrees[i], points.longitudeDegrees[i], zone, north, easting,
                                       northing, 32);
    };
    const auto etrs89 = [&](std::size_t i, double& easting, double& northing) {
        grs80Utm.Forward(9.0, points.latitudeDegrees[i], points.longitudeDegrees[i], easting, northing);
        easting += 500000.0;
    };
    const struct {
        const char* target;
        bool onGrs80;
    } cases[] = {
        {"EPSG:32632", false},
        {"+proj=utm +zone=32 +datum=WGS84", false},
        {"EPSG:25832", true},
        {etrs89Utm32Wkt, true},
    };
    for (const auto& c : cases) {
        const Columns out = transformed(CrsTransformer(CrsTransformer::Frame::geodetic, c.target), points);
        for (std::size_t i = 0; i < points.latitude.size(); ++i) {
            double easting = 0.0, northing = 0.0;
            if (c.onGrs80) {
                etrs89(i, easting, northing);
            } else {
                wgs84(i, easting, northing);
            }
            ASSERT_NEAR(out.x[i], easting, millimetre) << c.target << " at " << points.latitudeDegrees[i] << ", "
                                                       << points.longitudeDegrees[i];
            ASSERT_NEAR(out.y[i], northing, millimetre) << c.target;
            ASSERT_EQ(out.z[i], points.height[i]) << c.target;
        }
    }
}

TEST(CrsTransformer, GeodeticAndEcefFramesMeetGeographicAndGeocentricCrs)
{
    const Geodetic points = grid();
    const std::size_t n = points.latitude.size();
    // Radians, latitude first, in; degrees, longitude first, out.
    const Columns degrees = transformed(CrsTransformer(CrsTransformer::Frame::geodetic, "EPSG:4979"), points);
    const Columns ecef = transformed(CrsTransformer(CrsTransformer::Frame::geodetic, "EPSG:4978"), points);
    Columns same(n);
    const CrsTransformer identity(CrsTransformer::Frame::ecef, "EPSG:4978");
    EXPECT_EQ(identity.transform(ecef.x, ecef.y, ecef.z, same.x, same.y, same.z), 0U);
    for (std::size_t i = 0; i < n; ++i) {
        EXPECT_NEAR(degrees.x[i], points.longitudeDegrees[i], 1e-12);
        EXPECT_NEAR(degrees.y[i], points.latitudeDegrees[i], 1e-12);
        EXPECT_EQ(degrees.z[i], points.height[i]);
        double x = 0.0, y = 0.0, z = 0.0;
        GeographicLib::Geocentric::WGS84().Forward(points.latitudeDegrees[i], points.longitudeDegrees[i],
                                                   points.height[i], x, y, z);
        EXPECT_NEAR(ecef.x[i], x, 1e-6);
        EXPECT_NEAR(ecef.y[i], y, 1e-6);
        EXPECT_NEAR(ecef.z[i], z, 1e-6);
        // ECEF to EPSG:4978 is the identity.
        EXPECT_EQ(same.x[i], ecef.x[i]);
        EXPECT_EQ(same.y[i], ecef.y[i]);
        EXPECT_EQ(same.z[i], ecef.z[i]);
    }
}

TEST(CrsTransformer, AuthorityLatitudeFirstAxesComeLongitudeFirst)
{
    // EPSG:4326 orders its axes latitude, longitude; the columns are longitude first both ways.
    std::vector<double> x{11.576124}, y{48.137154}, z{560.0};
    CrsTransformer("EPSG:4326", "EPSG:4979").transformInPlace(x, y, z);
    EXPECT_NEAR(x[0], 11.576124, 1e-12);
    EXPECT_NEAR(y[0], 48.137154, 1e-12);
    std::vector<double> latitude{rad(48.137154)}, longitude{rad(11.576124)}, height{560.0};
    CrsTransformer(CrsTransformer::Frame::geodetic, "EPSG:4326").transformInPlace(latitude, longitude, height);
    EXPECT_NEAR(latitude[0], 11.576124, 1e-12);
    EXPECT_NEAR(longitude[0], 48.137154, 1e-12);
}

TEST(CrsTransformer, InverseReturnsTheGeodeticColumns)
{
    const Geodetic points = grid();
    const CrsTransformer forward(CrsTransformer::Frame::geodetic, "EPSG:25832");
    const CrsTransformer inverse = forward.inverse();
    EXPECT_EQ(inverse.inputNames(), (std::array<std::string, 3>{"x", "y", "z"}));
    EXPECT_EQ(inverse.outputNames(), (std::array<std::string, 3>{"latitude", "longitude", "height"}));
    Columns back = transformed(forward, points);
    EXPECT_EQ(inverse.transformInPlace(back.x, back.y, back.z), 0U);
    for (std::size_t i = 0; i < points.latitude.size(); ++i) {
        EXPECT_NEAR(back.x[i], points.latitude[i], 1e-12);
        EXPECT_NEAR(back.y[i], points.longitude[i], 1e-12);
        EXPECT_EQ(back.z[i], points.height[i]);
    }
}

TEST(CrsTransformer, PointsPROJCannotTransformBecomeNaNAndAreCounted)
{
    Testing::LogRecorder logs;
    std::vector<double> latitude{rad(48.0), rad(95.0), nan, rad(47.0)};
    std::vector<double> longitude{rad(11.0), rad(11.0), rad(11.0), rad(12.0)};
    std::vector<double> height{0.0, 0.0, 0.0, 0.0};
    const CrsTransformer utm(CrsTransformer::Frame::geodetic, "EPSG:25832");
    EXPECT_EQ(utm.transformInPlace(latitude, longitude, height), 2U);
    for (const std::size_t failed : {1, 2}) {
        EXPECT_TRUE(std::isnan(latitude[failed]) && std::isnan(longitude[failed])) << failed;
    }
    EXPECT_TRUE(std::isfinite(latitude[0]) && std::isfinite(latitude[3]) && std::isfinite(longitude[3]));
    EXPECT_THAT(logs.at(Core::Logging::Level::debug), ::testing::Contains(StartsWith("PROJ: ")));
}

TEST(CrsTransformer, UnusableCrsTextsNameTheArgumentAndPROJsReason)
{
    Testing::LogRecorder logs; // PROJ's messages go to the debug log, never to stderr
    ::testing::internal::CaptureStderr();
    const struct {
        std::string source, target, start, reason;
    } cases[] = {
        {"EPSG:4979", "EPSG:999999", "target CRS 'EPSG:999999': ", "crs not found"},
        {"EPSG:999999", "EPSG:4979", "source CRS 'EPSG:999999': ", "crs not found"},
        {"EPSG:4979", "+proj=bogus", "target CRS '+proj=bogus': ", "Unknown projection"},
        {"EPSG:4979", " ", "target CRS ' ': ", "is empty"},
        {"EPSG:4979", "foo", "target CRS 'foo': ", "no CRS has this name (the nearest is '"},
        {"EPSG:4979", "EPSG:5783", "target CRS 'EPSG:5783': ", "a vertical CRS alone has no x and y"},
        {"urn:ogc:def:ellipsoid:EPSG::7019", "EPSG:4979", "source CRS 'urn:ogc:def:ellipsoid:EPSG::7019': ",
         "is not a coordinate reference system"},
        {std::string("EPSG:4979\0+proj=x", 17), "EPSG:4978", "source CRS 'EPSG:4979\\0+proj=x': ",
         "contains a NUL character"},
    };
    for (const auto& c : cases) {
        try {
            CrsTransformer(c.source, c.target);
            ADD_FAILURE() << c.target << " accepted";
        } catch (const ArgumentError& error) {
            EXPECT_THAT(error.what(), StartsWith(c.start));
            EXPECT_THAT(error.what(), HasSubstr(c.reason));
        }
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(CrsTransformer, ColumnsOfUnequalLengthAreNamed)
{
    const CrsTransformer geodetic(CrsTransformer::Frame::geodetic, "EPSG:25832");
    const CrsTransformer ecef(CrsTransformer::Frame::ecef, "EPSG:25832");
    std::vector<double> three(3), two(2);
    const auto message = [](auto&& call) {
        try {
            call();
        } catch (const ArgumentError& error) {
            return std::string(error.what());
        }
        return std::string("no error");
    };
    EXPECT_EQ(message([&] { geodetic.transformInPlace(three, two, three); }), "longitude has 2 values, latitude has 3");
    EXPECT_EQ(message([&] { geodetic.transform(three, three, three, three, three, two); }),
              "output z has 2 values, latitude has 3");
    EXPECT_EQ(message([&] { ecef.transformInPlace(two, two, three); }), "z has 3 values, x has 2");
    EXPECT_EQ(message([&] { geodetic.inverse().transform(three, three, three, two, three, three); }),
              "output latitude has 2 values, x has 3");
    std::vector<double> empty;
    EXPECT_EQ(geodetic.transformInPlace(empty, empty, empty), 0U);
}

/// Enough points for several threads to share a call.
Geodetic aroundMunich(std::size_t count)
{
    Geodetic points;
    for (std::size_t i = 0; i < count; ++i) {
        points.latitude.push_back(rad(48.0 + 0.3 * static_cast<double>(i % 997) / 997.0));
        points.longitude.push_back(rad(11.3 + 0.5 * static_cast<double>(i % 1009) / 1009.0));
        points.height.push_back(500.0 + static_cast<double>(i % 101));
    }
    return points;
}

bool identicalBits(const Columns& a, const Columns& b)
{
    const std::size_t bytes = a.x.size() * sizeof(double);
    return a.x.size() == b.x.size() && std::memcmp(a.x.data(), b.x.data(), bytes) == 0 &&
           std::memcmp(a.y.data(), b.y.data(), bytes) == 0 && std::memcmp(a.z.data(), b.z.data(), bytes) == 0;
}

TEST(CrsTransformerThreads, EveryThreadCountGivesIdenticalBits)
{
    const Geodetic points = aroundMunich(100000);
    const CrsTransformer transformer(CrsTransformer::Frame::geodetic, "EPSG:25832");
    const Columns single = transformed(transformer, points, ThreadCount(1));
    for (const unsigned threads : {2U, 0U, 3U}) {
        EXPECT_TRUE(identicalBits(transformed(transformer, points, ThreadCount(threads)), single)) << threads;
    }
    Columns inPlace{0};
    inPlace.x = points.latitude;
    inPlace.y = points.longitude;
    inPlace.z = points.height;
    transformer.transformInPlace(inPlace.x, inPlace.y, inPlace.z, ThreadCount(2));
    EXPECT_TRUE(identicalBits(inPlace, single));
}

TEST(CrsTransformerThreads, OneTransformerServesConcurrentCalls)
{
    const Geodetic points = aroundMunich(40000);
    const CrsTransformer transformer(CrsTransformer::Frame::geodetic, "EPSG:25832");
    const Columns expected = transformed(transformer, points);
    std::vector<Columns> results(4, Columns(points.latitude.size()));
    {
        std::vector<std::jthread> callers;
        for (std::size_t caller = 0; caller < results.size(); ++caller) {
            callers.emplace_back([&, caller] {
                Columns& out = results[caller];
                transformer.transform(points.latitude, points.longitude, points.height, out.x, out.y, out.z,
                                      ThreadCount(caller % 2 == 0 ? 1 : 2));
            });
        }
    }
    for (const Columns& result : results) {
        EXPECT_TRUE(identicalBits(result, expected));
    }
}

} // namespace
} // namespace Kelvo::Projection
