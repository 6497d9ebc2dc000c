// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"
#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/CoordinateSystem/UTM.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::CoordinateSystem {
namespace {

using Maths::Degree;
using Maths::Radian;
using Testing::AssertionRecorder;
using Testing::assertText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* utmSource = "src/Geodesy/src/Geodesy/CoordinateSystem/UTM.cpp";

TEST(UTM, ZoneIsTheSignedSixDegreeSectorWithoutRegionalExceptions)
{
    // Latitudes outside the UTM band are reported, and still zoned.
    const std::string north = assertText("lat <= +84.0_deg");
    const std::string south = assertText("lat >= -80.0_deg");
    const struct { double lat, lon; int zone; std::vector<std::string> reports; } cases[] = {
        {0.0, 0.0, 31, {}},          {-0.0, 0.0, -31, {}},        {0.0, 5.999, 31, {}},       {0.0, 6.0, 32, {}},
        {45.0, -3.0, 30, {}},        {45.0, 357.0, 30, {}},       {45.0, 180.0, 1, {}},       {45.0, -180.0, 1, {}},
        {45.0, 174.0, 60, {}},       {45.0, 179.99, 60, {}},      {-33.9, 18.4, -34, {}},     {45.0, 354.0, 30, {}},
        {45.0, 727.0, 32, {}},       {45.0, -726.0, 30, {}},      {84.0, 0.0, 31, {}},        {-80.0, 0.0, -31, {}},
        {60.0, 5.0, 31, {}},         // no Norway exception
        {78.0, 20.0, 34, {}},        // no Svalbard exception
        {85.0, 10.0, 32, {north}},   {-81.0, 10.0, -32, {south}},
    };
    for (const auto& c : cases) {
        AssertionRecorder assertions;
        EXPECT_EQ(UTM::zone(Degree(c.lat), Degree(c.lon)), c.zone) << c.lat << ", " << c.lon;
        EXPECT_EQ(assertions.messages(), c.reports) << c.lat << ", " << c.lon;
        for (const auto& record : assertions.records()) {
            EXPECT_EQ(record.file, utmSource);
        }
    }
}

TEST(UTM, TheRadianAndPositionFormsAgreeWithTheDegreeForm)
{
    for (const double lat : {-45.0, -0.0, 0.0, 52.5}) {
        for (double lon = -179.5; lon < 180.0; lon += 7.25) {
            const int expected = UTM::zone(Degree(lat), Degree(lon));
            const Radian latitude{Degree(lat)};
            const Radian longitude{Degree(lon)};
            EXPECT_EQ(UTM::zone(latitude, longitude), expected) << lat << ", " << lon;
            EXPECT_EQ(UTM::zone(LatLonHeight(latitude, longitude, 100.0)), expected) << lat << ", " << lon;
        }
    }
}

TEST(UTM, EpsgCodesOfWgs84Zones)
{
    const std::string tooLarge = assertText("std::abs( zone ) <= 60");
    const std::tuple<int, std::size_t, std::vector<std::string>> cases[] = {
        {32, 32632, {}},  {-32, 32732, {}},        {1, 32601, {}},           {60, 32660, {}},
        {-60, 32760, {}}, {61, 32661, {tooLarge}}, {-61, 32761, {tooLarge}},
        {0, 32600, {assertText("std::abs( zone ) >= 1")}},
    };
    for (const auto& [zone, code, reports] : cases) {
        AssertionRecorder assertions;
        EXPECT_EQ(UTM::epsgWGS84(zone), code) << zone;
        EXPECT_EQ(assertions.messages(), reports) << zone;
    }
}

TEST(UTM, ReadNthPositionReadsTheRecordOfThatIndexFromSbetAndRawApxFiles)
{
    const auto leeward = Testing::refData("leeward/sbet.out");
    const auto first = UTM::readNthPosition(leeward, 0);
    EXPECT_EQ(static_cast<double>(first.latitude), 0.6591193041070427);
    EXPECT_EQ(static_cast<double>(first.longitude), -2.0773576101964117);
    EXPECT_EQ(first.height, 6991.64706648894);
    EXPECT_EQ(UTM::readNthPosition(leeward, 199).height, 6991.681271365001);
    EXPECT_EQ(UTM::zone(first), 11);

    const Testing::TemporaryDirectory folder;
    const auto raw = {Testing::syntheticRawRecord(1000), Testing::syntheticRawRecord(2000)};
    const auto bytes = Testing::apxRawBytes(raw);
    const auto position = UTM::readNthPosition(folder.write("run.stream", bytes), 1);
    EXPECT_EQ(static_cast<double>(position.latitude), Degree(raw.begin()[1].latitude).toRadian());
    EXPECT_EQ(position.height, raw.begin()[1].height);

    // The extension test is case-sensitive: in capitals the same bytes are read as SBET,
    // which they are not a whole number of records of.
    EXPECT_THROW(UTM::readNthPosition(folder.write("run.STREAM", bytes), 1), std::runtime_error);
}

TEST(UTM, ReadNthPositionReportsARelativePathAndAnIndexPastTheEnd)
{
    const Testing::TemporaryDirectory folder;
    const auto path = folder.write("two.sbet", Testing::sbetBytes(Testing::syntheticTrajectory(10.0, 1.0, 2)));
    {
        AssertionRecorder assertions;
        const auto relative = std::filesystem::relative(path);
        EXPECT_EQ(UTM::readNthPosition(relative, 1).height, Testing::syntheticRecord(11.0).height);
        ASSERT_THAT(assertions.messages(), ElementsAre(assertText("path.is_absolute()")));
        EXPECT_EQ(assertions.records()[0].file, utmSource);
    }
    {
        // Index 2 reads the discardable record of the read that hits the end.
        AssertionRecorder assertions;
        EXPECT_TRUE(std::isnan(UTM::readNthPosition(path, 2).height));
        EXPECT_THAT(assertions.messages(), ElementsAre(assertText("index < reader->getCount()")));
    }
    {
        AssertionRecorder assertions;
        EXPECT_THROW(UTM::readNthPosition(path, 3), std::runtime_error);
    }
}

} // namespace
} // namespace Kelvo::Geodesy::CoordinateSystem
