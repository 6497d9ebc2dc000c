// SPDX-License-Identifier: MIT
#include "../PosFileLines.h"
#include "Geodesy/GNSS/RTKLIB/RtkLibPosReader.h"
#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::GNSS {
namespace {

using Core::Logging::Level;
using Testing::dataLine;
using Testing::posHeader;
using Testing::withoutLastColumn;
using Testing::withoutLineEnd;
using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::LogRecorder;
using Testing::refData;
using Testing::TemporaryDirectory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* readerSource = "src/Geodesy/src/Geodesy/GNSS/RTKLIB/RtkLibPosReader.cpp";

double degrees(Maths::Radian angle)
{
    return static_cast<double>(angle) * 180.0 / std::numbers::pi;
}

std::string logged(double lower, double upper)
{
    return "GNSS used time interval [s]: [" + std::to_string(lower) + "; " + std::to_string(upper) + "]";
}

TEST(RtkLibPosReader, MapsTheColumnsOfADataLine)
{
    const auto record = parseRtkLibPosLine(
        "1481 108405.000   35.865530058  138.387180576   936.6539   5   8   3.4238   3.3033   8.8900   1.4119   "
        "1.7944   3.1368   0.00    0.0    0.03022    7.28476    0.04873   0.16537  0.15441  0.36706  0.09179  "
        "0.14664  0.12605\r");
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->gpsTime.weekNumber, 1481u);
    EXPECT_EQ(record->gpsTime.secondsInWeek, 108405.0);
    EXPECT_EQ(record->gpsTime.auxiliarySeconds, 0.0);
    EXPECT_EQ(record->position.latitude, Maths::Radian(Maths::Degree(35.865530058)));
    EXPECT_EQ(record->position.longitude, Maths::Radian(Maths::Degree(138.387180576)));
    EXPECT_EQ(record->position.height, -936.6539);
    EXPECT_EQ(record->velocity, Maths::PositionVector3(0.03022, 7.28476, -0.04873));
    EXPECT_EQ(record->positionCovariance, (CovarianceElements{0.01, 1.4119, 3.1368, 0.01, 1.7944, 0.01}));
    EXPECT_EQ(record->velocityCovariance, (CovarianceElements{0.01, 0.09179, 0.12605, 0.01, 0.14664, 0.01}));
}

TEST(RtkLibPosReader, AcceptsLinesWithAllTwentyFourColumns)
{
    const std::string columns23 = "2244 36000.000 48.78 9.17 320.0 1 6 0.007 0.004 0.016 -0.002 -0.001 -0.007 0.00 "
                                  "999.9 5.24 0.0008 -0.005 10.0 10.0 10.0 0.0 -0.0";
    struct Case {
        std::string line;
        bool accepted;
    };
    const Case cases[] = {
        {columns23 + " -0.0", true},
        {columns23 + " -0.0\r", true},
        {columns23 + " -0.0 7 extra words", true},
        {"\t " + columns23 + "\t-0.0\r", true},
        {columns23, false},
        {columns23 + "\r", false},
        {columns23 + " \r\r", false},
        {columns23 + " x", false},
        {"2023/01/08 10:00:00.000" + columns23.substr(14) + " -0.0", false},
        {"-2244" + columns23.substr(4) + " -0.0", true}, // the week is read as an unsigned: -2244 wraps
        {"2244 nan" + columns23.substr(14) + " -0.0", false},
        {"", false},
        {"\r", false},
    };
    for (const auto& [line, accepted] : cases) {
        EXPECT_EQ(parseRtkLibPosLine(line).has_value(), accepted) << line;
    }
}

TEST(RtkLibPosReader, RecognisesHeaderLinesByALonePercentToken)
{
    struct Case {
        const char* line;
        bool header;
    };
    const Case cases[] = {
        {"%", true},   {"% program   : RTKLIB", true}, {"%\r", true}, {"  %  GPST", true}, {"\t%\tx", true},
        {"%GPST", false}, {"%%", false}, {"", false},        {"   \r", false}, {"2244 36000.000", false},
    };
    for (const auto& [line, isHeader] : cases) {
        EXPECT_EQ(isRtkLibHeaderLine(line), isHeader) << line;
    }
}

struct Values {
    std::uint64_t week;
    double seconds, latitude, longitude, height, vn, ve, vu;
};

