// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <charconv>
#include <string>

namespace Kelvo::Geodesy::GNSS {

/// `value` with six decimals, as printf's "%f" writes it in the C locale ("518400.000000",
/// "inf", "-inf", "nan"), whatever locale the host program has set.
inline std::string toFixedText(double value)
{
    // The longest fixed text of a double: 309 digits, a sign, a point and six decimals.
    std::array<char, 328> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, 6);
    return std::string(buffer.data(), result.ptr);
}

} // namespace Kelvo::Geodesy::GNSS
