// SPDX-License-Identifier: MIT
// The subcommands through run(), in this process: values in their output, exit codes and the
// one error line of every failure.
#include "ToolTestSupport.h"
#include "support/TemporaryDirectory.h"

#include "Core/FileInfo.h"
#include "Geodesy/Sbet/Reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <numbers>

namespace Kelvo::Testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string ref(const std::string& file) { return refData(file).string(); }

/// Bad files of every kind, made once.
struct BadFiles {
    TemporaryDirectory folder;
    std::string missing = (folder.path() / "missing.sbet").string();
    std::string empty = folder.write("empty.sbet", "").string();
    std::string truncated = folder.write("truncated.sbet", fileBytes(simulatedSurvey().sbet).substr(0, 1000)).string();
    /// Two SBET records' worth of text.
    std::string text = folder.write("notes.sbet", std::string(272, 'a')).string();
    /// 136 SBET records are 115 raw APX records of nonsense.
    std::string sbetAsStream =
        folder.write("survey.stream", fileBytes(simulatedSurvey().sbet).substr(0, 136 * 115)).string();
    std::string onePosLine = folder.write("one.pos", "% x\n2244  36000.000   48.78  9.17   320.0   1   6   0.0070   "
                                                     "0.0045   0.0162  -0.0021  -0.0012  -0.0075   0.00  999.9    "
                                                     "5.24067    0.00081   -0.00557  10.0 10.0 10.0  0.0 -0.0 -0.0\n")
                                 .string();
};

const BadFiles& badFiles()
{
    static const BadFiles files;
    return files;
}

TEST(CliTest, EveryFailureIsOneErrorLineWithItsExitCode)
{
    const auto& bad = badFiles();
    const std::string sbet = simulatedSurvey().sbet.string();
    const struct {
        std::vector<std::string> arguments;
        int code;
        std::string error;
    } cases[] = {
        // Bad input: exit code 1, the file named.
        {{"info", bad.missing}, 1, bad.missing + ": no such file"},
        {{"dump", bad.empty}, 1, bad.empty + ": the file is empty"},
        {{"info", "/dev/null"}, 1, "/dev/null: not a regular file"},
        {{"info", bad.folder.path().string()}, 1, ": is a directory, not a file"},
        {{"info", sbet, bad.truncated}, 1, bad.truncated + ": truncated: 1000 bytes are not a whole number of 136-byte"},
        {{"dump", ref("pdal/badfile.sbet")}, 1, "badfile.sbet: truncated: 271 bytes"},
        {{"dump", bad.text}, 1, bad.text + ": not an SBET file: its first time"},
        {{"info", bad.sbetAsStream}, 1, bad.sbetAsStream + ": not a raw APX file"},
        {{"info", ref("pdal/smrmsg.smrmsg")}, 1, "(an SMRMSG file? give --format smrmsg)"},
        {{"info", "--format", "smrmsg", ref("pdal/2-points.sbet")}, 1, "80-byte SMRMSG records"},
        {{"info", ref("rtklib/rtk_kinematic_vel_hms.pos")}, 1, "rtk_kinematic_vel_hms.pos: calendar times"},
        {{"gnss", ref("rtklib/spp_novel_crescent.pos"), "--every", "1"}, 1, "no velocity columns"},
        {{"gnss", ref("rtklib/rtk_kinematic_vel.pos"), "--every", "1"}, 1, "fewer than two records move at >= 0.5"},
        {{"gnss", bad.onePosLine, "--sow", "36000"}, 1, "fewer than two records move"},
        {{"dump", ref("rtklib/spp_vel_crescent.pos")}, 1, "an RTKLIB position file is text already"},
        // Bad usage: exit code 2.
        {{}, 2, "A subcommand is required"},
        {{"frobnicate"}, 2, "unknown subcommand 'frobnicate'"},
        {{"info"}, 2, "files is required"},
        {{"info", sbet, "--format", "laz"}, 2, "--format: laz not in"},
        {{"info", sbet, "--week", "2.5"}, 2, "--week: not a whole number: '2.5'"},
        {{"dump", sbet, "--limit", "-3"}, 2, "--limit"},
        {{"gnss", "x.pos"}, 2, "give the times with --sow or --every"},
        {{"gnss", "x.pos", "--sow", "1", "--every", "2"}, 2, "excludes"},
        {{"gnss", "x.pos", "--sow", "604800"}, 2, "not a GPS second of the week"},
        {{"gnss", "x.pos", "--sow", "1.5.2"}, 2, "not a number: '1.5.2'"},
        {{"at", sbet, "--time", "1", "--every", "2"}, 2, "excludes"},
        // Grids that once ran forever (an index past 2^53) or filled memory: refused at once.
        {{"at", sbet, "--every", "1e-7", "--week", "2320"}, 2, "--every 1e-07 is finer than the microsecond"},
        {{"at", sbet, "--every", "1e-6", "--week", "2320"}, 2, "gives 60000001 times, more than the limit of 10000000"},
        {{"gnss", ref("rtklib/spp_vel_crescent.pos"), "--every", "1e-9"}, 2, "finer than the microsecond"},
        {{"gnss", ref("rtklib/spp_vel_crescent.pos"), "--every", "1e-5"}, 2, "more than the limit of 10000000"},
        {{"simulate", "out", "--rate", "0"}, 2, "--rate must lie between 0 and 1000 Hz"},
        {{"simulate", "out", "--start", "2024-13-01"}, 2, "--start: not a UTC date-time"},
        {{"simulate", "out", "--start", "2024-06-29T23:59:00Z", "--duration", "600"}, 2, "past the end of GPS week 2320"},
        {{"convert", "--from", "llh", "--to", "trf", "1", "2"}, 2, "three values each (2 given)"},
        {{"convert", "--from", "ned", "--to", "llh", "1", "2", "3"}, 2, "--from ned needs --center"},
        {{"convert", "--from", "llh", "--to", "ecef", "1", "2", "3"}, 2, "--to: ecef not in"},
        {{"utm", "abc", "3"}, 2, "not a number: 'abc'"},
    };
    for (const auto& c : cases) {
        const ToolResult result = runInProcess(c.arguments);
        SCOPED_TRACE(::testing::PrintToString(c.arguments));
        EXPECT_EQ(result.code, c.code);
        ASSERT_EQ(lines(result.err).size(), 1u) << result.err;
        EXPECT_THAT(result.err, StartsWith("error: "));
        EXPECT_THAT(result.err, HasSubstr(c.error));
    }
}

