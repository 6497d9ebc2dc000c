// SPDX-License-Identifier: MIT
// Reading RTKLIB position files line by line: what is refused, with which message, what is
// tolerated, and how numbers, d-m-s angles and long files are read.
#include "Geodesy/Batch/FileFormatError.h"
#include "Geodesy/Batch/GnssSolutionTable.h"
#include "GnssTestFiles.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <string>
#include <system_error>
#include <vector>

namespace Kelvo::Geodesy::Batch {
namespace {

using namespace Testing;

/// A synthetic line with field `field` (0-based) replaced by `text`.
std::string withField(std::string line, std::size_t field, const std::string& text)
{
    std::size_t start = 0;
    for (std::size_t i = 0; i <= field; ++i) {
        start = line.find_first_not_of(' ', i == 0 ? 0 : line.find(' ', start));
    }
    return line.replace(start, line.find_first_of(" \r", start) - start, text);
}

/// A synthetic line written in calendar time instead of week and seconds.
std::string calendarLine(const std::string& dateAndTime, double seconds = 36000.0)
{
    return dateAndTime + syntheticLine(seconds).substr(14);
}

const std::string calendarHeader = "% program   : RTKLIB ver.2.4.3\n%\n%  GPST                  latitude(deg)"
                                   + gnssColumnLine.substr(gnssColumnLine.find(" longitude"));
const std::string first = syntheticLine(36000.0);

TEST(RtklibPosReader, MalformedFilesAreRefusedNamingTheLineAndTheField)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {gnssHeader + first + withField(syntheticLine(36001.0), 23, ""), "line 5: expected 24 fields, found 23"},
        {gnssHeader + first + syntheticLine(36001.0).insert(5, "7 "), "line 5: expected 24 fields, found 25"},
        {gnssHeader + withField(first, 7, "abc"), "line 4: field 8 (sdn(m)) 'abc' is not a number"},
        {gnssHeader + withField(first, 2, "nan"), "line 4: field 3 (latitude(deg)) 'nan' is not a number"},
        {gnssHeader + withField(first, 4, "inf"), "line 4: field 5 (height(m)) 'inf' is not a number"},
        {gnssHeader + withField(first, 17, "1,5"), "line 4: field 18 (vu(m/s)) '1,5' is not a number"},
        {gnssHeader + withField(first, 18, "0x1p3"), "line 4: field 19 (sdvn) '0x1p3' is not a number"},
        {gnssHeader + withField(first, 5, "256"), "line 4: field 6 (Q) '256' is not a Q from 0 to 255"},
        {gnssHeader + withField(first, 5, "1.0"), "line 4: field 6 (Q) '1.0' is not a Q from 0 to 255"},
        {gnssHeader + withField(first, 6, "-1"), "line 4: field 7 (ns) '-1' is not a satellite count"},
        {gnssHeader + withField(first, 0, "-5"), "line 4: field 1 (GPST) '-5' is not a GPS week"},
        {gnssHeader + withField(first, 1, "3.6e4"), "line 4: field 2 (GPST) '3.6e4' is not seconds of the week"},
        {gnssHeader + first + syntheticLine(36000.0), "line 5: time 2244 36000.000 is not after the time of line 4"},
        {gnssHeader + first + "%\n" + syntheticLine(35999.5),
         "line 6: time 2244 35999.500 is not after the time of line 4"},
        {calendarHeader + calendarLine("2023/13/08 10:00:00.000"),
         "line 4: field 1 (GPST) '2023/13/08' is not a date yyyy/mm/dd"},
        {calendarHeader + calendarLine("2023/01/08 10:00:00.000") + calendarLine("2023/01/08 10:61:00.000"),
         "line 5: field 2 (GPST) '10:61:00.000' is not a time of day hh:mm:ss"},
        {calendarHeader + calendarLine("2023/01/08 10:00:00.000") + syntheticLine(36001.0),
         "line 5: field 1 (GPST) '2244' is not a date yyyy/mm/dd"},
        {"%  GPST  foo(m) bar(m) baz(m) Q ns\n" + first,
         "line 1: unknown position column 'foo(m)' in the column-name line"},
        {"% ref pos   : 35.1 north\n" + gnssHeader + first,
         "line 1: the ref pos line '35.1 north' does not hold three numbers"},
        {first, "line 1: data line before the column-name header line: its time system and position form are unknown"},
        {gnssHeader, "no solution: the file holds no data line"},
        {"", "no solution: the file holds no data line"},
    };
    TemporaryDirectory folder;
    for (const auto& [text, problem] : cases) {
        const auto path = folder.write("bad.pos", text);
        EXPECT_EQ(errorText<FileFormatError>([&] { GnssSolutionTable::load(path); }), path.string() + ": " + problem);
    }
}

