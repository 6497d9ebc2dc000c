// SPDX-License-Identifier: MIT
// The scanner must accept and reject exactly what `>>` on a std::istringstream does, with the
// same values to the bit: these tests run both side by side on tricky texts.
#include "Geodesy/GNSS/RTKLIB/RtkLibPosReader.h"
#include "Geodesy/GNSS/RTKLIB/StreamNumberScanner.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <fstream>
#include <locale>
#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::GNSS {
namespace {

enum class Kind { integer, real };

struct Step {
    bool ok;
    std::uint64_t bits;  // the value, or the double's bit pattern; 0 after a failure
    long long position;  // where the next read starts; -1 after a failure
    bool operator==(const Step&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Step& step)
{
    return out << (step.ok ? "ok " : "fail ") << std::hex << step.bits << std::dec << " @" << step.position;
}

std::vector<Step> readWithStream(const std::string& text, const std::vector<Kind>& kinds)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    std::vector<Step> steps;
    for (const Kind kind : kinds) {
        std::uint64_t bits = 0;
        if (kind == Kind::integer) {
            stream >> bits;
        } else {
            double value = 0.0;
            stream >> value;
            bits = std::bit_cast<std::uint64_t>(value);
        }
        const bool ok = !stream.fail();
        const auto position = static_cast<long long>(stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in));
        steps.push_back({ok, ok ? bits : 0, ok ? position : -1});
    }
    return steps;
}

std::vector<Step> readWithScanner(const std::string& text, const std::vector<Kind>& kinds)
{
    StreamNumberScanner scanner(text);
    std::vector<Step> steps;
    for (const Kind kind : kinds) {
        std::uint64_t bits = 0;
        bool ok = false;
        if (kind == Kind::integer) {
            ok = scanner.read(bits);
        } else {
            double value = 0.0;
            ok = scanner.read(value);
            bits = std::bit_cast<std::uint64_t>(value);
        }
        steps.push_back({ok, ok ? bits : 0, ok ? static_cast<long long>(scanner.position()) : -1});
    }
    return steps;
}

// The column kinds of an RTKLIB data line: week, seconds, lat, lon, height, Q, ns, 17 more.
std::vector<Kind> lineKinds()
{
    std::vector<Kind> kinds(24, Kind::real);
    kinds[0] = kinds[5] = kinds[6] = Kind::integer;
    return kinds;
}

void expectSameAsStream(const std::string& text, const std::vector<Kind>& kinds)
{
    EXPECT_EQ(readWithScanner(text, kinds), readWithStream(text, kinds)) << "text: \"" << text << '"';
}

TEST(StreamNumberScanner, ReadsWhatTheStreamReads)
{
    const std::vector<Kind> integerThenReal{Kind::integer, Kind::real, Kind::integer};
    const std::vector<Kind> realThenInteger{Kind::real, Kind::integer, Kind::real};
    const char* texts[] = {
        // Plain, signed and glued numbers.
        "2244 36000.000", "  \t\r\v\f7", "+5", "-0", "-1", "12-3", "12+3", "0012", "1.5.5", "1,5", "5.", ".5",
        "-.5", "+.5e1", ".", "-", "+", "+-1", "--1", "", "   ", "\r",
        // Unsigned range: "-1" wraps, one past the maximum fails.
        "18446744073709551615", "18446744073709551616", "-18446744073709551615", "-18446744073709551616",
        "99999999999999999999999", "000000000000000000000000000000000000000000000000000000001",
        // Exponents, overflow and underflow.
        "1e5", "1E5", "1e+5", "1e-5", "1e", "1e+", "1e-", "1ee5", "1e5e5", "1e5.5", ".e5", "e5", "0e0", "1e0x",
        "1e308", "1.7976931348623157e308", "1.7976931348623159e308", "1e309", "-1e309", "1e-308", "1e-320",
        "4.9e-324", "2.4703282292062328e-324", "2.4703282292062327e-324", "1e-400", "-1e-400", "+1e-400",
        "0e999999999999999999999", "1e-99999999999999999999",
        "0.1000000000000000055511151231257827021181583404541015625", "9007199254740993",
        // Words and other bases are not numbers.
        "nan", "NaN", "inf", "-inf", "infinity", "0x10", "0X1p3", "010", "1_000", "\xA0" "5", "5\xA0", "%",
        "2023/01/08", "10:00:00.000",
    };
    for (const char* text : texts) {
        expectSameAsStream(text, integerThenReal);
        expectSameAsStream(text, realThenInteger);
    }
}