TEST(CliTest, InfoDescribesTheSimulatedSurvey)
{
    const auto& survey = simulatedSurvey();
    const ToolResult result = runInProcess({"info", survey.sbet.string(), "--week", "2320"});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(infoValue(result.out, "format"), "SBET");
    EXPECT_EQ(infoValue(result.out, "records"), "601");
    EXPECT_EQ(infoValue(result.out, "GPS time"), "116418.000 .. 116478.000 s of week (week 2320)");
    EXPECT_EQ(infoValue(result.out, "UTC time"), "2024-06-24 08:20:00.000 .. 2024-06-24 08:21:00.000");
    EXPECT_EQ(infoValue(result.out, "duration"), "60.000 s");
    EXPECT_EQ(infoValue(result.out, "mean rate"), "10.000 Hz");
    EXPECT_EQ(infoValue(result.out, "first position"), "48.137154000 deg, 11.576124000 deg, 560.000 m");
    EXPECT_EQ(infoValue(result.out, "UTM zone"), "32N (EPSG:32632)");

    // Without the week, the day of the week is all that the file tells.
    const ToolResult stream = runInProcess({"info", survey.apxRaw.string()});
    ASSERT_EQ(stream.code, 0) << stream.err;
    EXPECT_EQ(infoValue(stream.out, "format"), "raw APX");
    EXPECT_EQ(infoValue(stream.out, "UTC time"), "Mon 08:20:00.000 .. Mon 08:21:00.000");
    EXPECT_THAT(infoValue(stream.out, "aligned from"), StartsWith("116421.000 s of week (30 records before it"));

    const ToolResult pos = runInProcess({"info", survey.pos.string()});
    ASSERT_EQ(pos.code, 0) << pos.err;
    EXPECT_EQ(infoValue(pos.out, "records"), "61");
    EXPECT_EQ(infoValue(pos.out, "UTC time"), "2024-06-24 08:20:00.000 .. 2024-06-24 08:21:00.000");
    EXPECT_THAT(infoValue(pos.out, "used interval"), HasSubstr("s of week at >= 0.5 m/s"));
}