TEST(RtklibPosReader, FilesThatCannotBeOpenedAreSystemErrorsNamingThePath)
{
    TemporaryDirectory folder;
    for (const auto& path : {folder.path() / "missing.pos", folder.path()}) {
        EXPECT_THAT(errorText<std::system_error>([&] { GnssSolutionTable::load(path); }),
                    ::testing::HasSubstr(path.string()));
    }
}

TEST(RtklibPosReader, ToleratesLineEndsBlankLinesCommentsTabsAndAMissingLastNewline)
{
    TemporaryDirectory folder;
    std::string second = syntheticLine(36001.0);
    second.replace(second.find(' '), 1, "\t  ");
    const std::string last = syntheticLine(36002.0);
    const std::string text = gnssHeader + "\n" + first.substr(0, first.size() - 2) + "\n  \t\r\n% a comment\n" + second
                           + last.substr(0, last.size() - 2);
    const auto table = GnssSolutionTable::load(folder.write("tolerated.pos", text));
    ASSERT_EQ(table.size(), 3U);
    EXPECT_EQ(table.secondsOfWeek(2), 36002.0);
    EXPECT_EQ(table.column(GnssColumn::sdvun)[2], syntheticField(23, 36002.0));
    EXPECT_EQ(table.column(GnssColumn::sdvun)[1], syntheticField(23, 36001.0));
}

TEST(RtklibPosReader, NumbersAreReadToTheBitsFromCharsGives)
{
    // Decimals of every length RTKLIB writes and beyond, signs, exponents, -0.
    std::vector<std::string> texts{"1e-3", "+2.5", "-0.00000", "0.12345678901234567", "123456789012.5",
                                   "0.00000000000000000000000123", "9007199254740993", "-4.47215", ".5", "7."};
    std::mt19937_64 random(5);
    for (int i = 0; texts.size() < 600; ++i) {
        const int decimals = i % 12;
        const double value = std::uniform_real_distribution<double>(-1e6, 1e6)(random);
        texts.push_back(fixedText(value, decimals));
    }
    std::string text = gnssHeader;
    double seconds = 36000.0;
    for (std::size_t i = 0; i < texts.size(); ++i, seconds += 1.0) {
        text += withField(syntheticLine(seconds), 7 + i % 6, texts[i]);
    }
    TemporaryDirectory folder;
    const auto table = GnssSolutionTable::load(folder.write("numbers.pos", text));
    ASSERT_EQ(table.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::string_view number = texts[i].starts_with('+') ? std::string_view(texts[i]).substr(1) : texts[i];
        double expected = 0.0;
        std::from_chars(number.data(), number.data() + number.size(), expected);
        const double read = table.column(static_cast<GnssColumn>(columnIndex(GnssColumn::sdn) + i % 6))[i];
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(expected)) << texts[i];
    }
}

TEST(RtklibPosReader, DegreeMinuteSecondAnglesTakeTheSignOfTheirDegrees)
{
    const std::string header = "%  GPST                    latitude(d'\")   longitude(d'\")  height(m)   Q  ns   "
                               "sdn(m)   sde(m)   sdu(m)  sdne(m)  sdeu(m)  sdue(m) age(s)  ratio\n";
    const std::string rest = "   10.0   5   8   2.5813   2.2781   7.1259   0.7786  -2.0020  -2.6572   0.00    0.0\n";
    TemporaryDirectory folder;
    const auto table = GnssSolutionTable::load(
        folder.write("dms.pos", header + "2023/01/08 10:00:00.000   -0 30 00.00000 -120 15 36.00000" + rest
                                    + "2023/01/08 10:00:01.000    0 30 00.00000  120 15 36.00000" + rest));
    const double degree = std::numbers::pi / 180.0;
    EXPECT_DOUBLE_EQ(table.latitude()[0], -0.5 * degree);
    EXPECT_DOUBLE_EQ(table.longitude()[0], -120.26 * degree);
    EXPECT_DOUBLE_EQ(table.latitude()[1], 0.5 * degree);
    EXPECT_DOUBLE_EQ(table.longitude()[1], 120.26 * degree);
    EXPECT_EQ(table.files().front().columnNames[1], "latitude(d'\")");
}

