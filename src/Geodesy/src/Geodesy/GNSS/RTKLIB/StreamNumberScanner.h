// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Kelvo::Geodesy::GNSS {

/// Reads numbers from a text one after another exactly as formatted extraction (`>>`) from a
/// std::istringstream in the classic locale reads them, only without building a stream: the
/// same leading whitespace is skipped, the same characters are taken (numbers need no
/// separator between them, "12-3" is 12 then -3), and the same inputs fail. This is what
/// lets the RTKLIB reader parse a line in a fraction of the time a string stream takes while
/// accepting and rejecting the very same lines.
///
/// Once a read has failed, every later read fails too, as on a stream whose failbit is set.
class StreamNumberScanner {
public:
    explicit StreamNumberScanner(std::string_view text)
        : text(text)
    {
    }

    /// As `stream >> std::uint64_t`: an optional '+' or '-' then decimal digits. A minus sign
    /// negates modulo 2^64 ("-1" gives 2^64 - 1); more than 2^64 - 1 fails.
    bool read(std::uint64_t& value);

    /// As `stream >> double`: an optional sign, digits with at most one '.', and an exponent
    /// after at least one digit. "nan", "inf" and hexadecimal are not numbers; a result that
    /// overflows to infinity fails, one that underflows gives 0 or a subnormal.
    bool read(double& value);

    /// Reads several numbers in order, as a chain of `>>`; false if any of them fails.
    template <typename... Numbers>
        requires(sizeof...(Numbers) > 1)
    bool read(Numbers&... numbers)
    {
        return (read(numbers) && ...);
    }

    /// False once a read has failed.
    bool ok() const { return !failed; }

    /// Index of the first character not consumed yet.
    std::size_t position() const { return index; }

private:
    /// Skips whitespace before a number; false (and failed) when the text ends first.
    bool skipWhitespace();
    bool fail();

    std::string_view text;
    std::size_t index = 0;
    bool failed = false;
};

} // namespace Kelvo::Geodesy::GNSS