TEST(CliTest, InfoDescribesFilesOfOtherPrograms)
{
    const struct {
        std::vector<std::string> arguments;
        std::vector<std::pair<std::string, std::string>> values;
    } cases[] = {
        {{"info", ref("pdal/2-points.sbet")},
         {{"records", "2"},
          {"GPS time", "151631.003 .. 151631.008 s of week (GPS week unknown; give --week)"},
          {"first position", "32.545216592 deg, -116.978179903 deg, 107.715 m"},
          {"UTM zone", "11N (EPSG:32611)"}}},
        {{"info", ref("leeward/sbet.out")},
         {{"records", "200"}, {"first position", "37.764754321 deg, -119.023823604 deg, 6991.647 m"}}},
        {{"info", "--format", "smrmsg", ref("pdal/smrmsg.smrmsg")},
         {{"format", "SMRMSG"}, {"records", "21902"}, {"GPS time", "536258.000 .. 558159.000 s of week (GPS week unknown; give --week)"}}},
        {{"info", ref("rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos")},
         {{"records", "601"},
          {"UTC time", "2023-01-08 09:59:42.000 .. 2023-01-08 10:09:42.000"},
          {"used interval", "36000.000 .. 36600.000 s of week at >= 0.5 m/s (600.000 s)"}}},
        {{"info", "--velocity-threshold", "5.3", ref("rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos")},
         {{"used interval", "none: fewer than two records move at >= 5.3 m/s"}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.arguments));
        const ToolResult result = runInProcess(c.arguments);
        ASSERT_EQ(result.code, 0) << result.err;
        EXPECT_EQ(result.err, "");
        for (const auto& [label, value] : c.values) {
            EXPECT_EQ(infoValue(result.out, label), value) << label;
        }
    }
}

TEST(CliTest, DumpWritesEveryFieldSoThatItReadsBackExactly)
{
    const ToolResult result = runInProcess({"dump", "--radians", ref("pdal/2-points.sbet")});
    ASSERT_EQ(result.code, 0) << result.err;
    const auto rows = csvRows(result.out);
    ASSERT_EQ(rows.size(), 3u);
    ASSERT_EQ(rows[0].size(), 18u);
    EXPECT_EQ(rows[0][1], "latitude_rad");

    Geodesy::Sbet::Reader reader(Core::FileInfo(refData("pdal/2-points.sbet")),
                                 Geodesy::Trajectory::Reader::ImuAlignmentStatus::NO_SOLUTION);
    for (std::size_t row = 1; row < rows.size(); ++row) {
        const auto record = reader.getNext();
        const double fields[] = {record.time,    record.latitude,    record.longitude,    record.height,
                                 record.velocityX, record.velocityY, record.velocityZ,    record.roll,
                                 record.pitch,   record.heading,     record.wanderAngle,  record.forceX,
                                 record.forceY,  record.forceZ,      record.angularRateX, record.angularRateY,
                                 record.angularRateZ};
        for (std::size_t column = 0; column < 17; ++column) {
            const double value = std::stod(rows[row][column]);
            EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(fields[column]))
                << rows[0][column] << " of record " << row;
        }
        EXPECT_EQ(rows[row][17], "valid");
    }
    EXPECT_EQ(rows[1][1], "0.5680211852972264");

    // Angles and angular rates in degrees by default; SMRMSG attitude RMS from arc-minutes.
    const auto degrees = csvRows(runInProcess({"dump", ref("pdal/2-points.sbet"), "--limit", "1"}).out);
    ASSERT_EQ(degrees.size(), 2u);
    EXPECT_EQ(degrees[0][9], "heading_deg");
    EXPECT_NEAR(std::stod(degrees[1][1]), 32.54521659154957, 1e-12);
    EXPECT_NEAR(std::stod(degrees[1][16]), 0.07217812320996525 * 180 / std::numbers::pi, 1e-12);
    const auto smrmsg = csvRows(runInProcess({"dump", "--format", "smrmsg", ref("pdal/smrmsg.smrmsg"), "--limit", "2"}).out);
    ASSERT_EQ(smrmsg.size(), 3u);
    EXPECT_EQ(smrmsg[1][0], "536258");
    EXPECT_EQ(smrmsg[1][1], "0.0562789546440652");
    EXPECT_NEAR(std::stod(smrmsg[1][9]), 3.0108023633776173 / 60.0, 1e-15);
}

