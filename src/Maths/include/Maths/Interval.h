// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/CoreAssert.h"

#include <cmath>
#include <limits>
#include <utility>

namespace Kelvo::Maths {

/// A closed interval [data.first, data.second]. The default interval is empty, from
/// +infinity to -infinity, so that the first expand() sets both bounds.
template <typename T>
class Interval {
public:
    Interval()
        : data(std::numeric_limits<T>::infinity(), -std::numeric_limits<T>::infinity())
    {
    }
    Interval(T lower, T upper)
        : data(lower, upper)
    {
    }

    /// True when the upper bound is strictly greater than the lower one.
    bool isValid() const { return data.second > data.first; }

    /// Widens the interval so that it holds `v`.
    void expand(T v)
    {
        CORE_ASSERT(std::isnormal( v ) || std::isinf( v ) || v == 0);
        if (v < data.first) {
            data.first = v;
        }
        if (v > data.second) {
            data.second = v;
        }
    }

    /// Moves the upper bound to `v`, which must lie above the lower bound.
    void setUpper(T v)
    {
        CORE_ASSERT(v > data.first);
        data.second = v;
    }

    bool operator==(const Interval&) const = default;

    std::pair<T, T> data;
};

} // namespace Kelvo::Maths
