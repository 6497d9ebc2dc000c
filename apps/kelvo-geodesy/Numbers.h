// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Numbers as text, independent of the locale: the tool writes and reads its numbers through
// std::to_chars and std::from_chars, so a German or French locale never turns a decimal point
// into a comma.
namespace Kelvo::Tool {

/// The shortest text that reads back as exactly `value` ("0.1", "1e-300", "-0", "nan",
/// "inf"): what the CSV outputs use, so that every value round-trips.
std::string shortest(double value);

/// `value` with `decimals` digits after the point ("12.500"), for text meant for people.
std::string fixed(double value, int decimals);

/// `fixed` right-aligned in a field of `width` characters, as printf's "%*.*f" pads.
std::string fixedWidth(double value, int width, int decimals);

/// The whole of `text` read as a double: an optional '-' or '+', then digits with an
/// optional point and exponent, or "nan"/"inf". Anything else (a comma, a blank, trailing
/// characters, nothing) gives no value.
std::optional<double> parseDouble(std::string_view text);

/// The whole of `text` read as a decimal integer (an optional sign, then digits).
std::optional<std::int64_t> parseInteger(std::string_view text);

} // namespace Kelvo::Tool