TEST(CliTest, DumpShowsTheAlignmentOfTheRawStream)
{
    const auto rows = csvRows(runInProcess({"dump", simulatedSurvey().apxRaw.string()}).out);
    ASSERT_EQ(rows.size(), 602u);
    // The stream aligns within its first three seconds; the status follows --alignment.
    EXPECT_EQ(rows[1].back(), "not_aligned");
    EXPECT_EQ(rows[30].back(), "not_aligned");
    EXPECT_EQ(rows[31].back(), "valid");
    const auto coarse =
        csvRows(runInProcess({"dump", simulatedSurvey().apxRaw.string(), "--alignment", "coarse_leveling"}).out);
    EXPECT_EQ(coarse[12].back(), "valid");
    EXPECT_EQ(csvRows(runInProcess({"dump", simulatedSurvey().apxRaw.string(), "--limit", "7"}).out).size(), 8u);
}

TEST(CliTest, GnssInterpolatesTheSolutionsOfAPositionFile)
{
    const std::string spirent = ref("rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos");
    const ToolResult result = runInProcess({"gnss", spirent, "--sow", "36000,36000.5"});
    ASSERT_EQ(result.code, 0) << result.err;
    const auto rows = csvRows(result.out);
    ASSERT_EQ(rows.size(), 3u);
    // The first line of the file: 2244 36000.000 48.780735774 9.173352864 320.0009 ... vn 5.24067 ve 0.00081 vu -0.00557
    EXPECT_EQ(rows[1][0], "2244");
    EXPECT_EQ(rows[1][2], "48.780735774");
    EXPECT_EQ(rows[1][4], "320.0009");
    EXPECT_EQ(rows[1][5], "5.24067");
    EXPECT_EQ(rows[1][7], "0.00557");
    EXPECT_EQ(rows[1][10], "-0.0075"); // sdun
    // Halfway to the second line (48.780782821, 5.23039).
    EXPECT_NEAR(std::stod(rows[2][2]), (48.780735774 + 48.780782821) / 2, 1e-12);
    EXPECT_NEAR(std::stod(rows[2][5]), (5.24067 + 5.23039) / 2, 1e-12);

    // --every covers the used interval up to the line before the last, without warnings.
    const ToolResult every = runInProcess({"gnss", spirent, "--every", "60"});
    ASSERT_EQ(every.code, 0);
    EXPECT_EQ(every.err, "");
    const auto everyRows = csvRows(every.out);
    ASSERT_EQ(everyRows.size(), 11u);
    EXPECT_EQ(everyRows[1][1], "36000");
    EXPECT_EQ(everyRows[10][1], "36540");
}

TEST(CliTest, TimesWithoutAValueAreCountedAndKeptOnRequest)
{
    const auto& survey = simulatedSurvey();
    const ToolResult result = runInProcess({"gnss", survey.pos.string(), "--sow", "100", "--sow", "116450", "--sow", "116477.5"});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(csvRows(result.out).size(), 2u);
    EXPECT_EQ(result.err, "gnss: 2 of 3 times without a value: 1 below, 0 inside, 1 above the used time interval\n");

    const ToolResult kept = runInProcess({"gnss", survey.pos.string(), "--sow", "100,116450", "--keep-missing", "--json"});
    ASSERT_EQ(kept.code, 0) << kept.err;
    EXPECT_THAT(kept.out, HasSubstr("{\"gps_week\": null, \"gps_seconds_of_week\": 100, "));
    EXPECT_THAT(kept.out, HasSubstr("\"status\": \"missing below\"}"));
    EXPECT_THAT(kept.out, HasSubstr("\"gps_week\": 2320, \"gps_seconds_of_week\": 116450, "));
}