void expectRecord(const GnssData& record, const Values& values, const std::string& context)
{
    EXPECT_EQ(record.gpsTime.weekNumber, values.week) << context;
    EXPECT_EQ(record.gpsTime.secondsInWeek, values.seconds) << context;
    EXPECT_NEAR(degrees(record.position.latitude), values.latitude, 1e-12) << context;
    EXPECT_NEAR(degrees(record.position.longitude), values.longitude, 1e-12) << context;
    EXPECT_EQ(record.position.height, -values.height) << context;
    EXPECT_EQ(record.velocity, Maths::PositionVector3(values.vn, values.ve, -values.vu)) << context;
}

TEST(RtkLibPosReader, ReadsRtkLibFilesLineForLine)
{
    struct Case {
        const char* file;
        int records;
        Values first;
        Values last;
    };
    const Case cases[] = {
        {"rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos", 601,
         {2244, 36000.0, 48.780735774, 9.173352864, 320.0009, 5.24067, 0.00081, -0.00557},
         {2244, 36600.0, 48.780734235, 9.173352861, 320.0009, 5.24082, 0.01017, -0.00014}},
        {"rtklib/rtk_kinematic_dyn_vel_multignss.pos", 301,
         {2320, 116400.0, 35.134699014, 136.977575478, 104.8606, 0.00141, -0.00126, -0.01073},
         {2320, 116700.0, 35.134699006, 136.977575492, 104.8625, 0.01603, -0.01081, 0.00495}},
        {"rtklib/spp_vel_crescent.pos", 312,
         {1481, 108094.0, 35.872928562, 138.389821114, 995.2348, 0.03971, 0.03095, -0.02219},
         {1481, 108405.0, 35.865530058, 138.387180576, 936.6539, 0.03022, 7.28476, 0.04873}},
        {"rtklib/spp_vel_gsi0759.pos", 115,
         {1316, 518400.0, 35.160874723, 139.613828338, 70.5181, 0.0, 0.0, 0.0},
         {1316, 521820.0, 35.160922801, 139.613825320, 84.1724, 0.0, 0.0, 0.0}},
        {"rtklib/rtk_kinematic_vel.pos", 115,
         {1316, 518400.0, 35.160865956, 139.613842998, 68.3784, 0.0, 0.0, 0.0},
         {1316, 521820.0, 35.160866219, 139.613842930, 68.4647, 0.0, 0.0, 0.0}},
    };
    for (const auto& c : cases) {
        LogRecorder log;
        // With a threshold of 0 every record moves: the interval spans the whole file.
        RtkLibPosReader reader(refData(c.file), 0.0);
        EXPECT_EQ(reader.getTimeInterval(), Maths::Interval<double>(c.first.seconds, c.last.seconds)) << c.file;
        EXPECT_THAT(log.at(Level::info), ElementsAre(logged(c.first.seconds, c.last.seconds))) << c.file;

        reader.returnToBegin();
        std::vector<GnssData> records;
        while (!reader.endOfFile()) {
            records.push_back(reader.getNext());
        }
        ASSERT_EQ(static_cast<int>(records.size()), c.records) << c.file;
        expectRecord(records.front(), c.first, std::string(c.file) + " first");
        expectRecord(records.back(), c.last, std::string(c.file) + " last");
    }
}

TEST(RtkLibPosReader, FilesInOtherLayoutsGiveNoRecords)
{
    // Calendar time, no velocity columns, baselines: each fails on its first data line.
    const char* files[] = {
        "rtklib/rtk_kinematic_novel.pos",
        "rtklib/rtk_kinematic_vel_hms.pos",
        "rtklib/spp_novel_crescent.pos",
        "rtklib/spp_vel_hms_crescent.pos",
        "rtklib/public/matrtklib_kinematic_rover_rtk.pos",
        "rtklib/public/matrtklib_static_rover_rtk.pos",
        "rtklib/public/rtklibexplorer_demo1_out.pos",
        "rtklib/public/instinct/lla_gpst_000_dd.pos",
        "rtklib/public/instinct/lla_gpst2_111_dd.pos",
        "rtklib/public/instinct/lla_gpst2_111_ds.pos",
        "rtklib/public/instinct/lla_utc_111_dd.pos",
        "rtklib/public/instinct/lla_jst_111_dd.pos",
        "rtklib/public/instinct/ecef_gpst2_111_dd.pos",
        "rtklib/public/instinct/corrupt_inside_data.pos",
        "rtklib/public/instinct/corrupt_header_missing.pos",
        "rtklib/public/instinct/spirent_rover_dynamic_rtk_forward_continuous.pos",
    };
    for (const char* file : files) {
        AssertionRecorder recorder;
        LogRecorder log;
        RtkLibPosReader reader(refData(file), 0.0);
        EXPECT_THAT(recorder.messages(), ElementsAre(assertText("timeInterval.isValid()"))) << file;
        EXPECT_THAT(log.at(Level::info), ElementsAre("GNSS used time interval [s]: [inf; -inf]")) << file;
        reader.returnToBegin();
        reader.getNext();
        EXPECT_EQ(recorder.messages().back(), assertText("readOk")) << file;
    }
}

