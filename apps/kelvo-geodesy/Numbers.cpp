// SPDX-License-Identifier: MIT
#include "Numbers.h"

#include <array>
#include <charconv>

namespace Kelvo::Tool {
namespace {

// Large enough for any fixed text of a double: 309 integer digits, a sign, a point and the
// decimals the tool asks for.
using Buffer = std::array<char, 400>;

std::string_view withoutPlus(std::string_view text)
{
    // from_chars refuses a leading '+', which people do type.
    if (text.size() > 1 && text.front() == '+' && text[1] != '-' && text[1] != '+') {
        text.remove_prefix(1);
    }
    return text;
}

} // namespace

std::string shortest(double value)
{
    Buffer buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return std::string(buffer.data(), result.ptr);
}

std::string fixed(double value, int decimals)
{
    Buffer buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, decimals);
    return std::string(buffer.data(), result.ptr);
}

std::string fixedWidth(double value, int width, int decimals)
{
    std::string text = fixed(value, decimals);
    if (static_cast<int>(text.size()) < width) {
        text.insert(0, static_cast<std::size_t>(width) - text.size(), ' ');
    }
    return text;
}

std::optional<double> parseDouble(std::string_view text)
{
    text = withoutPlus(text);
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || result.ec != std::errc{} || result.ptr != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::int64_t> parseInteger(std::string_view text)
{
    text = withoutPlus(text);
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || result.ec != std::errc{} || result.ptr != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

} // namespace Kelvo::Tool
