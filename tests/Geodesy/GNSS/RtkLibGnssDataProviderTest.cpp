// SPDX-License-Identifier: MIT
#include "Geodesy/GNSS/RTKLIB/RtkLibPosReader.h"
#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"
#include "PosFileLines.h"
#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::GNSS {
namespace {

using Core::Logging::Level;
using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::dataLine;
using Testing::LogRecorder;
using Testing::posHeader;
using Testing::refData;
using Testing::TemporaryDirectory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* providerSource = "src/Geodesy/src/Geodesy/RtkLibGnssDataProvider.cpp";
const std::string spirent = "rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos";

// Every record of a file, parsed line by line on its own.
std::vector<GnssData> recordsOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::vector<GnssData> records;
    for (std::string line; std::getline(file, line);) {
        if (auto record = parseRtkLibPosLine(line)) {
            records.push_back(*record);
        }
    }
    return records;
}

void expectSameRecord(const GnssData& actual, const GnssData& expected, double seconds)
{
    EXPECT_EQ(actual.gpsTime.secondsInWeek, expected.gpsTime.secondsInWeek) << seconds;
    EXPECT_EQ(actual.gpsTime.weekNumber, expected.gpsTime.weekNumber) << seconds;
    EXPECT_EQ(actual.position, expected.position) << seconds;
    EXPECT_EQ(actual.velocity, expected.velocity) << seconds;
    EXPECT_EQ(actual.positionCovariance, expected.positionCovariance) << seconds;
    EXPECT_EQ(actual.velocityCovariance, expected.velocityCovariance) << seconds;
}

TEST(RtkLibGnssDataProvider, AnswersIncreasingTimesOverARealFile)
{
    const auto path = refData(spirent);
    const auto records = recordsOf(path);
    ASSERT_EQ(records.size(), 601u);
    LogRecorder log;
    RtkLibGnssDataProvider provider(path, 1.0);
    // Every quarter second of the used interval but its last second, bracketed by the two
    // records around it; the answer is their interpolation.
    std::size_t before = 0;
    for (double seconds = 36000.0; seconds < 36599.0; seconds += 0.25) {
        while (records[before + 1].gpsTime.secondsInWeek < seconds) {
            ++before;
        }
        const auto answer = provider.getGnssData(seconds);
        ASSERT_NE(answer, nullptr) << seconds;
        expectSameRecord(*answer, GnssData::interpolate(seconds, records[before], records[before + 1]), seconds);
        ASSERT_EQ(provider.getCurrentGnssData()->gpsTime.secondsInWeek, records[before].gpsTime.secondsInWeek);
    }
    EXPECT_FALSE(provider.endOfFile());
}

TEST(RtkLibGnssDataProvider, TimesOutsideTheUsedIntervalHaveNoAnswer)
{
    // Moving from 101 to 105 only; the bounds themselves are inside.
    TemporaryDirectory folder;
    const auto path = folder.write("track.pos", posHeader + dataLine(100.0) + dataLine(101.0, 2.0) + dataLine(102.0, 2.0)
                                                   + dataLine(105.0, 2.0) + dataLine(106.0) + dataLine(107.0));
    LogRecorder log;
    RtkLibGnssDataProvider provider(path, 1.0);
    struct Case {
        double seconds;
        bool answered;
    };
    const Case cases[] = {{0.0, false},   {100.5, false}, {101.0 - 1e-6, false}, {101.0, true},
                          {103.5, true},  {105.0, true},  {105.0 + 1e-6, false}, {106.5, false}};
    for (const auto [seconds, answered] : cases) {
        AssertionRecorder recorder;
        const auto answer = provider.getGnssData(seconds);
        EXPECT_EQ(answer != nullptr, answered) << seconds;
        if (answer) {
            EXPECT_EQ(answer->gpsTime.secondsInWeek, seconds);
        }
        EXPECT_THAT(recorder.messages(), IsEmpty()) << seconds;
    }
}

