// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>

namespace Kelvo::Geodesy {

/// The family's "no value" double: a signalling NaN with the bit pattern 0x7FF0000000000001,
/// which no computation produces (quiet NaNs do not share it). It fills the doubles that no
/// file provided and the times of records that hold none yet.
constexpr double SIGNALLING_NAN()
{
    return std::bit_cast<double>(std::uint64_t{0x7FF0000000000001});
}

} // namespace Kelvo::Geodesy
