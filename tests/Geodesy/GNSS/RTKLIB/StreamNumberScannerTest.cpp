// SPDX-License-Identifier: MIT
// The scanner must take, accept and reject exactly what `>>` on a std::istringstream does,
// with the same values to the bit: these tests run both side by side on tricky texts.
#include "Geodesy/GNSS/RTKLIB/RtkLibPosReader.h"
#include "Geodesy/GNSS/RTKLIB/StreamNumberScanner.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::GNSS {
namespace {

// Per read: success, then the value's bits and where the next read starts (0 on failure).
using Steps = std::vector<std::uint64_t>;
constexpr bool integer = true;
constexpr bool real = false;

template <typename Read, typename Position>
Steps readAll(const std::vector<bool>& kinds, Read read, Position position)
{
    Steps steps;
    for (const bool isInteger : kinds) {
        std::uint64_t bits = 0;
        double value = 0.0;
        const bool ok = isInteger ? read(bits) : read(value);
        bits = isInteger ? bits : std::bit_cast<std::uint64_t>(value);
        steps.insert(steps.end(), {ok, ok ? bits : 0, ok ? position() : 0});
    }
    return steps;
}

Steps withStream(const std::string& text, const std::vector<bool>& kinds)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    return readAll(
        kinds, [&](auto& value) { return !(stream >> value).fail(); },
        [&] { return static_cast<std::uint64_t>(stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in)); });
}

Steps withScanner(const std::string& text, const std::vector<bool>& kinds)
{
    StreamNumberScanner scanner(text);
    return readAll(kinds, [&](auto& value) { return scanner.read(value); }, [&] { return scanner.position(); });
}

TEST(StreamNumberScanner, ReadsWhatTheStreamReads)
{
    const char* texts[] = {
        "2244 36000.000", "  \t\r\v\f7", "+5", "-0", "-1", "12-3", "12+3", "0012", "1.5.5", "1,5", "5.", ".5", "-.5",
        "+.5e1", ".", "-", "+", "+-1", "--1", "", "   ", "\r",
        // Unsigned range: "-1" wraps, one past the maximum fails.
        "18446744073709551615", "18446744073709551616", "-18446744073709551615", "99999999999999999999999",
        "000000000000000000000000000000000000000000000000000000001",
        // Exponents, overflow and underflow.
        "1e5", "1E5", "1e+5", "1e-5", "1e", "1e+", "1e-", "1ee5", "1e5e5", "1e5.5", ".e5", "e5", "1e0x", "1e308",
        "1.7976931348623159e308", "1e309", "-1e309", "1e-320", "2.4703282292062328e-324", "2.4703282292062327e-324",
        "1e-400", "-1e-400", "+1e-400", "0e999999999999999999999", "1e-99999999999999999999", "9007199254740993",
        "0.1000000000000000055511151231257827021181583404541015625",
        // Words, other bases and other layouts.
        "nan", "inf", "-inf", "infinity", "0x10", "0X1p3", "010", "1_000", "\xA0" "5", "%", "2023/01/08", "10:00:00",
    };
    for (const char* text : texts) {
        for (const auto& kinds : {std::vector{integer, real, integer}, std::vector{real, integer, real}}) {
            EXPECT_EQ(withScanner(text, kinds), withStream(text, kinds)) << "text: \"" << text << '"';
        }
    }
}

// Real data lines with random damage: the scanner reads their columns as the stream does, and
// the line parser accepts exactly the lines whose 24 columns the stream reads.
TEST(StreamNumberScanner, ReadsDamagedDataLinesLikeTheStream)
{
    const std::string lines[] = {
        "2244 36000.000   48.780735774    9.173352864   320.0009   1   6   0.0070   0.0045   0.0162  -0.0021  -0.0012"
        "  -0.0075   0.00  999.9    5.24067    0.00081   -0.00557  10.00000 10.00000 10.00000  0.00000 -0.00000 -0.00000\r",
        "2244  36000.000   29.999994371   94.999992812    -9.3615   5   8   2.5813   2.2781   7.1259   0.7786  -2.0020"
        "  -2.6572   0.00    0.0",
    };
    const std::vector<std::string> inserts{"-", "+", ".", "e", "E", "e-", "x", "0x", " ", "\t", "\r", "\v", "\xA0", "9",
                                           "00", "nan", "inf", "/", ":", "%", ",", "-0.00000", "18446744073709551616",
                                           "1e308", "1e999", "1e-400", "2.4703282292062327e-324", "-1"};
    std::vector<bool> columns(24, real);
    columns[0] = columns[5] = columns[6] = integer;
    std::mt19937 random(7);
    int accepted = 0;
    for (int round = 0; round < 20000 && !HasFailure(); ++round) {
        std::string line = lines[round % 2];
        for (int damage = 1 + round % 3; damage > 0 && !line.empty(); --damage) {
            const std::size_t at = std::uniform_int_distribution<std::size_t>(0, line.size() - 1)(random);
            const std::string& insert = inserts[random() % inserts.size()];
            switch (random() % 4) {
            case 0: line.erase(at, 1); break;
            case 1: line.insert(at, insert); break;
            case 2: line.replace(at, 1, insert); break;
            default: line.erase(at, line.find(' ', at) - at); break; // the rest of a column
            }
        }
        const auto expected = withStream(line, columns);
        EXPECT_EQ(withScanner(line, columns), expected) << "line: \"" << line << '"';
        const bool readAllColumns = expected[3 * 23] != 0;
        EXPECT_EQ(parseRtkLibPosLine(line).has_value(), readAllColumns) << "line: \"" << line << '"';
        accepted += readAllColumns ? 1 : 0;
    }
    // The damage must leave both kinds of lines to compare.
    EXPECT_GT(accepted, 2000);
    EXPECT_LT(accepted, 18000);
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