TEST(RtklibPosReader, ReferencePositionsInDegreesOrEcefAndBaselinesWithoutOne)
{
    // The base of the GSI runs, whose ECEF coordinates rtk_kinematic_vel.pos writes as
    // "ref pos : 35.132057068  139.624306577    73.9077".
    const std::string header = "%  GPST                  e-baseline(m)  n-baseline(m)  u-baseline(m)   Q  ns   sde(m)"
                               "   sdn(m)   sdu(m)  sden(m)  sdnu(m)  sdue(m) age(s)  ratio\n";
    const std::string line = "2015/12/14 17:24:57.000   -0.6970   0.1185   -2.5211   2  14   1.3662   1.5742   3.4640"
                             "  -0.5676  -0.4186  -0.8436  -1.00    0.0\n";
    TemporaryDirectory folder;
    const auto based = GnssSolutionTable::load(
        folder.write("based.pos", "% ref pos   : -3978241.9580  3382840.2340  3649900.8530\n" + header + line));
    const auto& base = based.files().front().referencePosition;
    ASSERT_TRUE(base);
    const double degree = std::numbers::pi / 180.0;
    EXPECT_NEAR(base->latitude, 35.132057068 * degree, 1e-9 * degree);
    EXPECT_NEAR(base->longitude, 139.624306577 * degree, 1e-9 * degree);
    EXPECT_NEAR(base->height, 73.9077, 1e-4);
    EXPECT_TRUE(based.has(GnssColumn::latitude));

    // Without a reference the baseline has no geodetic position: valid, but NaN there.
    const auto loose = GnssSolutionTable::load(folder.write("loose.pos", header + line));
    EXPECT_FALSE(loose.files().front().referencePosition);
    EXPECT_FALSE(loose.has(GnssColumn::latitude));
    EXPECT_EQ(loose.column(GnssColumn::up)[0], -2.5211);
    std::array<double, 1> latitude{};
    std::array<double, 1> up{};
    std::array<std::uint8_t, 1> valid{};
    GnssColumns out;
    out[GnssColumn::latitude] = latitude;
    out[GnssColumn::up] = up;
    out.valid = valid;
    loose.at(std::vector{loose.gpsTime()[0] - 1e9}, {TimeScale::gpsAdjusted, {}}, out);
    EXPECT_EQ(valid[0], 1);
    EXPECT_TRUE(std::isnan(latitude[0]));
}

TEST(RtklibPosReader, LongFilesAndLongLinesAreReadAcrossItsReadBlocks)
{
    // A 3 MB comment line and 20000 solutions: several times the reader's block.
    std::string text = "% " + std::string(3'000'000, 'x') + "\n" + gnssHeader;
    for (int i = 0; i < 20000; ++i) {
        text += syntheticLine(36000.0 + i * 0.5);
    }
    TemporaryDirectory folder;
    const auto table = GnssSolutionTable::load(folder.write("long.pos", text));
    ASSERT_EQ(table.size(), 20000U);
    EXPECT_EQ(table.secondsOfWeek(19999), 36000.0 + 19999 * 0.5);
    EXPECT_EQ(table.column(GnssColumn::sdvun)[19999], syntheticField(23, 36000.0 + 19999 * 0.5));
    EXPECT_DOUBLE_EQ(table.maxGap(), 0.75);

    const auto broken = folder.write("broken.pos", text + withField(syntheticLine(46000.0), 9, "x"));
    EXPECT_EQ(errorText<FileFormatError>([&] { GnssSolutionTable::load(broken); }),
              broken.string() + ": line 20005: field 10 (sdu(m)) 'x' is not a number");
}

} // namespace
} // namespace Kelvo::Geodesy::Batch
