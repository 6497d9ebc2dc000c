// SPDX-License-Identifier: MIT
#include "Geodesy/CoordinateSystem/CoordinateSystemConverter.h"

#include "Maths/Point.h"
#include "support/AssertionRecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::CoordinateSystem {
namespace {

using enum CoordinateSystem;
using Maths::PointCloudBoundary;
using Maths::PositionVector3;
using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::neverText;
using ::testing::ElementsAre;

constexpr double degree = std::numbers::pi / 180.0;
constexpr const char* converterSource = "src/Geodesy/src/Geodesy/CoordinateSystem/CoordinateSystemConverter.cpp";
constexpr const char* converterHeader = "src/Geodesy/include/Geodesy/CoordinateSystem/CoordinateSystemConverter.h";

LatLonHeight llhDeg(double latitude, double longitude, double height)
{
    return {Maths::Radian(latitude * degree), Maths::Radian(longitude * degree), height};
}

PositionVector3 trf(const LatLonHeight& llh)
{
    return llh2ecef(llh).ecef2PositionVector3();
}

void expectNear(const PositionVector3& actual, const PositionVector3& expected, double tolerance)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

TEST(CoordinateSystemConverter, ConvertLlhToEachOutput)
{
    const LatLonHeight first = llhDeg(48.8, 2.3, 120.0);
    const LatLonHeight other = llhDeg(-33.9, 151.2, 5.0);
    EXPECT_EQ(CoordinateSystemConverter(LLH).convertLlh(first),
              PositionVector3(first.latitude, first.longitude, 120.0));
    EXPECT_EQ(CoordinateSystemConverter(TRF).convertLlh(first), trf(first));

    // NED is the geocentric vector rotated into the centre's axes: the first position becomes
    // the centre and converts to (-21 km, 0, -(a W + h)), not to 0; later ones keep that centre.
    CoordinateSystemConverter toNed(NED);
    const PositionVector3 centre = toNed.convertLlh(first);
    EXPECT_EQ(centre, ecef2nedTransformMatrix(first) * trf(first));
    expectNear(centre, {-21.2e3, 0.0, -6366.16e3}, 100.0);
    EXPECT_EQ(toNed.convertLlh(other), ecef2nedTransformMatrix(first) * trf(other));
}

TEST(CoordinateSystemConverter, UnsupportedOutputsAndAMissingCentreAreReported)
{
    AssertionRecorder recorder;
    EXPECT_EQ(CoordinateSystemConverter(PROJECTION).convertLlh(llhDeg(1, 2, 3)), PositionVector3());
    EXPECT_EQ(CoordinateSystemConverter(UNKNOWN).convertLlh(llhDeg(1, 2, 3)), PositionVector3());
    const CoordinateSystemConverter withoutCentre(NED, nullptr);
    const std::string unsupported = neverText("Unsupported data format");
    ASSERT_THAT(recorder.messages(), ElementsAre(unsupported, unsupported, assertText("nedCenter != nullptr")));
    EXPECT_EQ(recorder.records()[0].file, converterSource);
    EXPECT_EQ(recorder.records()[2].file, converterSource);
}

TEST(CoordinateSystemConverter, ConvertRoundTripsBetweenTheThreeSystems)
{
    const LatLonHeight centre = llhDeg(-23.5, -46.6, 760.0);
    const LatLonHeight point = llhDeg(-23.6, -46.5, 812.5);
    const PositionVector3 llh(point.latitude, point.longitude, point.height);
    const std::map<CoordinateSystem, PositionVector3> expected = {
        {LLH, llh}, {TRF, trf(point)}, {NED, ecef2nedTransformMatrix(centre) * trf(point)}};
    CoordinateSystemConverter converter(NED, std::make_unique<LatLonHeight>(centre));
    const CoordinateSystem path[] = {LLH, TRF, NED, LLH, NED, TRF, LLH};
    PositionVector3 position = llh;
    for (std::size_t i = 1; i < std::size(path); ++i) {
        converter.convert(position, path[i - 1], path[i]);
        expectNear(position, expected.at(path[i]), path[i] == LLH ? 1e-9 : 1e-7);
    }

    // Any type with x, y, z accessors converts the same way.
    Maths::Point<double> asPoint(llh.x, llh.y, llh.z);
    converter.convert(asPoint, LLH, TRF);
    EXPECT_EQ(asPoint, Maths::Point<double>(trf(point).x, trf(point).y, trf(point).z));
}

TEST(CoordinateSystemConverter, ConvertGuessesTheCentreFromAnLlhOrTrfPosition)
{
    const LatLonHeight first = llhDeg(60.0, 25.0, 30.0);
    for (const auto from : {LLH, TRF}) {
        CoordinateSystemConverter converter(from, NED);
        PositionVector3 position = from == LLH ? PositionVector3(first.latitude, first.longitude, 30.0) : trf(first);
        converter.convert(position, from, NED);
        expectNear(position, ecef2nedTransformMatrix(first) * trf(first), 1e-6);
    }
    AssertionRecorder recorder;
    CoordinateSystemConverter converter(NED, TRF);
    PositionVector3 position(1, 2, 3);
    converter.convert(position, NED, TRF);
    ASSERT_THAT(recorder.messages(),
                ElementsAre(neverText("cannot guess NED center. Center has to be provided in constructor")));
    EXPECT_EQ(recorder.records()[0].file, converterHeader);
}

TEST(CoordinateSystemConverter, ConvertReportsUnsupportedPairsAndLeavesThePosition)
{
    const std::string fromUnknown = assertText("from != CoordinateSystem::UNKNOWN");
    const std::string toUnknown = assertText("to != CoordinateSystem::UNKNOWN");
    const std::string fromProjection = assertText("from != CoordinateSystem::PROJECTION");
    const std::string toProjection = assertText("to != CoordinateSystem::PROJECTION");
    const std::string noGuess = neverText("Added a new coordinate system, this code might need to be updated #1");
    const std::string noPair = neverText("Added a new coordinate system, this code might need to be updated #2");
    const std::tuple<CoordinateSystem, CoordinateSystem, bool, std::vector<std::string>> cases[] = {
        {PROJECTION, TRF, true, {fromProjection, noPair}},
        {TRF, PROJECTION, true, {toProjection, noPair}},
        {UNKNOWN, LLH, true, {fromUnknown, noPair}},
        {NED, UNKNOWN, true, {toUnknown, noPair}},
        {UNKNOWN, PROJECTION, true, {fromUnknown, toProjection, noPair}},
        {PROJECTION, NED, false, {fromProjection, noGuess, noPair}},
        {UNKNOWN, UNKNOWN, false, {}},
    };
    for (const auto& [from, to, withCentre, expected] : cases) {
        SCOPED_TRACE(::testing::Message() << static_cast<int>(from) << " to " << static_cast<int>(to));
        AssertionRecorder recorder;
        CoordinateSystemConverter converter = withCentre
            ? CoordinateSystemConverter(TRF, std::make_unique<LatLonHeight>(llhDeg(10, 20, 30)))
            : CoordinateSystemConverter(TRF);
        PositionVector3 position(0.1, 0.2, 30.0);
        converter.convert(position, from, to);
        EXPECT_EQ(position, PositionVector3(0.1, 0.2, 30.0));
        EXPECT_EQ(recorder.messages(), expected);
        EXPECT_TRUE(std::all_of(recorder.records().begin(), recorder.records().end(),
                                [](const auto& record) { return record.file == converterHeader; }));
    }
}

TEST(CoordinateSystemConverter, DeformingBoxesAreTheBoundsOfTheEightConvertedCorners)
{
    const PointCloudBoundary llhBox{{44.0 * degree, 46.0 * degree}, {-1.0 * degree, 3.0 * degree}, {-50.0, 900.0}};
    const PointCloudBoundary trfBox{{4.5e6, 4.6e6}, {1.0e5, 2.0e5}, {4.4e6, 4.5e6}};
    const PointCloudBoundary nedBox{{-100.0, 100.0}, {-20.0, 30.0}, {-6.4e6, -6.3e6}};
    const std::tuple<CoordinateSystem, CoordinateSystem, PointCloudBoundary> cases[] = {
        {LLH, TRF, llhBox}, {TRF, LLH, trfBox}, {TRF, NED, trfBox}, {NED, TRF, nedBox}};
    for (const auto& [input, output, original] : cases) {
        SCOPED_TRACE(::testing::Message() << static_cast<int>(input) << " to " << static_cast<int>(output));
        CoordinateSystemConverter converter(output, std::make_unique<LatLonHeight>(llhDeg(45.0, 1.0, 0.0)));
        converter.setInputCoordinateSystem(input);
        PointCloudBoundary box = original;
        converter.convertBoundaries(box);

        PointCloudBoundary expected{{1e300, -1e300}, {1e300, -1e300}, {1e300, -1e300}};
        for (int corner = 0; corner < 8; ++corner) {
            PositionVector3 p((corner & 1) ? original.x.max : original.x.min,
                              (corner & 2) ? original.y.max : original.y.min,
                              (corner & 4) ? original.z.max : original.z.min);
            converter.convert(p, input, output);
            for (auto [range, value] : {std::pair{&expected.x, p.x}, {&expected.y, p.y}, {&expected.z, p.z}}) {
                *range = {std::min(range->min, value), std::max(range->max, value)};
            }
        }
        EXPECT_EQ(box, expected);
    }
}

TEST(CoordinateSystemConverter, LlhNedBoxesConvertTheirTwoCornersWithoutSorting)
{
    const PointCloudBoundary llhBox{{45.0 * degree, 45.1 * degree}, {1.0 * degree, 1.1 * degree}, {0.0, 500.0}};
    CoordinateSystemConverter converter(LLH, NED);
    PointCloudBoundary box = llhBox;
    converter.convertBoundaries(box);
    PositionVector3 lower(llhBox.x.min, llhBox.y.min, llhBox.z.min);
    PositionVector3 upper(llhBox.x.max, llhBox.y.max, llhBox.z.max);
    converter.convert(lower, LLH, NED);
    converter.convert(upper, LLH, NED);
    EXPECT_EQ(box, (PointCloudBoundary{{lower.x, upper.x}, {lower.y, upper.y}, {lower.z, upper.z}}));
    EXPECT_GT(box.z.min, box.z.max); // down decreases as the height grows, and is not re-sorted

    converter.setInputCoordinateSystem(NED);
    converter.setOutputCoordinateSystem(LLH);
    converter.convertBoundaries(box); // and back
    EXPECT_NEAR(box.y.max, llhBox.y.max, 1e-12);
    EXPECT_NEAR(box.z.max, llhBox.z.max, 1e-6);
}

TEST(CoordinateSystemConverter, UnsupportedBoxConversionsAreReportedAndLeaveTheBox)
{
    const PointCloudBoundary original{{1, 2}, {3, 4}, {5, 6}};
    std::vector<CoordinateSystemConverter> converters;
    converters.emplace_back(TRF); // no input system
    for (const auto& [input, output] :
         {std::pair{LLH, LLH}, {TRF, TRF}, {NED, NED}, {UNKNOWN, TRF}, {LLH, PROJECTION}}) {
        converters.emplace_back(input, output);
    }
    for (auto& converter : converters) {
        AssertionRecorder recorder;
        PointCloudBoundary box = original;
        converter.convertBoundaries(box);
        EXPECT_EQ(box, original);
        EXPECT_THAT(recorder.messages(),
                    ElementsAre(neverText("Operation no supported. Added a new convertion type?")));
    }
}

} // namespace
} // namespace Kelvo::Geodesy::CoordinateSystem
