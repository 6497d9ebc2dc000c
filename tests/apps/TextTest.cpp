// SPDX-License-Identifier: MIT
// Numbers, times and tables as text: what the tool prints must read back exactly, whatever
// the locale.
#include "Context.h"
#include "Numbers.h"
#include "RequestedTimes.h"
#include "Table.h"
#include "TimeText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

namespace Kelvo::Tool {
namespace {

TEST(NumbersTest, ShortestTextReadsBackTheSameDouble)
{
    for (const double value : {0.1, 1.0 / 3.0, 116418.1, 0.5680211852972264, -2.04165439230394, 1e-300, 5e-324,
                               std::numeric_limits<double>::max(), -0.0, 1719217200.0000002}) {
        const auto text = shortest(value);
        const auto back = parseDouble(text);
        ASSERT_TRUE(back) << text;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(*back), std::bit_cast<std::uint64_t>(value)) << text;
    }
    EXPECT_EQ(shortest(0.1), "0.1");
    EXPECT_EQ(shortest(116418.0), "116418");
    EXPECT_EQ(shortest(-0.0), "-0");
}

TEST(NumbersTest, ParsesWholeNumbersOnly)
{
    const struct {
        const char* text;
        std::optional<double> value;
    } cases[] = {
        {"12.5", 12.5}, {"+3", 3.0},         {"-0.5", -0.5},       {"1e3", 1000.0},     {"nan", std::nullopt},
        {"", std::nullopt}, {"1,5", std::nullopt}, {" 1", std::nullopt}, {"1 ", std::nullopt}, {"abc", std::nullopt},
        {"1e", std::nullopt}, {"+-1", std::nullopt}, {"0x10", std::nullopt}, {"1e400", std::nullopt},
    };
    for (const auto& c : cases) {
        const auto value = parseDouble(c.text);
        if (std::string_view(c.text) == "nan") {
            ASSERT_TRUE(value && std::isnan(*value));
            continue;
        }
        EXPECT_EQ(value, c.value) << "'" << c.text << "'";
    }
    EXPECT_EQ(parseInteger("2320"), 2320);
    EXPECT_EQ(parseInteger("-7"), -7);
    EXPECT_FALSE(parseInteger("2.5"));
    EXPECT_FALSE(parseInteger("12a"));
}

TEST(NumbersTest, FixedWidthPadsAsPrintfDoes)
{
    EXPECT_EQ(fixedWidth(36000.0, 10, 3), " 36000.000");
    EXPECT_EQ(fixedWidth(-0.00557, 10, 5), "  -0.00557");
    EXPECT_EQ(fixedWidth(-0.0, 8, 5), "-0.00000");
    EXPECT_EQ(fixedWidth(123456.0, 3, 1), "123456.0");
}

/// A locale that writes "1.234,5": a decimal comma and a thousands point.
struct CommaDecimals : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(TableTest, CsvAndJsonIgnoreTheStreamLocale)
{
    std::ostringstream csv;
    csv.imbue(std::locale(std::locale::classic(), new CommaDecimals));
    TableWriter table(csv, {"time", "name", "empty"});
    table.row({1234.5, std::string("a,\"b\""), std::monostate{}});
    table.finish();
    EXPECT_EQ(csv.str(), "time,name,empty\n1234.5,\"a,\"\"b\"\"\",\n");

