// SPDX-License-Identifier: MIT
#pragma once

namespace Kelvo::Maths {

/// Where a value lies relative to an interval.
enum class Situation : int {
    lower = -1,
    inside = 0,
    upper = 1,
};

} // namespace Kelvo::Maths
