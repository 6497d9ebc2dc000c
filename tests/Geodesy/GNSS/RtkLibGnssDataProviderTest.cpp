// SPDX-License-Identifier: MIT
#include "Geodesy/GNSS/RTKLIB/RtkLibPosReader.h"
#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"
#include "GnssTestSupport.h"
#include "support/LogRecorder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::GNSS {
namespace {

using Core::Logging::Level;
using namespace Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const auto spirent = refData("rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos");

// Every record of a file, each line parsed on its own.
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

void expectSameRecord(const std::unique_ptr<GnssData>& actual, const GnssData& expected)
{
    ASSERT_NE(actual, nullptr);
    EXPECT_EQ(valuesOf(*actual), valuesOf(expected));
}

TEST(RtkLibGnssDataProvider, AnswersFromTheRecordsAroundTheTimeAndStartsOverOnlyBehindItsWindow)
{
    const auto records = recordsOf(spirent);
    LogRecorder log;
    RtkLibGnssDataProvider provider(spirent, 1.0);
    // Every quarter second of the used interval but its last second.
    std::size_t before = 0;
    for (double seconds = 36000.0; seconds < 36599.0 && !HasFailure(); seconds += 0.25) {
        before += records[before + 1].gpsTime.secondsInWeek < seconds ? 1 : 0;
        expectSameRecord(provider.getGnssData(seconds), GnssData::interpolate(seconds, records[before], records[before + 1]));
        EXPECT_EQ(provider.getCurrentGnssData()->gpsTime, records[before].gpsTime);
    }

    // The same time again, and a time between previous and current: the window stays.
    const GnssData* current = provider.getCurrentGnssData();
    expectSameRecord(provider.getGnssData(36598.75), GnssData::interpolate(36598.75, records[598], records[599]));
    expectSameRecord(provider.getGnssData(36597.25), GnssData::interpolate(36597.25, records[597], records[598]));
    EXPECT_EQ(provider.getCurrentGnssData(), current);
    EXPECT_THAT(log.at(Level::warning), IsEmpty());

    // Not after previous (strictly): the file is read again from the top.
    expectSameRecord(provider.getGnssData(36597.0), GnssData::interpolate(36597.0, records[596], records[597]));
    EXPECT_THAT(log.at(Level::warning),
                ElementsAre("This should never happen -> Rolling back to the beginning of the RTK lib POS file: "
                            "36597.000000 < 36598.000000"));

    // Starting over for the first record's own time lands on it: reported, still answered.
    AssertionRecorder recorder;
    expectSameRecord(provider.getGnssData(36000.0), records[0]);
    EXPECT_EQ(recorder.messages(), assertTexts({"seconds > current->gpsTime.secondsInWeek"}));
    EXPECT_EQ(recorder.records().front().file, "src/Geodesy/src/Geodesy/RtkLibGnssDataProvider.cpp");
}

TEST(RtkLibGnssDataProvider, AnswersInsideTheUsedIntervalOnlyAndReportsWhatItCannotAnswerProperly)
{
    const std::string moving = posHeader + dataLine(10.0, 2.0) + dataLine(11.0, 2.0) + dataLine(12.0, 2.0);
    // Used from 101 to 105: the records before and after stand still.
    const std::string track = posHeader + dataLine(100.0) + dataLine(101.0, 2.0) + dataLine(102.0, 2.0)
                              + dataLine(105.0, 2.0) + dataLine(106.0) + dataLine(107.0);
    // Construction, then the lookup's own check of the interval.
    const auto noRecord = assertTexts({"timeInterval.isValid()", "readOk", "readOk",
                                       "next->gpsTime.secondsInWeek > current->gpsTime.secondsInWeek",
                                       "timeInterval.isValid()"});
    struct Case {
        std::optional<std::string> text; // none: the file does not exist
        double seconds;
        bool answered;
        std::vector<std::string> reports;
    };
    const Case cases[] = {
        {track, 0.0, false, {}}, {track, 100.5, false, {}}, {track, 101.0 - 1e-6, false, {}},
        {track, 105.0 + 1e-6, false, {}}, {track, 106.5, false, {}},
        {track, 101.0, true, {}}, {track, 103.5, true, {}}, {track, 105.0, true, {}},
        {moving + dataLine(12.0, 2.0) + dataLine(13.0, 2.0) + dataLine(14.0), 12.5, true, {}}, // equal times later
        {posHeader + dataLine(10.0, 2.0) + moving.substr(posHeader.size()), 10.5, true,
         assertTexts({"next->gpsTime.secondsInWeek > current->gpsTime.secondsInWeek"})},
        {moving, 11.5, true, assertTexts({"!reader->endOfFile()"})},
        {moving, 12.0, true, assertTexts({"!reader->endOfFile()"})},
        {moving, 1e-310, false, assertTexts({"std::isnormal( seconds ) || seconds == 0.0"})},
        {std::nullopt, 10.0, false,
         assertTexts({"gnssStream", "timeInterval.isValid()", "readOk", "readOk",
                      "next->gpsTime.secondsInWeek > current->gpsTime.secondsInWeek", "timeInterval.isValid()"})},
        {posHeader, 10.0, false, noRecord},
        {posHeader + "2005/04/02 00:00:00.000 35.160865956 139.613842998 68.3784 1 7\r\n", 10.0, false, noRecord},
    };
    TemporaryDirectory folder;
    for (const auto& [text, seconds, answered, reports] : cases) {
        AssertionRecorder recorder;
        LogRecorder log;
        RtkLibGnssDataProvider provider(text ? folder.write("case.pos", *text) : folder.path() / "missing.pos", 1.0);
        const auto answer = provider.getGnssData(seconds);
        EXPECT_EQ(answer != nullptr, answered) << seconds;
        EXPECT_TRUE(!answer || answer->gpsTime.secondsInWeek == seconds) << seconds;
        EXPECT_EQ(recorder.messages(), reports) << text.value_or("(missing)");
    }
    LogRecorder log;
    EXPECT_EQ(RtkLibGnssDataProvider(folder.write("track.pos", track), 1.0).getTimeInterval(),
              Maths::Interval<double>(101.0, 105.0));
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