    std::ostringstream json;
    json.imbue(csv.getloc());
    TableWriter array(json, {"x", "label"}, TableWriter::Style::json);
    array.row({1234.5, std::string("say \"hi\"\n")});
    array.row({std::nan(""), std::monostate{}});
    array.finish();
    EXPECT_EQ(json.str(), "[\n  {\"x\": 1234.5, \"label\": \"say \\\"hi\\\"\\u000a\"},\n  {\"x\": null, \"label\": null}\n]\n");
}

TEST(TimeTextTest, CalendarTextRoundsBeforeSplitting)
{
    const struct {
        double seconds;
        int decimals;
        const char* text;
    } cases[] = {
        {0.0, 3, "1970-01-01 00:00:00.000"},
        {1719217200.0, 3, "2024-06-24 08:20:00.000"},
        {59.9996, 3, "1970-01-01 00:01:00.000"},
        {-0.5, 1, "1969-12-31 23:59:59.5"},
        {951782400.0 + 86399.4, 0, "2000-02-29 23:59:59"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(calendarText(c.seconds, c.decimals), c.text) << c.seconds;
    }
    EXPECT_EQ(weekdayText(0.0), "Sun 00:00:00.000");
    EXPECT_EQ(weekdayText(-18.0), "Sat 23:59:42.000");
    EXPECT_EQ(weekdayText(116400.0), "Mon 08:20:00.000");
}

TEST(TimeTextTest, ParsesIsoUtcDateTimes)
{
    const struct {
        const char* text;
        std::optional<double> seconds;
    } cases[] = {
        {"2024-06-24T08:20:00Z", 1719217200.0},
        {"2024-06-24 08:20:00.25", 1719217200.25},
        {"2024-06-24", 1719187200.0},
        {"2024-02-29T00:00:00Z", 1709164800.0},
        {"2023-02-29T00:00:00Z", std::nullopt},
        {"2024-06-24T24:00:00Z", std::nullopt},
        {"2024-6-24T08:20:00Z", std::nullopt},
        {"2024-06-24T08:20Z", std::nullopt},
        {"2024-06-24T08:20:00.", std::nullopt},
        {"2024-06-24T08:20:00.5x", std::nullopt},
        {"yesterday", std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(parseIsoUtc(c.text), c.seconds) << c.text;
    }
}

TEST(TimeTextTest, GpsWeekTimeAndUnixTimeAgree)
{
    // 2024-06-24 08:20:00 UTC is GPS week 2320, 116418 s of week (18 leap seconds).
    EXPECT_EQ(gpsToUnix(2320, 116418.0), 1719217200.0);
    const GpsWeekTime gps = unixToGps(1719217200.5);
    EXPECT_EQ(gps.week, 2320);
    EXPECT_DOUBLE_EQ(gps.secondsOfWeek, 116418.5);
    // Just before a week ends in UTC, the GPS week has already turned.
    EXPECT_EQ(unixToGps(gpsToUnix(2320, 604799.0) + 5.0).week, 2321);
}

std::vector<double> all(const RequestedTimes& times)
{
    std::vector<double> values;
    for (std::uint64_t i = 0; i < times.size(); ++i) {
        values.push_back(times[i]);
    }
    return values;
}

TEST(TimeGridTest, MultiplesOfTheStepWithinTheSpan)
{
    EXPECT_EQ(all(RequestedTimes::grid(0.05, 1.0, 0.25)), (std::vector<double>{0.25, 0.5, 0.75, 1.0}));
    const auto tenths = RequestedTimes::grid(116418.0, 116419.0, 0.1);
    ASSERT_EQ(tenths.size(), 11u);
    EXPECT_EQ(shortest(tenths[3]), "116418.3");
    EXPECT_EQ(RequestedTimes::grid(10.1, 10.9, 1.0).size(), 0u);
    EXPECT_EQ(RequestedTimes::grid(2.0, 1.0, 1.0).size(), 0u);
    EXPECT_EQ(all(RequestedTimes::grid(-1.5, 0.5, 1.0)), (std::vector<double>{-1.0, 0.0}));
}

TEST(TimeGridTest, CountsMicrosecondsInIntegersUpToItsLimit)
{
    // UTC seconds of 2024 at the finest step: where a double index stopped changing (past
    // 2^53 at a step of 1e-7 s), every time is a microsecond after the one before.
    const double start = 1719217200.0;
    const auto micro = RequestedTimes::grid(start, start + 0.005, 1e-6);
    ASSERT_EQ(micro.size(), 5001u);
    for (std::uint64_t i = 1; i < micro.size(); ++i) {
        ASSERT_EQ(std::llround((micro[i] - start) * 1e6), static_cast<long long>(i)) << i;
    }
    EXPECT_EQ(micro[5000], start + 0.005);

    const auto limit = static_cast<double>(RequestedTimes::MAX_GRID_TIMES);
    EXPECT_EQ(RequestedTimes::grid(0.0, limit - 1.0, 1.0).size(), RequestedTimes::MAX_GRID_TIMES);
    const struct {
        double first, last, step;
        const char* message;
    } refused[] = {
        {0.0, 1.0, 0.0, "--every needs a positive number of seconds, not 0"},
        {0.0, 1.0, -1.0, "--every needs a positive number of seconds, not -1"},
        {0.0, 1.0, std::nan(""), "--every needs a positive number of seconds, not nan"},
        {0.0, 1.0, std::numeric_limits<double>::infinity(), "--every needs a positive number of seconds, not inf"},
        {start, start + 1.0, 1e-7, "--every 1e-07 is finer than the microsecond the times are rounded to"},
        {0.0, limit, 1.0, "--every 1 gives 10000001 times, more than the limit of 10000000"},
        {0.0, 1.0e9, 1.0e-3, "--every 0.001 gives 1000000000001 times, more than the limit of 10000000"},
        {1.0e10, 1.0e10 + 1.0, 1.0, "--every cannot count the times from 1e+10 to 10000000001 s in "
                                    "microseconds: a grid must lie within +-9007199254.740992 s"},
        {-std::numeric_limits<double>::infinity(), 1.0, 1.0, "--every cannot count the times from -inf to 1 s"},
    };
    for (const auto& c : refused) {
        try {
            RequestedTimes::grid(c.first, c.last, c.step);
            ADD_FAILURE() << c.message;
        } catch (const UsageError& error) {
            EXPECT_EQ(std::string(error.what()).substr(0, std::string(c.message).size()), c.message);
        }
    }
}

} // namespace
} // namespace Kelvo::Tool