TEST(RtkLibGnssDataProvider, AnswersBehindTheWindowFromItOrByStartingOver)
{
    const auto path = refData(spirent);
    const auto records = recordsOf(path);
    LogRecorder scan;
    RtkLibGnssDataProvider provider(path, 1.0);
    LogRecorder log;

    // The window stands on 36010 (previous 36009, next 36011).
    const auto first = provider.getGnssData(36010.5);
    const GnssData* current = provider.getCurrentGnssData();
    ASSERT_EQ(current->gpsTime.secondsInWeek, 36010.0);

    // The same time again, and a time between previous and current: no reading at all.
    expectSameRecord(*provider.getGnssData(36010.5), *first, 36010.5);
    expectSameRecord(*provider.getGnssData(36009.25), GnssData::interpolate(36009.25, records[9], records[10]),
                     36009.25);
    EXPECT_EQ(provider.getCurrentGnssData(), current);
    EXPECT_EQ(current->gpsTime.secondsInWeek, 36010.0);
    EXPECT_THAT(log.entries(), IsEmpty());

    // Earlier than previous: the file is read again from the top.
    expectSameRecord(*provider.getGnssData(36003.5), GnssData::interpolate(36003.5, records[3], records[4]), 36003.5);
    EXPECT_EQ(provider.getCurrentGnssData()->gpsTime.secondsInWeek, 36003.0);
    EXPECT_THAT(log.at(Level::warning),
                ElementsAre("This should never happen -> Rolling back to the beginning of the RTK lib POS file: "
                            "36003.500000 < 36010.000000"));

    // Back to the first record itself: starting over lands on it, which is reported because
    // the requested time is not after it, and it is still answered.
    AssertionRecorder recorder;
    expectSameRecord(*provider.getGnssData(36000.0), records[0], 36000.0);
    EXPECT_THAT(recorder.messages(), ElementsAre(assertText("seconds > current->gpsTime.secondsInWeek")));
    EXPECT_EQ(recorder.records().front().file, providerSource);
    EXPECT_EQ(log.at(Level::warning).size(), 2u);
}

TEST(RtkLibGnssDataProvider, ReportsWhatItCannotAnswerProperly)
{
    struct Case {
        const char* name;
        std::string text;
        double seconds;
        bool answered;
        std::vector<std::string> expressions;
    };
    const std::string moving = dataLine(10.0, 2.0) + dataLine(11.0, 2.0) + dataLine(12.0, 2.0);
    const Case cases[] = {
        {"first two records at one time", posHeader + dataLine(10.0, 2.0) + moving, 10.5, true,
         {"next->gpsTime.secondsInWeek > current->gpsTime.secondsInWeek"}},
        {"equal times later are fine", posHeader + moving + dataLine(12.0, 2.0) + dataLine(13.0, 2.0) + dataLine(14.0),
         12.5, true, {}},
        {"bracketed by the last line", posHeader + moving, 11.5, true, {"!reader->endOfFile()"}},
        {"at the last line", posHeader + moving, 12.0, true, {"!reader->endOfFile()"}},
        {"subnormal time", posHeader + moving + dataLine(13.0), 1e-310, false,
         {"std::isnormal( seconds ) || seconds == 0.0"}},
    };
    TemporaryDirectory folder;
    for (const auto& c : cases) {
        AssertionRecorder recorder;
        LogRecorder log;
        RtkLibGnssDataProvider provider(folder.write("case.pos", c.text), 1.0);
        const auto answer = provider.getGnssData(c.seconds);
        EXPECT_EQ(answer != nullptr, c.answered) << c.name;
        std::vector<std::string> expected;
        for (const auto& expression : c.expressions) {
            expected.push_back(assertText(expression));
        }
        EXPECT_EQ(recorder.messages(), expected) << c.name;
        for (const auto& report : recorder.records()) {
            EXPECT_EQ(report.file, providerSource) << c.name;
        }
    }
}

TEST(RtkLibGnssDataProvider, FilesWithoutRecordsGiveNoAnswersAndDoNotCrash)
{
    TemporaryDirectory folder;
    const std::filesystem::path files[] = {folder.path() / "missing.pos", folder.write("header.pos", posHeader),
                                           refData("rtklib/spp_vel_hms_crescent.pos")};
    for (const auto& file : files) {
        AssertionRecorder recorder;
        LogRecorder log;
        RtkLibGnssDataProvider provider(file, 1.0);
        EXPECT_THAT(recorder.messages(),
                    ElementsAre(assertText("timeInterval.isValid()"), assertText("readOk"), assertText("readOk"),
                                assertText("next->gpsTime.secondsInWeek > current->gpsTime.secondsInWeek")))
            << file;
        EXPECT_EQ(provider.getGnssData(100.0), nullptr) << file;
    }
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
