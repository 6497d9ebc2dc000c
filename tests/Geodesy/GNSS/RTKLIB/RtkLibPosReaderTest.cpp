// SPDX-License-Identifier: MIT
#include "../GnssTestSupport.h"
#include "Geodesy/GNSS/RTKLIB/RtkLibPosReader.h"
#include "support/LogRecorder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <numbers>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::GNSS {
namespace {

using Core::Logging::Level;
using namespace Testing;
using ::testing::ElementsAre;

double radians(double degrees)
{
    return Maths::Degree(degrees).toRadian();
}

TEST(RtkLibPosReader, MapsTheColumnsOfADataLine)
{
    const std::string line = "1481 108405.000   35.865530058  138.387180576   936.6539   5   8   3.4238   3.3033   8.8900"
                             "   1.4119   1.7944   3.1368   0.00    0.0    0.03022    7.28476    0.04873   0.16537  0.15441"
                             "  0.36706  0.09179  0.14664  0.12605";
    const auto record = parseRtkLibPosLine(line + "\r");
    ASSERT_TRUE(record.has_value());
    // Up turns into down; of the covariances only the off-diagonal ones come from the line.
    EXPECT_EQ(valuesOf(*record),
              (std::vector<double>{108405.0, 1481, radians(35.865530058), radians(138.387180576), -936.6539, 0.03022,
                                   7.28476, -0.04873, 0.01, 1.4119, 3.1368, 0.01, 1.7944, 0.01, 0.01, 0.09179, 0.12605,
                                   0.01, 0.14664, 0.01}));

    // Columns after the 24th are ignored; 23 are too few, with or without a carriage return.
    const std::string columns23 = line.substr(0, line.rfind(' '));
    for (const auto& [text, accepted] : {std::pair{line + " 7 more", true}, {columns23, false}, {columns23 + "\r", false},
                                         {columns23 + " \r\r", false}, {"2005/04/02" + line.substr(4), false}}) {
        EXPECT_EQ(parseRtkLibPosLine(text).has_value(), accepted) << text;
    }
}

TEST(RtkLibPosReader, ReadsRtkLibFilesLineForLine)
{
    // Week, seconds, latitude and longitude [deg], height, velocity north, east and up, as in the file.
    using Values = std::array<double, 8>;
    const std::tuple<const char*, std::size_t, Values, Values> cases[] = {
        {"rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos", 601,
         {2244, 36000.0, 48.780735774, 9.173352864, 320.0009, 5.24067, 0.00081, -0.00557},
         {2244, 36600.0, 48.780734235, 9.173352861, 320.0009, 5.24082, 0.01017, -0.00014}},
        {"rtklib/rtk_kinematic_dyn_vel_multignss.pos", 301,
         {2320, 116400.0, 35.134699014, 136.977575478, 104.8606, 0.00141, -0.00126, -0.01073},
         {2320, 116700.0, 35.134699006, 136.977575492, 104.8625, 0.01603, -0.01081, 0.00495}},
        {"rtklib/spp_vel_crescent.pos", 312,
         {1481, 108094.0, 35.872928562, 138.389821114, 995.2348, 0.03971, 0.03095, -0.02219},
         {1481, 108405.0, 35.865530058, 138.387180576, 936.6539, 0.03022, 7.28476, 0.04873}},
        {"rtklib/spp_vel_gsi0759.pos", 115, {1316, 518400.0, 35.160874723, 139.613828338, 70.5181, 0, 0, 0},
         {1316, 521820.0, 35.160922801, 139.613825320, 84.1724, 0, 0, 0}},
        {"rtklib/rtk_kinematic_vel.pos", 115, {1316, 518400.0, 35.160865956, 139.613842998, 68.3784, 0, 0, 0},
         {1316, 521820.0, 35.160866219, 139.613842930, 68.4647, 0, 0, 0}},
    };
    const auto asInFile = [](const GnssData& r) {
        return Values{static_cast<double>(r.gpsTime.weekNumber), r.gpsTime.secondsInWeek,
                      r.position.latitude * 180.0 / std::numbers::pi, r.position.longitude * 180.0 / std::numbers::pi,
                      -r.position.height, r.velocity.x, r.velocity.y, -r.velocity.z};
    };
    for (const auto& [file, count, first, last] : cases) {
        LogRecorder log;
        // With a threshold of 0 every record moves: the interval spans the whole file.
        RtkLibPosReader reader(refData(file), 0.0);
        EXPECT_EQ(reader.getTimeInterval(), Maths::Interval<double>(first[1], last[1])) << file;
        EXPECT_THAT(log.at(Level::info), ElementsAre("GNSS used time interval [s]: [" + std::to_string(first[1]) + "; "
                                                     + std::to_string(last[1]) + "]"));
        reader.returnToBegin();
        std::vector<GnssData> records;
        while (!reader.endOfFile()) {
            records.push_back(reader.getNext());
        }
        ASSERT_EQ(records.size(), count) << file;
        EXPECT_THAT(asInFile(records.front()), ::testing::Pointwise(::testing::DoubleNear(1e-12), first)) << file;
        EXPECT_THAT(asInFile(records.back()), ::testing::Pointwise(::testing::DoubleNear(1e-12), last)) << file;
    }
}

TEST(RtkLibPosReader, FilesInOtherLayoutsGiveNoRecords)
{
    // Calendar time, deg-min-sec, no velocity columns: the first data line fails. ECEF and
    // baseline files are refused by their column header, their lines holding 24 numbers too.
    for (const char* file :
         {"spp_vel_xyz_crescent", "rtk_kinematic_novel", "rtk_kinematic_vel_hms", "spp_novel_crescent",
          "spp_vel_hms_crescent", "public/matrtklib_kinematic_rover_rtk", "public/matrtklib_static_rover_rtk",
          "public/rtklibexplorer_demo1_out", "public/instinct/lla_gpst_000_dd", "public/instinct/lla_gpst2_111_dd",
          "public/instinct/lla_gpst2_111_ds", "public/instinct/lla_jst_111_dd", "public/instinct/ecef_gpst2_111_dd",
          "public/instinct/corrupt_inside_data", "public/instinct/corrupt_header_missing",
          "public/instinct/spirent_rover_dynamic_rtk_forward_continuous"}) {
        AssertionRecorder recorder;
        LogRecorder log;
        RtkLibPosReader reader(refData("rtklib/" + std::string(file) + ".pos"), 0.0);
        EXPECT_THAT(log.at(Level::info), ElementsAre("GNSS used time interval [s]: [inf; -inf]")) << file;
        reader.returnToBegin();
        reader.getNext();
        EXPECT_EQ(recorder.messages(), assertTexts({"timeInterval.isValid()", "readOk"})) << file;
        EXPECT_EQ(recorder.records().front().file, "src/Geodesy/src/Geodesy/GNSS/RTKLIB/RtkLibPosReader.cpp");
    }
}

TEST(RtkLibPosReader, ScansForTheFirstAndLastMovingRecord)
{
    // Moving means any one component at or above the threshold, not the norm.
    const std::string mixed = posHeader + dataLine(100.0) + dataLine(101.0, 0.8, 0.8) + dataLine(102.0, -1.0)
                              + dataLine(103.0, 0.0, 0.5) + dataLine(104.0, 0.0, 0.0, -2.0) + dataLine(105.0)
                              + dataLine(106.0, 0.0, 0.999999);
    const std::string moving = dataLine(10.0, 3.0) + dataLine(11.0, 3.0);
    const std::string last = dataLine(12.0, 3.0);
    const std::string still = dataLine(10.0) + dataLine(11.0) + dataLine(12.0);
    const auto none = assertTexts({"timeInterval.isValid()"});
    const auto one = assertTexts({"v > data.first", "timeInterval.isValid()"});
    struct Case {
        std::string text;
        double threshold;
        std::string interval;
        std::vector<std::string> reports;
    };
    const Case cases[] = {
        {mixed, 1.0, "102.000000; 104.000000", {}},
        {mixed, 0.8, "101.000000; 106.000000", {}},
        {mixed, 0.0, "100.000000; 106.000000", {}},
        // The scan ends at the first line that is not a record.
        {posHeader + moving + "2244 12.0 garbage\r\n" + last, 1.0, "10.000000; 11.000000", {}},
        {posHeader + moving + last.substr(0, last.rfind(' ')) + "\r\n" + last, 1.0, "10.000000; 11.000000", {}},
        {posHeader + moving + "\r\n" + last, 1.0, "10.000000; 11.000000", {}},
        {posHeader + moving + "%\n" + last, 1.0, "10.000000; 11.000000", {}},
        {moving + last.substr(0, last.size() - 2), 1.0, "10.000000; 12.000000", {}}, // no header, no final line end
        // No records, no moving record, or moving at one time only.
        // (A missing file and a header alone are in the provider's tests.)
        {"", 1.0, "inf; -inf", none},
        {"% program\n%", 1.0, "inf; -inf", none},
        {"%program : RTKLIB\n" + moving, 1.0, "inf; -inf", none},
        {posHeader + "2244 10.0 1 2 3 1 6 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\r\n" + moving, 1.0, "inf; -inf", none},
        {posHeader + still, 1.0, "inf; -inf", none},
        {posHeader + still + dataLine(13.0, 5.0), 1.0, "13.000000; 13.000000", one},
        {posHeader + dataLine(13.0, 5.0) + dataLine(13.0, 5.0), 1.0, "13.000000; 13.000000", one},
    };
    TemporaryDirectory folder;
    for (const auto& [text, threshold, interval, reports] : cases) {
        AssertionRecorder recorder;
        LogRecorder log;
        RtkLibPosReader reader(folder.write("scan.pos", text), threshold);
        EXPECT_THAT(log.at(Level::info), ElementsAre("GNSS used time interval [s]: [" + interval + "]")) << text;
        EXPECT_EQ(recorder.messages(), reports) << text;
    }

    // The scan leaves the reader after the last moving line.
    LogRecorder log;
    RtkLibPosReader reader(folder.write("mixed.pos", mixed), 1.0);
    EXPECT_EQ(reader.getNext().gpsTime.secondsInWeek, 105.0);
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
