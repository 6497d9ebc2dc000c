// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace Kelvo::Tool {

/// The times that `at` and `gnss` answer, in the order given: a list (--time, --times,
/// --sow), or a grid (--every) whose times are computed one at a time from an integer index,
/// so that no list of them is ever held and the walk always ends.
class RequestedTimes {
public:
    /// The most times a grid may hold: more is surely a mistyped step.
    static constexpr std::uint64_t MAX_GRID_TIMES = 10'000'000;

    /// The times given.
    explicit RequestedTimes(std::vector<double> times);

    /// The multiples of `step` [s] from `first` to `last`, both included when they fall on the
    /// grid, rounded to the microsecond so that they print as the short decimals a person
    /// expects. Throws UsageError for a step that is not a positive number of at least a
    /// microsecond, for bounds that are not finite or lie beyond 2^53 microseconds (about
    /// 9.007e9 s, where microseconds no longer count exactly), and for more than
    /// MAX_GRID_TIMES times.
    static RequestedTimes grid(double first, double last, double step);

    std::uint64_t size() const { return count; }
    /// The time at `index` (below size()).
    double operator[](std::uint64_t index) const;

private:
    RequestedTimes() = default;

    std::vector<double> listed;
    std::uint64_t count = 0;
    // The grid: time i is step * (firstIndex + i), rounded to the microsecond.
    bool isGrid = false;
    std::int64_t firstIndex = 0;
    double step = 0.0;
};

} // namespace Kelvo::Tool
