// SPDX-License-Identifier: MIT
#pragma once

#include "QueryClock.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Kelvo::Geodesy::Batch {

/// The two epochs that bracket a query.
struct Bracket {
    std::size_t lower = 0;
    std::size_t upper = 0;
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
    {
    }

    double key(std::size_t index) const { return time[index] - offset; }

    /// The epoch `query` would fall on if epochs were evenly spaced.
    std::size_t estimate(double query) const { return bucket(query, last + 1); }

    void prefetchTime(std::size_t index) const { __builtin_prefetch(time.data() + index); }

    /// Which of `buckets` equal stretches of the table's span `query` falls in (the first or
    /// the last one outside it).
    std::size_t bucket(double query, std::size_t buckets) const
    {
        const double position = (query - firstKey) / (lastKey - firstKey) * static_cast<double>(buckets);
        if (!(position > 0.0)) {
            return 0;
        }
        return position >= static_cast<double>(buckets - 1) ? buckets - 1 : static_cast<std::size_t>(position);
    }

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
        bracket.valid = true;
        return bracket;
    }

    /// Where `query` lies in `bracket`: 0 at its lower epoch, 1 at its upper one, 0 when both
    /// are at one instant (the first wins), as the providers have it.
    double fraction(const Bracket& bracket, double query) const
    {
        const double t1 = key(bracket.lower);
        const double t2 = key(bracket.upper);
        return t2 == t1 ? 0.0 : (query - t1) / (t2 - t1);
    }

    /// The end of the run of keys from `keys[from]` on (up to `count`) that share `bracket`,
    /// valid and not across a gap: exactly those that locate() would give this bracket.
    std::size_t endOfRun(const Bracket& bracket, const double* keys, std::size_t from, std::size_t count) const
    {
        if (time[bracket.upper] - time[bracket.lower] > maxGap) {
            return from;
        }
        const double t1 = key(bracket.lower);
        const double t2 = key(bracket.upper);
        // The first bracket also holds a query exactly at the first epoch.
        const double lowest = bracket.lower == 0 ? t1 : std::nextafter(t1, HUGE_VAL);
        while (from < count && keys[from] <= t2 && keys[from] >= lowest) {
            ++from;
        }
        return from;
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
};

/// Locates the queries `times[begin, end)` chunk by chunk and calls `visit(i, keys, n,
/// bracket)` for the n queries from index i on, whose keys are keys[0, n) and whose bracket
/// is `bracket` (fraction() gives each one's place in it).
/// A chunk in increasing order (after the chunk before it) is walked forward in order, each
/// run of queries that share a bracket visited at once. Any other chunk is first put in order of where its queries fall in the table, by
/// a counting sort on the position an evenly spaced table would give, then walked in that
/// order: the table is read front to back once per chunk instead of at random, and the rows
/// written stay within the chunk; `prefetch(epoch)` asks for the epochs a few queries ahead.
/// Every query's bracket is the same either way. Returns the
/// index of the first time that is not finite (its chunk is not visited), or `end`.
template <typename Prefetch, typename Visit>
std::size_t locateQueries(const EpochLocator& locator, const QueryClock& clock, std::span<const double> times,
                          std::size_t begin, std::size_t end, Prefetch&& prefetch, Visit&& visit)
{
    constexpr std::size_t CHUNK = 131072;
    const std::size_t capacity = std::min(CHUNK, end - begin);
    std::vector<double> keys(capacity);
    std::vector<std::uint32_t> buckets;
    std::vector<std::uint32_t> order;
    std::vector<double> sortedKeys;
    std::vector<std::uint32_t> starts;
    double lastKey = -HUGE_VAL;
    std::size_t walkFrom = 0;
    for (std::size_t first = begin; first < end; first += CHUNK) {
        const std::size_t count = std::min(CHUNK, end - first);
        bool ordered = true;
        for (std::size_t i = 0; i < count; ++i) {
            const double time = times[first + i];
            if (!std::isfinite(time)) [[unlikely]] {
                return first + i;
            }
            const double key = clock.key(time);
            keys[i] = key;
            ordered = ordered && key >= lastKey;
            lastKey = key;
        }
        if (ordered) {
            // Runs of queries that share a bracket are visited together.
            for (std::size_t i = 0; i < count;) {
                const Bracket bracket = locator.locate(keys[i], walkFrom);
                std::size_t runEnd = i + 1;
                if (bracket.valid) {
                    walkFrom = bracket.upper;
                    runEnd = locator.endOfRun(bracket, keys.data(), runEnd, count);
                }
                visit(first + i, keys.data() + i, runEnd - i, bracket);
                i = runEnd;
            }
            continue;
        }
        // Counting sort by bucket: about one bucket per query, over the table's span.
        buckets.resize(count);
        order.resize(count);
        sortedKeys.resize(count);
        starts.assign(count + 1, 0);
        for (std::size_t i = 0; i < count; ++i) {
            buckets[i] = static_cast<std::uint32_t>(locator.bucket(keys[i], count));
            ++starts[buckets[i]];
        }
        std::uint32_t sum = 0;
        for (auto& start : starts) {
            const std::uint32_t size = start;
            start = sum;
            sum += size;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t at = starts[buckets[i]]++;
            order[at] = static_cast<std::uint32_t>(i);
            sortedKeys[at] = keys[i];
        }
        constexpr std::size_t AHEAD = 16;
        for (std::size_t j = 0; j < count; ++j) {
            if (j + AHEAD < count) {
                const std::size_t near = locator.estimate(sortedKeys[j + AHEAD]);
                locator.prefetchTime(near);
                prefetch(near);
            }
            const Bracket bracket = locator.locate(sortedKeys[j], walkFrom);
            walkFrom = bracket.valid ? bracket.upper : walkFrom;
            visit(first + order[j], sortedKeys.data() + j, 1, bracket);
        }
        lastKey = -HUGE_VAL;
    }
    return end;
}

} // namespace Kelvo::Geodesy::Batch
