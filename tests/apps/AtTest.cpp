// SPDX-License-Identifier: MIT
// at: position and attitude of the simulated drive at UTC times, through the library's
// position/attitude providers.
#include "ToolTestSupport.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace Kelvo::Testing {
namespace {

using ::testing::HasSubstr;

/// 2024-06-24 08:20:00 UTC, the first record of the simulated survey.
constexpr double START = 1719217200.0;

std::vector<std::vector<std::string>> answer(const std::vector<std::string>& arguments, const std::string& err = "")
{
    const ToolResult result = runInProcess(arguments);
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.err, err);
    return csvRows(result.out);
}

/// The SBET record of row `index` of a dump of the simulated survey, in degrees.
std::vector<std::string> sbetRecord(std::size_t index)
{
    static const auto rows = csvRows(runInProcess({"dump", simulatedSurvey().sbet.string()}).out);
    return rows.at(index + 1);
}

TEST(AtTest, AnswersAtRecordTimesWithTheRecords)
{
    const auto rows = answer({"at", simulatedSurvey().sbet.string(), "--every", "10", "--week", "2320"});
    ASSERT_EQ(rows.size(), 8u);
    EXPECT_EQ(rows[0], (std::vector<std::string>{"utc_time", "latitude_deg", "longitude_deg", "height_m", "roll_deg",
                                                 "pitch_deg", "yaw_deg", "status"}));
    for (std::size_t i = 1; i < rows.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(std::stod(rows[i][0]), START + 10.0 * static_cast<double>(i - 1));
        const auto record = sbetRecord(100 * (i - 1));
        EXPECT_NEAR(std::stod(rows[i][1]), std::stod(record[1]), 1e-12); // latitude
        EXPECT_NEAR(std::stod(rows[i][2]), std::stod(record[2]), 1e-12); // longitude
        EXPECT_NEAR(std::stod(rows[i][3]), std::stod(record[3]), 1e-9);  // height
        EXPECT_NEAR(std::stod(rows[i][6]), std::stod(record[9]), 1e-9);  // yaw = heading (wander 0)
        EXPECT_EQ(rows[i][7], "valid");
    }
}

TEST(AtTest, InterpolatesBetweenRecordsAndAnswersSecondsOfTheDayAlike)
{
    const std::string sbet = simulatedSurvey().sbet.string();
    // 30.05 s after the start lies halfway between records 300 and 301.
    const auto week = answer({"at", sbet, "--time", "1719217230.05"});
    const auto day = answer({"at", sbet, "--day", "--time", "30030.05"});
    ASSERT_EQ(week.size(), 2u);
    ASSERT_EQ(day.size(), 2u);
    EXPECT_EQ(day[0][0], "utc_seconds_of_day");
    const auto before = sbetRecord(300);
    const auto after = sbetRecord(301);
    // The typed times carry about 1e-7 s of rounding: nanodegrees, micrometres.
    for (const auto& [column, tolerance] : {std::pair{1u, 1e-9}, std::pair{2u, 1e-9}, std::pair{3u, 1e-6}}) {
        const double middle = (std::stod(before[column]) + std::stod(after[column])) / 2;
        EXPECT_NEAR(std::stod(week[1][column]), middle, tolerance) << column;
        EXPECT_NEAR(std::stod(day[1][column]), std::stod(week[1][column]), tolerance) << column;
    }
}

TEST(AtTest, CountsTimesWithoutAValue)
{
    const auto& survey = simulatedSurvey();
    // Before the trajectory, while the raw stream is not aligned yet, inside, after it.
    const std::string times = "1719217100,1719217201,1719217230,1719217300";
    const auto rows = answer({"at", survey.apxRaw.string(), "--time", times},
                             "at: 3 of 4 times without a value: 1 below, 1 inside, 1 above the trajectory\n");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1][0], "1719217230");

    const ToolResult kept = runInProcess({"at", survey.apxRaw.string(), "--time", times, "--keep-missing", "--json"});
    ASSERT_EQ(kept.code, 0) << kept.err;
    EXPECT_THAT(kept.out, HasSubstr("{\"utc_time\": 1719217100, \"latitude_deg\": null, "));
    EXPECT_THAT(kept.out, HasSubstr("\"status\": \"missing inside\"}"));
    EXPECT_THAT(kept.out, HasSubstr("\"status\": \"missing above\"}"));
    // With a lower required alignment, the raw stream answers earlier.
    answer({"at", survey.apxRaw.string(), "--time", "1719217201", "--alignment", "initial_solution"});
}