TEST(RtkLibPosReader, AnEcefFileIsTakenForLatitudeAndLongitude)
{
    // Its lines hold 24 numbers as well, and nothing in a line tells the layouts apart, so
    // the columns are read by position: x as latitude, y as longitude, z as height.
    LogRecorder log;
    RtkLibPosReader reader(refData("rtklib/spp_vel_xyz_crescent.pos"), 0.0);
    reader.returnToBegin();
    const GnssData first = reader.getNext();
    EXPECT_NEAR(degrees(first.position.latitude), -3869304.5547, 1e-6);
    EXPECT_EQ(first.position.height, -3717358.9005);
}

TEST(RtkLibPosReader, UsedIntervalRunsFromTheFirstToTheLastMovingRecord)
{
    // Moving means any one component at or above the threshold, not the norm.
    const std::string lines = dataLine(100.0)                   // still
                              + dataLine(101.0, 0.8, 0.8, 0.0)  // norm 1.13, no component reaches 1
                              + dataLine(102.0, -1.0)           // exactly the threshold
                              + dataLine(103.0, 0.0, 0.5)       // still
                              + dataLine(104.0, 0.0, 0.0, -2.0) // sinking
                              + dataLine(105.0, 0.0, 0.0, 0.0)  // still
                              + dataLine(106.0, 0.0, 0.999999);
    struct Case {
        double threshold;
        double lower;
        double upper;
        double nextAfterScan; // the scan leaves the reader after the last moving line
    };
    const Case cases[] = {{1.0, 102.0, 104.0, 105.0}, {0.8, 101.0, 106.0, 106.0}, {0.0, 100.0, 106.0, 106.0},
                          {2.0, 104.0, 104.0, 105.0}};
    TemporaryDirectory folder;
    const auto path = folder.write("moving.pos", posHeader + lines);
    for (const auto& c : cases) {
        AssertionRecorder recorder;
        LogRecorder log;
        RtkLibPosReader reader(path, c.threshold);
        EXPECT_EQ(reader.getTimeInterval().data.first, c.lower) << c.threshold;
        EXPECT_EQ(reader.getTimeInterval().data.second, c.upper) << c.threshold;
        if (c.nextAfterScan != c.upper) {
            EXPECT_EQ(reader.getNext().gpsTime.secondsInWeek, c.nextAfterScan) << c.threshold;
        } else {
            EXPECT_TRUE(reader.endOfFile()) << c.threshold;
        }
        if (c.lower == c.upper) {
            // One moving record is no interval.
            EXPECT_THAT(recorder.messages(), ElementsAre(assertText("v > data.first"), assertText("timeInterval.isValid()"),
                                                         assertText("timeInterval.isValid()"),
                                                         assertText("timeInterval.isValid()")));
        } else {
            EXPECT_THAT(recorder.messages(), IsEmpty()) << c.threshold;
            EXPECT_THAT(log.at(Level::info), ElementsAre(logged(c.lower, c.upper)));
        }
    }
}

TEST(RtkLibPosReader, ScanStopsAtTheFirstLineThatIsNotARecord)
{
    struct Case {
        const char* name;
        std::string text;
        double upper;
    };
    const Case cases[] = {
        {"unparsable line", posHeader + dataLine(10.0, 3.0) + dataLine(11.0, 3.0) + "2244 12.0 garbage\r\n"
                                + dataLine(13.0, 3.0),
         11.0},
        {"23 columns", posHeader + dataLine(10.0, 3.0) + dataLine(11.0, 3.0) + withoutLastColumn(dataLine(12.0, 3.0))
                           + dataLine(13.0, 3.0),
         11.0},
        {"blank line", posHeader + dataLine(10.0, 3.0) + dataLine(11.0, 3.0) + "\r\n" + dataLine(13.0, 3.0), 11.0},
        {"header line inside", posHeader + dataLine(10.0, 3.0) + dataLine(11.0, 3.0) + "%\n" + dataLine(13.0, 3.0), 11.0},
        {"no header, no final newline", dataLine(10.0, 3.0) + dataLine(11.0, 3.0) + withoutLineEnd(dataLine(12.0, 3.0)),
         12.0},
    };
    TemporaryDirectory folder;
    for (const auto& c : cases) {
        AssertionRecorder recorder;
        LogRecorder log;
        RtkLibPosReader reader(folder.write("scan.pos", c.text), 1.0);
        EXPECT_EQ(reader.getTimeInterval(), Maths::Interval<double>(10.0, c.upper)) << c.name;
        EXPECT_THAT(recorder.messages(), IsEmpty()) << c.name;
    }
}

