// SPDX-License-Identifier: MIT
#include "StreamNumberScanner.h"

#include <charconv>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <system_error>

namespace Kelvo::Geodesy::GNSS {
namespace {

// The classic locale's white space.
bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Converts the characters a double extraction took as the stream does: the whole text must
/// be a number, and an infinite result is a failure. from_chars rounds correctly like the
/// stream's strtod, so it gives the same bits; it only declines results out of range, whose
/// underflow the stream accepts and whose overflow it rejects. Those rare texts are left to
/// the stream itself.
bool convert(std::string_view text, double& value)
{
    // from_chars takes no leading '+'; the sign is the only place one can be.
    const std::string_view number = text.starts_with('+') ? text.substr(1) : text;
    double result = 0.0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), result);
    if (error == std::errc::result_out_of_range) {
        std::istringstream stream{std::string(text)};
        stream.imbue(std::locale::classic());
        stream >> result;
        if (stream.fail()) {
            return false;
        }
    } else if (error != std::errc{} || end != number.data() + number.size()) {
        return false;
    }
    value = result;
    return true;
}

} // namespace

bool StreamNumberScanner::fail()
{
    failed = true;
    return false;
}

bool StreamNumberScanner::skipWhitespace()
{
    if (failed) {
        return false;
    }
    while (index < text.size() && isSpace(text[index])) {
        ++index;
    }
    return index < text.size() || fail();
}

bool StreamNumberScanner::read(std::uint64_t& value)
{
    if (!skipWhitespace()) {
        return false;
    }
    const bool negative = text[index] == '-';
    if (negative || text[index] == '+') {
        ++index;
    }
    constexpr std::uint64_t max = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t result = 0;
    bool anyDigit = false;
    bool overflow = false;
    // Like the stream, keep taking digits after an overflow: they belong to the failed number.
    for (; index < text.size() && isDigit(text[index]); ++index) {
        const auto digit = static_cast<std::uint64_t>(text[index] - '0');
        anyDigit = true;
        if (result > max / 10 || result * 10 > max - digit) {
            overflow = true;
        } else {
            result = result * 10 + digit;
        }
    }
    if (!anyDigit || overflow) {
        return fail();
    }
    value = negative ? 0 - result : result;
    return true;
}

bool StreamNumberScanner::read(double& value)
{
    if (!skipWhitespace()) {
        return false;
    }
    // What the stream takes is always one run of the text: sign, digits and point, exponent.
    const std::size_t start = index;
    if (text[index] == '+' || text[index] == '-') {
        ++index;
    }
    bool mantissa = false;
    bool decimalPoint = false;
    bool exponent = false;
    while (index < text.size()) {
        const char c = text[index];
        if (isDigit(c)) {
            mantissa = true;
        } else if (c == '.' && !decimalPoint && !exponent) {
            decimalPoint = true;
        } else if ((c == 'e' || c == 'E') && !exponent && mantissa) {
            exponent = true;
            // The exponent's sign, if any, is taken with the 'e'; anything else is looked
            // at again as a possible digit.
            if (++index >= text.size() || (text[index] != '+' && text[index] != '-')) {
                continue;
            }
        } else {
            break;
        }
        ++index;
    }
    return convert(text.substr(start, index - start), value) || fail();
}

} // namespace Kelvo::Geodesy::GNSS
