// SPDX-License-Identifier: MIT
#pragma once

#include "QueryClock.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace Kelvo::Geodesy::Batch {

/// The two epochs that bracket a query and the fraction between them.
struct Bracket {
    std::size_t lower = 0;
    std::size_t upper = 0;
    /// 0 at `lower`, 1 at `upper`.
    double k = 0.0;
    /// False outside the table or strictly inside a gap: the other fields mean nothing then.
    bool valid = false;
};

/// Finds brackets in a table's time column, comparing keys (QueryClock) with T - keyOffset
/// exactly as the providers compare a request with their records: the bracket of a key is
/// (j - 1, j) for the first epoch j whose key is not below it ((0, 1) at the first epoch),
/// and its fraction is (key - t1) / (t2 - t1), 0 when t1 == t2. The search gallops from a
/// hint, so a nearby hint costs a few comparisons and any hint at most twice a binary search.
class EpochLocator {
public:
    EpochLocator(std::span<const double> time, double keyOffset, double maxGap)
        : time(time)
        , offset(keyOffset)
        , maxGap(maxGap)
        , last(time.size() - 1)
        , firstKey(key(0))
        , lastKey(key(last))
        , epochsPerSecond(last > 0 && lastKey > firstKey ? static_cast<double>(last) / (lastKey - firstKey) : 0.0)
    {
    }

    double key(std::size_t index) const { return time[index] - offset; }

    /// An epoch near `query` if epochs were evenly spaced: a hint for unordered queries.
    std::size_t guess(double query) const
    {
        const double index = (query - firstKey) * epochsPerSecond;
        if (!(index > 0.0)) {
            return 0;
        }
        return index >= static_cast<double>(last) ? last : static_cast<std::size_t>(index);
    }

    void prefetchTime(std::size_t index) const { __builtin_prefetch(time.data() + index); }

    /// The bracket of `query`; `hint` is where the search starts.
    Bracket locate(double query, std::size_t hint) const
    {
        Bracket bracket;
        if (!(query >= firstKey && query <= lastKey)) {
            return bracket;
        }
        const std::size_t j = lowerBound(query, hint);
        if (j == 0) {
            bracket.upper = last > 0 ? 1 : 0;
        } else {
            bracket.lower = j - 1;
            bracket.upper = j;
            // Strictly inside a gap: no answer. Exactly on the epoch after it: answered.
            if (query < key(j) && time[j] - time[j - 1] > maxGap) {
                return bracket;
            }
        }
        const double t1 = key(bracket.lower);
        const double t2 = key(bracket.upper);
        bracket.k = t2 == t1 ? 0.0 : (query - t1) / (t2 - t1);
        bracket.valid = true;
        return bracket;
    }

private:
    /// The first epoch whose key is not below `query`, for firstKey <= query <= lastKey.
    std::size_t lowerBound(double query, std::size_t hint) const
    {
        const std::size_t start = std::min(hint, last);
        // Invariant once galloping stops: key(low) < query <= key(high).
        std::size_t low = 0;
        std::size_t high = 0;
        std::size_t step = 1;
        if (key(start) < query) {
            low = start;
            for (;;) {
                const std::size_t probe = low + step;
                if (probe >= last) {
                    high = last;
                    break;
                }
                if (key(probe) >= query) {
                    high = probe;
                    break;
                }
                low = probe;
                step *= 2;
            }
        } else {
            high = start;
            for (;;) {
                if (high == 0) {
                    return 0;
                }
                const std::size_t probe = high > step ? high - step : 0;
                if (key(probe) < query) {
                    low = probe;
                    break;
                }
                high = probe;
                step *= 2;
            }
        }
        while (high - low > 1) {
            const std::size_t middle = low + (high - low) / 2;
            if (key(middle) < query) {
                low = middle;
            } else {
                high = middle;
            }
        }
        return high;
    }

    std::span<const double> time;
    double offset;
    double maxGap;
    std::size_t last;
    double firstKey;
    double lastKey;
    double epochsPerSecond;
};

/// Locates the queries `times[begin, end)` block by block and calls `visit(i, bracket)` for
/// each, in order. A block in increasing order is walked forward from the previous bracket;
/// any other block starts each search from a guess, with the epochs it needs prefetched a
/// block ahead through `prefetch(bracket)`. Returns the index of the first time that is not
/// finite (nothing of its block is visited), or `end`.
template <typename Prefetch, typename Visit>
std::size_t locateQueries(const EpochLocator& locator, const QueryClock& clock, std::span<const double> times,
                          std::size_t begin, std::size_t end, Prefetch&& prefetch, Visit&& visit)
{
    constexpr std::size_t BLOCK = 64;
    double keys[BLOCK];
    std::size_t hints[BLOCK];
    Bracket brackets[BLOCK];
    double previousKey = -HUGE_VAL;
    std::size_t walkFrom = 0;
    for (std::size_t blockBegin = begin; blockBegin < end; blockBegin += BLOCK) {
        const std::size_t count = std::min(BLOCK, end - blockBegin);
        bool ordered = true;
        for (std::size_t i = 0; i < count; ++i) {
            const double time = times[blockBegin + i];
            if (!std::isfinite(time)) [[unlikely]] {
                return blockBegin + i;
            }
            keys[i] = clock.key(time);
            ordered = ordered && keys[i] >= previousKey;
            previousKey = keys[i];
        }
        if (ordered) {
            for (std::size_t i = 0; i < count; ++i) {
                brackets[i] = locator.locate(keys[i], walkFrom);
                if (brackets[i].valid) {
                    walkFrom = brackets[i].upper;
                }
            }
        } else {
            for (std::size_t i = 0; i < count; ++i) {
                hints[i] = locator.guess(keys[i]);
                locator.prefetchTime(hints[i]);
            }
            for (std::size_t i = 0; i < count; ++i) {
                brackets[i] = locator.locate(keys[i], hints[i]);
                if (brackets[i].valid) {
                    prefetch(brackets[i]);
                }
            }
            previousKey = -HUGE_VAL;
        }
        for (std::size_t i = 0; i < count; ++i) {
            visit(blockBegin + i, brackets[i]);
        }
    }
    return end;
}

} // namespace Kelvo::Geodesy::Batch