TEST(RtkLibPosReader, FilesWithoutAnIntervalAreReportedNotFatal)
{
    struct Case {
        const char* name;
        std::string text;
        std::vector<std::string> expressions;
    };
    const std::string still = dataLine(10.0) + dataLine(11.0) + dataLine(12.0);
    const Case cases[] = {
        {"empty", "", {"timeInterval.isValid()"}},
        {"header only", posHeader, {"timeInterval.isValid()"}},
        {"header only, no final newline", "% program\n%", {"timeInterval.isValid()"}},
        {"percent glued to text", "%program : RTKLIB\n" + dataLine(10.0, 3.0) + dataLine(11.0, 3.0),
         {"timeInterval.isValid()"}},
        {"lines of 23 columns", posHeader + "2244 10.0 1 2 3 1 6 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\r\n",
         {"timeInterval.isValid()"}},
        {"nothing moves", posHeader + still, {"timeInterval.isValid()"}},
        {"one moving record", posHeader + still + dataLine(13.0, 5.0), {"v > data.first", "timeInterval.isValid()"}},
        {"moving only at one time", posHeader + dataLine(13.0, 5.0) + dataLine(13.0, 5.0),
         {"v > data.first", "timeInterval.isValid()"}},
    };
    TemporaryDirectory folder;
    for (const auto& c : cases) {
        AssertionRecorder recorder;
        LogRecorder log;
        RtkLibPosReader reader(folder.write("bad.pos", c.text), 1.0);
        std::vector<std::string> expected;
        for (const auto& expression : c.expressions) {
            expected.push_back(assertText(expression));
        }
        EXPECT_EQ(recorder.messages(), expected) << c.name;
        for (const auto& report : recorder.records()) {
            EXPECT_THAT(report.file, ::testing::AnyOf(readerSource, "src/Maths/include/Maths/Interval.h")) << c.name;
        }
        EXPECT_EQ(log.at(Level::info).size(), 1u) << c.name;
    }
}

TEST(RtkLibPosReader, MissingFileReadsAsAnEmptyOne)
{
    AssertionRecorder recorder;
    LogRecorder log;
    TemporaryDirectory folder;
    RtkLibPosReader reader(folder.path() / "absent.pos", 0.0);
    EXPECT_THAT(recorder.messages(), ElementsAre(assertText("timeInterval.isValid()")));
    EXPECT_EQ(recorder.records().front().file, readerSource);
    EXPECT_TRUE(reader.endOfFile());
    reader.returnToBegin();
    EXPECT_TRUE(std::isnan(reader.getNext().gpsTime.secondsInWeek));
    EXPECT_EQ(recorder.messages().back(), assertText("readOk"));
}

TEST(RtkLibPosReader, ReadsForwardToTheEndAndStartsOver)
{
    TemporaryDirectory folder;
    LogRecorder log;
    RtkLibPosReader reader(folder.write("three.pos", posHeader + dataLine(1.0, 2.0) + dataLine(2.0, 2.0) + dataLine(3.0)),
                           1.0);
    // The scan stopped after the last moving record.
    EXPECT_EQ(reader.getNext().gpsTime.secondsInWeek, 3.0);
    EXPECT_TRUE(reader.endOfFile());
    {
        // Past the end the last record comes again, reported.
        AssertionRecorder recorder;
        EXPECT_EQ(reader.getNext().gpsTime.secondsInWeek, 3.0);
        EXPECT_THAT(recorder.messages(), ElementsAre(assertText("readOk")));
        EXPECT_EQ(recorder.records().front().file, readerSource);
    }
    reader.returnToBegin();
    EXPECT_FALSE(reader.endOfFile());
    EXPECT_EQ(reader.getNext().gpsTime.secondsInWeek, 1.0);
    EXPECT_EQ(reader.getNext().gpsTime.secondsInWeek, 2.0);
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
