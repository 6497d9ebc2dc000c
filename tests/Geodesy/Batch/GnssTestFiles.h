// SPDX-License-Identifier: MIT
// Helpers of the GNSS table tests: RTKLIB position-file text of known values.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <cstddef>
#include <string>

namespace Kelvo::Testing {

/// The column-name line of a GPST file in week/seconds with lat/lon in degrees and velocities.
inline const std::string gnssColumnLine =
    "%  GPST          latitude(deg) longitude(deg)  height(m)   Q  ns   sdn(m)   sde(m)   sdu(m)  sdne(m)  sdeu(m)"
    "  sdun(m) age(s)  ratio    vn(m/s)    ve(m/s)    vu(m/s)      sdvn     sdve     sdvu    sdvne    sdveu"
    "    sdvun\r\n";

/// A header as RTKLIB writes it: LF after the program line, CRLF after the column names.
inline const std::string gnssHeader = "% program   : RTKLIB ver.2.4.3\n%\n" + gnssColumnLine;

/// `value` with `decimals` decimals, whatever the locale.
inline std::string fixedText(double value, int decimals = 9)
{
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed,
                                   decimals).ptr;
    return std::string(buffer.data(), end);
}

/// The value of numeric field `field` (2 latitude ... 23 sdvun) of a synthetic solution at
/// seconds of week `seconds`: each field its own line in time, so values between solutions
/// are known exactly and a value in a wrong column shows.
inline double syntheticField(std::size_t field, double seconds)
{
    return static_cast<double>(field) + 0.001 * static_cast<double>(field) * (seconds - 36000.0);
}

/// A data line of week 2244 at `seconds` with the synthetic fields, Q and ns, ending in CRLF.
inline std::string syntheticLine(double seconds, int quality = 1, int satellites = 9)
{
    std::string line = "2244";
    const auto append = [&line](const std::string& field) {
        line += ' ';
        line += field;
    };
    append(fixedText(seconds, 3));
    for (std::size_t field = 2; field <= 23; ++field) {
        if (field == 5) {
            append(std::to_string(quality));
            append(std::to_string(satellites));
            field = 6;
            continue;
        }
        append(fixedText(syntheticField(field, seconds)));
    }
    return line + "\r\n";
}

/// What the `Error` thrown by `call` says; a test failure, and "", when it throws none.
template <typename Error, typename Call>
std::string errorText(Call&& call)
{
    try {
        call();
    } catch (const Error& error) {
        return error.what();
    }
    ADD_FAILURE() << "no error";
    return {};
}

} // namespace Kelvo::Testing
