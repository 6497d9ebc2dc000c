// SPDX-License-Identifier: MIT
#include "Geodesy/CoordinateSystem/CoordinateSystemConverter.h"

#include "Maths/Point.h"
#include "support/AssertionRecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::CoordinateSystem {
namespace {

using Maths::PointCloudBoundary;
using Maths::PositionVector3;
using Maths::Radian;
using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::neverText;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr const char* converterSource = "src/Geodesy/src/Geodesy/CoordinateSystem/CoordinateSystemConverter.cpp";
constexpr const char* converterHeader = "src/Geodesy/include/Geodesy/CoordinateSystem/CoordinateSystemConverter.h";

LatLonHeight llhDeg(double latitude, double longitude, double height)
{
    return {Radian(latitude * std::numbers::pi / 180.0), Radian(longitude * std::numbers::pi / 180.0), height};
}

PositionVector3 asVector(const LatLonHeight& llh)
{
    return {llh.latitude, llh.longitude, llh.height};
}

double norm(const PositionVector3& v)
{
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

void expectNear(const PositionVector3& actual, const PositionVector3& expected, double tolerance)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

TEST(CoordinateSystemConverter, ConvertLlhToEachOutput)
{
    const LatLonHeight position = llhDeg(48.8, 2.3, 120.0);
    EXPECT_EQ(CoordinateSystemConverter(CoordinateSystem::LLH).convertLlh(position), asVector(position));
    EXPECT_EQ(CoordinateSystemConverter(CoordinateSystem::TRF).convertLlh(position),
              llh2ecef(position).ecef2PositionVector3());

    // NED output is the geocentric vector rotated into the centre's axes: the first position
    // becomes the centre, and it converts to (0, 0, -|geocentric distance|) roughly, not to 0.
    CoordinateSystemConverter toNed(CoordinateSystem::NED);
    const PositionVector3 centre = toNed.convertLlh(position);
    EXPECT_EQ(centre, llh2ecef(position).transformWith(ecef2nedTransformMatrix(position)));
    EXPECT_NEAR(norm(centre), norm(llh2ecef(position).ecef2PositionVector3()), 1e-6);
    EXPECT_LT(centre.z, -6.3e6);
    // Later positions keep the first centre.
    const LatLonHeight other = llhDeg(-33.9, 151.2, 5.0);
    EXPECT_EQ(toNed.convertLlh(other), llh2ecef(other).transformWith(ecef2nedTransformMatrix(position)));

    // A centre given at construction is used from the start, also after a move.
    CoordinateSystemConverter given(CoordinateSystem::NED, std::make_unique<LatLonHeight>(position));
    CoordinateSystemConverter moved(std::move(given));
    EXPECT_EQ(moved.convertLlh(other), llh2ecef(other).transformWith(ecef2nedTransformMatrix(position)));
}

TEST(CoordinateSystemConverter, UnsupportedOutputsAndAMissingCentreAreReported)
{
    AssertionRecorder recorder;
    for (const auto output : {CoordinateSystem::PROJECTION, CoordinateSystem::UNKNOWN}) {
        CoordinateSystemConverter converter(output);
        EXPECT_EQ(converter.convertLlh(llhDeg(1, 2, 3)), PositionVector3());
    }
    EXPECT_THAT(recorder.messages(),
                ElementsAre(neverText("Unsupported data format"), neverText("Unsupported data format")));
    EXPECT_EQ(recorder.records()[0].file, converterSource);

    recorder.clear();
    const CoordinateSystemConverter withoutCentre(CoordinateSystem::NED, nullptr);
    EXPECT_THAT(recorder.messages(), ElementsAre(assertText("nedCenter != nullptr")));
    EXPECT_EQ(recorder.records()[0].file, converterSource);
}

TEST(CoordinateSystemConverter, ConvertRoundTripsBetweenTheThreeSystems)
{
    using enum CoordinateSystem;
    const LatLonHeight centre = llhDeg(-23.5, -46.6, 760.0);
    CoordinateSystemConverter converter(NED, std::make_unique<LatLonHeight>(centre));
    const PositionVector3 llh = asVector(llhDeg(-23.6, -46.5, 812.5));
    const PositionVector3 trf = llh2ecef(llhDeg(-23.6, -46.5, 812.5)).ecef2PositionVector3();

    PositionVector3 position = llh;
    converter.convert(position, LLH, LLH);
    EXPECT_EQ(position, llh);
    converter.convert(position, LLH, TRF);
    EXPECT_EQ(position, trf);
    converter.convert(position, TRF, NED);
    EXPECT_EQ(position, ecef2nedTransformMatrix(centre) * trf);
    converter.convert(position, NED, LLH);
    expectNear(position, llh, 1e-9);
    converter.convert(position, LLH, NED);
    converter.convert(position, NED, TRF);
    expectNear(position, trf, 1e-7);
    converter.convert(position, TRF, LLH);
    expectNear(position, llh, 1e-9);

    // Any type with x, y, z accessors converts the same way.
    Maths::Point<double> point(llh.x, llh.y, llh.z);
    converter.convert(point, LLH, TRF);
    EXPECT_EQ(point, Maths::Point<double>(trf.x, trf.y, trf.z));
}

TEST(CoordinateSystemConverter, ConvertGuessesTheCentreFromTheFirstPosition)
{
    using enum CoordinateSystem;
    const LatLonHeight first = llhDeg(60.0, 25.0, 30.0);
    const PositionVector3 trf = llh2ecef(first).ecef2PositionVector3();
    for (const auto from : {LLH, TRF}) {
        CoordinateSystemConverter converter(from, NED);
        PositionVector3 position = from == LLH ? asVector(first) : trf;
        converter.convert(position, from, NED);
        expectNear(position, ecef2nedTransformMatrix(first) * trf, 1e-6);
    }

    // A NED position cannot provide one.
    AssertionRecorder recorder;
    CoordinateSystemConverter converter(NED, TRF);
    PositionVector3 position(1, 2, 3);
    converter.convert(position, NED, TRF);
    EXPECT_THAT(recorder.messages(),
                ElementsAre(neverText("cannot guess NED center. Center has to be provided in constructor")));
    EXPECT_EQ(recorder.records()[0].file, converterHeader);
}

TEST(CoordinateSystemConverter, ConvertReportsUnsupportedPairsAndLeavesThePosition)
{
    using enum CoordinateSystem;
    const std::string fromUnknown = assertText("from != CoordinateSystem::UNKNOWN");
    const std::string toUnknown = assertText("to != CoordinateSystem::UNKNOWN");
    const std::string fromProjection = assertText("from != CoordinateSystem::PROJECTION");
    const std::string toProjection = assertText("to != CoordinateSystem::PROJECTION");
    const std::string noGuess = neverText("Added a new coordinate system, this code might need to be updated #1");
    const std::string noPair = neverText("Added a new coordinate system, this code might need to be updated #2");
    struct Case {
        CoordinateSystem from;
        CoordinateSystem to;
        bool withCentre;
        std::vector<std::string> expected;
    };
    const Case cases[] = {
        {PROJECTION, TRF, true, {fromProjection, noPair}},
        {TRF, PROJECTION, true, {toProjection, noPair}},
        {UNKNOWN, LLH, true, {fromUnknown, noPair}},
        {NED, UNKNOWN, true, {toUnknown, noPair}},
        {UNKNOWN, PROJECTION, true, {fromUnknown, toProjection, noPair}},
        {PROJECTION, NED, false, {fromProjection, noGuess, noPair}},
        {UNKNOWN, UNKNOWN, false, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << static_cast<int>(c.from) << " to " << static_cast<int>(c.to));
        AssertionRecorder recorder;
        CoordinateSystemConverter converter =
            c.withCentre ? CoordinateSystemConverter(TRF, std::make_unique<LatLonHeight>(llhDeg(10, 20, 30)))
                         : CoordinateSystemConverter(TRF);
        PositionVector3 position(0.1, 0.2, 30.0);
        converter.convert(position, c.from, c.to);
        EXPECT_EQ(position, PositionVector3(0.1, 0.2, 30.0));
        EXPECT_THAT(recorder.messages(), ElementsAreArray(c.expected));
        for (const auto& record : recorder.records()) {
            EXPECT_EQ(record.file, converterHeader);
        }
    }
}

TEST(CoordinateSystemConverter, DeformingBoxesEncloseAllEightConvertedCorners)
{
    using enum CoordinateSystem;
    const double degree = std::numbers::pi / 180.0;
    struct Case {
        CoordinateSystem input;
        CoordinateSystem output;
        PointCloudBoundary box;
    };
    const Case cases[] = {
        {LLH, TRF, {{44.0 * degree, 46.0 * degree}, {-1.0 * degree, 3.0 * degree}, {-50.0, 900.0}}},
        {TRF, LLH, {{4.5e6, 4.6e6}, {1.0e5, 2.0e5}, {4.4e6, 4.5e6}}},
        {TRF, NED, {{4.5e6, 4.6e6}, {1.0e5, 2.0e5}, {4.4e6, 4.5e6}}},
        {NED, TRF, {{-100.0, 100.0}, {-20.0, 30.0}, {-6.4e6, -6.3e6}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << static_cast<int>(c.input) << " to " << static_cast<int>(c.output));
        const LatLonHeight centre = llhDeg(45.0, 1.0, 0.0);
        CoordinateSystemConverter converter(c.output, std::make_unique<LatLonHeight>(centre));
        converter.setInputCoordinateSystem(c.input);
        PointCloudBoundary box = c.box;
        converter.convertBoundaries(box);

        // Every corner lies inside, and every bound is reached by some corner.
        std::vector<PositionVector3> corners;
        for (const double x : {c.box.x.min, c.box.x.max}) {
            for (const double y : {c.box.y.min, c.box.y.max}) {
                for (const double z : {c.box.z.min, c.box.z.max}) {
                    PositionVector3 corner(x, y, z);
                    converter.convert(corner, c.input, c.output);
                    corners.push_back(corner);
                }
            }
        }
        const auto reached = [&](double bound, double PositionVector3::*axis) {
            return std::any_of(corners.begin(), corners.end(), [&](const auto& p) { return p.*axis == bound; });
        };
        for (const auto& p : corners) {
            EXPECT_TRUE(box.x.min <= p.x && p.x <= box.x.max);
            EXPECT_TRUE(box.y.min <= p.y && p.y <= box.y.max);
            EXPECT_TRUE(box.z.min <= p.z && p.z <= box.z.max);
        }
        EXPECT_TRUE(reached(box.x.min, &PositionVector3::x) && reached(box.x.max, &PositionVector3::x));
        EXPECT_TRUE(reached(box.y.min, &PositionVector3::y) && reached(box.y.max, &PositionVector3::y));
        EXPECT_TRUE(reached(box.z.min, &PositionVector3::z) && reached(box.z.max, &PositionVector3::z));
    }
}

TEST(CoordinateSystemConverter, LlhNedBoxesConvertTheirTwoCornersWithoutSorting)
{
    using enum CoordinateSystem;
    const double degree = std::numbers::pi / 180.0;
    const PointCloudBoundary llhBox{{45.0 * degree, 45.1 * degree}, {1.0 * degree, 1.1 * degree}, {0.0, 500.0}};
    CoordinateSystemConverter converter(LLH, NED);
    PointCloudBoundary box = llhBox;
    converter.convertBoundaries(box);

    PositionVector3 lower(llhBox.x.min, llhBox.y.min, llhBox.z.min);
    PositionVector3 upper(llhBox.x.max, llhBox.y.max, llhBox.z.max);
    converter.convert(lower, LLH, NED);
    converter.convert(upper, LLH, NED);
    EXPECT_EQ(box, (PointCloudBoundary{{lower.x, upper.x}, {lower.y, upper.y}, {lower.z, upper.z}}));
    // Down decreases as the height grows: the z range comes out inverted and stays so.
    EXPECT_GT(box.z.min, box.z.max);

    converter.setInputCoordinateSystem(NED);
    converter.setOutputCoordinateSystem(LLH);
    converter.convertBoundaries(box);
    EXPECT_NEAR(box.x.min, llhBox.x.min, 1e-12);
    EXPECT_NEAR(box.y.max, llhBox.y.max, 1e-12);
    EXPECT_NEAR(box.z.max, llhBox.z.max, 1e-6);
}

TEST(CoordinateSystemConverter, UnsupportedBoxConversionsAreReportedAndLeaveTheBox)
{
    using enum CoordinateSystem;
    const PointCloudBoundary original{{1, 2}, {3, 4}, {5, 6}};
    const std::pair<CoordinateSystem, CoordinateSystem> pairs[] = {
        {LLH, LLH}, {TRF, TRF}, {NED, NED}, {UNKNOWN, TRF}, {LLH, PROJECTION}, {PROJECTION, NED},
    };
    for (const auto& [input, output] : pairs) {
        AssertionRecorder recorder;
        CoordinateSystemConverter converter(input, output);
        PointCloudBoundary box = original;
        converter.convertBoundaries(box);
        EXPECT_EQ(box, original);
        EXPECT_THAT(recorder.messages(), ElementsAre(neverText("Operation no supported. Added a new convertion type?")));
    }
    // A converter built with only an output has no input system.
    AssertionRecorder recorder;
    CoordinateSystemConverter outputOnly(TRF);
    PointCloudBoundary box = original;
    outputOnly.convertBoundaries(box);
    EXPECT_EQ(box, original);
    EXPECT_EQ(recorder.messages().size(), 1u);
}

} // namespace
} // namespace Kelvo::Geodesy::CoordinateSystem
