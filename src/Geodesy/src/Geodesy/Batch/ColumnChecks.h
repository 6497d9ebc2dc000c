// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Batch/ArgumentError.h"

#include <atomic>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>

namespace Kelvo::Geodesy::Batch {

/// Throws ArgumentError unless a column of `size` elements matches `expected` rows; an
/// empty column passes when it is `optional`.
inline void requireLength(const char* name, std::size_t size, std::size_t expected, bool optional)
{
    if (size == expected || (optional && size == 0)) {
        return;
    }
    throw ArgumentError(std::string(name) + " has " + std::to_string(size) + " elements, times has "
                        + std::to_string(expected));
}

/// Writes `value` at `index` of a column the caller may have left empty (not wanted).
inline void writeIfWanted(std::span<double> column, std::size_t index, double value)
{
    if (!column.empty()) {
        column[index] = value;
    }
}

/// The first query time that is not finite, over the ranges of a threaded call: each range
/// notes where it stopped; the smallest index wins, whatever the order the ranges ran in.
class FirstBadTime {
public:
    explicit FirstBadTime(std::size_t count)
        : index(count)
        , count(count)
    {
    }

    /// A range that ended at `stopped` instead of `end` stopped at a bad time.
    void note(std::size_t stopped, std::size_t end)
    {
        if (stopped == end) {
            return;
        }
        std::size_t current = index.load();
        while (stopped < current && !index.compare_exchange_weak(current, stopped)) {
        }
    }

    /// Throws ArgumentError "times[17] is NaN" (or "is infinite") for the first bad time.
    void raise(std::span<const double> times) const
    {
        const std::size_t bad = index.load();
        if (bad == count) {
            return;
        }
        throw ArgumentError("times[" + std::to_string(bad) + "] is " + (std::isnan(times[bad]) ? "NaN" : "infinite"));
    }

private:
    std::atomic<std::size_t> index;
    std::size_t count;
};

} // namespace Kelvo::Geodesy::Batch