TEST(CliTest, ConvertAndUtmTakeDegreesAsTyped)
{
    const struct {
        std::vector<std::string> arguments;
        std::string header;
        std::vector<std::vector<double>> rows;
    } conversions[] = {
        {{"convert", "--from", "llh", "--to", "trf", "0", "0", "0"}, "x_m,y_m,z_m", {{6378137, 0, 0}}},
        {{"convert", "--from", "LLH", "--to", "trf", "0", "180", "10", "90", "0", "0"},
         "x_m,y_m,z_m",
         {{-6378147, 0, 0}, {0, 0, 6356752.314245179}}},
        {{"convert", "--from", "trf", "--to", "llh", "6378137", "0", "0"}, "latitude_deg,longitude_deg,height_m", {{0, 0, 0}}},
    };
    for (const auto& c : conversions) {
        SCOPED_TRACE(::testing::PrintToString(c.arguments));
        const ToolResult result = runInProcess(c.arguments);
        EXPECT_EQ(result.code, 0) << result.err;
        const auto rows = csvRows(result.out);
        ASSERT_EQ(rows.size(), c.rows.size() + 1);
        EXPECT_EQ(lines(result.out)[0], c.header);
        for (std::size_t i = 0; i < c.rows.size(); ++i) {
            for (std::size_t j = 0; j < 3; ++j) {
                EXPECT_EQ(std::stod(rows[i + 1][j]), c.rows[i][j]) << i << "," << j;
            }
        }
    }

    const struct {
        std::vector<std::string> arguments;
        std::string output;
    } zones[] = {
        {{"utm", "48.1", "11.5"}, "zone,hemisphere,epsg\n32,N,32632\n"},
        {{"utm", "-33.9", "18.4"}, "zone,hemisphere,epsg\n34,S,32734\n"},
        {{"utm", "60", "5"}, "zone,hemisphere,epsg\n31,N,32631\n"},
        {{"utm", "45", "-180"}, "zone,hemisphere,epsg\n1,N,32601\n"},
    };
    for (const auto& c : zones) {
        SCOPED_TRACE(::testing::PrintToString(c.arguments));
        const ToolResult result = runInProcess(c.arguments);
        EXPECT_EQ(result.code, 0) << result.err;
        EXPECT_EQ(result.out, c.output);
    }

    // Out and back: LLH to TRF to LLH, and through NED about a given centre.
    const auto trf = csvRows(runInProcess({"convert", "--from", "llh", "--to", "trf", "48.137154", "11.576124", "560"}).out);
    const auto llh = csvRows(runInProcess({"convert", "--from", "trf", "--to", "llh", trf[1][0], trf[1][1], trf[1][2]}).out);
    EXPECT_NEAR(std::stod(llh[1][0]), 48.137154, 1e-11);
    EXPECT_NEAR(std::stod(llh[1][1]), 11.576124, 1e-11);
    EXPECT_NEAR(std::stod(llh[1][2]), 560.0, 1e-7);
    const auto ned = csvRows(
        runInProcess({"convert", "--from", "llh", "--to", "ned", "--center", "48,11,500", "48.001", "11.002", "510"}).out);
    const auto back = csvRows(
        runInProcess({"convert", "--from", "ned", "--to", "llh", "--center", "48,11,500", ned[1][0], ned[1][1], ned[1][2]}).out);
    EXPECT_NEAR(std::stod(back[1][0]), 48.001, 1e-11);
    EXPECT_NEAR(std::stod(back[1][1]), 11.002, 1e-11);
}

TEST(CliTest, LibraryAssertionsAreWarnings)
{
    const ToolResult result = runInProcess({"utm", "85", "10"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "warning: CORE_ASSERT failed: 'lat <= +84.0_deg'\n");
    EXPECT_EQ(result.out, "zone,hemisphere,epsg\n32,N,32632\n");
}

TEST(CliTest, OutputFileIsCompleteOrAbsent)
{
    TemporaryDirectory folder;
    const auto target = folder.path() / "report.txt";
    const ToolResult written = runInProcess({"info", "-o", target.string(), ref("pdal/2-points.sbet")});
    ASSERT_EQ(written.code, 0) << written.err;
    EXPECT_EQ(written.out, "");
    EXPECT_EQ(infoValue(fileBytes(target), "records"), "2");

    // The second file fails after the first was reported: nothing replaces the old report,
    // and no temporary file is left behind.
    const ToolResult failed =
        runInProcess({"info", "--output", target.string(), ref("leeward/sbet.out"), ref("pdal/badfile.sbet")});
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(infoValue(fileBytes(target), "records"), "2");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), std::filesystem::directory_iterator()), 1);

    const ToolResult noFolder = runInProcess({"dump", ref("pdal/2-points.sbet"), "-o", (folder.path() / "no/such.csv").string()});
    EXPECT_EQ(noFolder.code, 1);
    EXPECT_THAT(noFolder.err, HasSubstr("such.csv: cannot be written: No such file or directory"));
}

} // namespace
} // namespace Kelvo::Testing