TEST(StreamNumberScanner, ReadsRandomTextsLikeTheStream)
{
    const std::vector<std::string> pieces{
        "0",  "1",  "7",  "9",  "00", "-",  "+",  ".",  "e",   "E",   "x",    "a", "nan", "inf", " ", "  ",
        "\t", "\r", "\n", "\v", "\f", "\xA0", "/", ":", "%", ",", "123.456", "-0.00000", "2244", "36000.000",
        "18446744073709551615", "18446744073709551616", "1e308", "1e309", "1e-400", "2.4703282292062327e-324",
    };
    std::mt19937 random(20240624);
    std::uniform_int_distribution<std::size_t> piece(0, pieces.size() - 1);
    std::uniform_int_distribution<int> length(1, 12);
    std::bernoulli_distribution integer(0.3);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (int i = length(random); i > 0; --i) {
            text += pieces[piece(random)];
        }
        std::vector<Kind> kinds(4);
        for (auto& kind : kinds) {
            kind = integer(random) ? Kind::integer : Kind::real;
        }
        expectSameAsStream(text, kinds);
        if (HasFailure()) {
            return;
        }
    }
}

// Real data lines with random damage: the line parser must accept exactly the lines whose
// 24 columns the stream reads.
TEST(StreamNumberScanner, AcceptsDamagedDataLinesExactlyWhenTheStreamDoes)
{
    const std::vector<std::string> lines{
        "2244 36000.000   48.780735774    9.173352864   320.0009   1   6   0.0070   0.0045   0.0162  -0.0021  "
        "-0.0012  -0.0075   0.00  999.9    5.24067    0.00081   -0.00557  10.00000 10.00000 10.00000  0.00000 "
        "-0.00000 -0.00000\r",
        "1481 108405.000   35.865530058  138.387180576   936.6539   5   8   3.4238   3.3033   8.8900   1.4119   "
        "1.7944   3.1368   0.00    0.0    0.03022    7.28476    0.04873   0.16537  0.15441  0.36706  0.09179  "
        "0.14664  0.12605",
        "2244  36000.000   29.999994371   94.999992812    -9.3615   5   8   2.5813   2.2781   7.1259   0.7786  "
        "-2.0020  -2.6572   0.00    0.0",
    };
    const std::vector<std::string> inserts{"-", "+", ".", "e", "e-", "x", "0x", " ", "\r", "\t", "9", "nan", "/",
                                           "%", "18446744073709551616", "1e999", "1e-999", "-1"};
    std::mt19937 random(7);
    std::uniform_int_distribution<int> operation(0, 4);
    std::uniform_int_distribution<std::size_t> insert(0, inserts.size() - 1);
    int accepted = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string line = lines[static_cast<std::size_t>(round) % lines.size()];
        for (int damage = 1 + round % 3; damage > 0 && !line.empty(); --damage) {
            const std::size_t at = std::uniform_int_distribution<std::size_t>(0, line.size() - 1)(random);
            switch (operation(random)) {
            case 0: line.erase(at, 1); break;
            case 1: line.insert(at, inserts[insert(random)]); break;
            case 2: line.replace(at, 1, inserts[insert(random)]); break;
            case 3: line.resize(at); break;
            default: line.erase(at, line.find(' ', at) - at); break; // part of a column
            }
        }
        const auto stream = readWithStream(line, lineKinds());
        EXPECT_EQ(readWithScanner(line, lineKinds()), stream) << "line: \"" << line << '"';
        const bool streamAccepts = stream.back().ok;
        EXPECT_EQ(parseRtkLibPosLine(line).has_value(), streamAccepts) << "line: \"" << line << '"';
        accepted += streamAccepts ? 1 : 0;
        if (HasFailure()) {
            return;
        }
    }
    // The damage must leave both kinds of lines to compare.
    EXPECT_GT(accepted, 2000);
    EXPECT_LT(accepted, 18000);
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