TEST(AtTest, SeveralFilesAnswerAsOneTrajectory)
{
    TemporaryDirectory folder;
    const std::string bytes = fileBytes(simulatedSurvey().sbet);
    const auto first = folder.write("part1.sbet", bytes.substr(0, 136 * 300));
    const auto second = folder.write("part2.sbet", bytes.substr(136 * 300));
    const std::vector<std::string> times{"--time", "1719217210.5,1719217229.95,1719217230.25,1719217259"};
    std::vector<std::string> split{"at", first.string(), second.string()};
    std::vector<std::string> whole{"at", simulatedSurvey().sbet.string()};
    split.insert(split.end(), times.begin(), times.end());
    whole.insert(whole.end(), times.begin(), times.end());
    // 29.95 s lies in the gap between the two files' records. The library sends a time outside
    // the current file to the last file, before whose start it falls.
    const auto splitRows = answer(split, "at: 1 of 4 times without a value: 1 below, 0 inside, 0 above the trajectory\n");
    const auto wholeRows = answer(whole);
    ASSERT_EQ(splitRows.size(), 4u);
    EXPECT_EQ(splitRows[1], wholeRows[1]);
    EXPECT_EQ(splitRows[2], wholeRows[3]);
    EXPECT_EQ(splitRows[3], wholeRows[4]);
}

TEST(AtTest, TimesFromAFile)
{
    TemporaryDirectory folder;
    const auto times = folder.write("times.txt", "# UTC seconds\n1719217210\n\n  1719217220.5\r\n");
    const auto rows = answer({"at", simulatedSurvey().sbet.string(), "--times", times.string()});
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[2][0], "1719217220.5");

    const auto bad = folder.write("bad.txt", "1719217210\n# fine\n17192172x0\n");
    const ToolResult result = runInProcess({"at", simulatedSurvey().sbet.string(), "--times", bad.string()});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.err, "error: " + bad.string() + ": line 3: not a time: '17192172x0'\n");
}

TEST(AtTest, RefusesWhatItCannotAnswer)
{
    const auto& survey = simulatedSurvey();
    const struct {
        std::vector<std::string> arguments;
        int code;
        std::string error;
    } cases[] = {
        {{"at", survey.sbet.string()}, 2, "give the times with one of --time, --times or --every"},
        {{"at", survey.sbet.string(), "--every", "10"}, 2, "--every needs --week N"},
        {{"at", survey.sbet.string(), "--time", "100"}, 2, "lies before the GPS epoch"},
        {{"at", survey.sbet.string(), "--day", "--time", "86400"}, 2, "is not a second of the day"},
        {{"at", survey.sbet.string(), survey.apxRaw.string(), "--time", "1719217210"}, 2, "different extensions"},
        {{"at", survey.pos.string(), "--time", "1719217210"}, 1, "an RTKLIB position file: at reads SBET"},
        {{"at", survey.sbet.string(), "/no/such.sbet", "--time", "1719217210"}, 1, "/no/such.sbet: no such file"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.arguments));
        const ToolResult result = runInProcess(c.arguments);
        EXPECT_EQ(result.code, c.code);
        EXPECT_EQ(result.out, "");
        ASSERT_EQ(lines(result.err).size(), 1u) << result.err;
        EXPECT_THAT(result.err, HasSubstr(c.error));
    }
}

} // namespace
} // namespace Kelvo::Testing
