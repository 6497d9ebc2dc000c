// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

namespace Kelvo::Geodesy::Batch {

/// How `GnssSolutionTable::load` builds a table.
struct GnssLoadOptions {
    /// The longest time between two neighbouring solutions that `at` interpolates across [s];
    /// a time between two solutions further apart is in a gap and has no answer. Unset: 1.5
    /// times the table's most common step (counted to the millisecond), so a 30 s file and a
    /// 1 Hz file both work. Must be finite and not negative; 0 answers only times that fall
    /// exactly on a solution.
    std::optional<double> maxGap;
};

} // namespace Kelvo::Geodesy::Batch
