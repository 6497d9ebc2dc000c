// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/Situation.h"
#include "Utils/CoreAssert.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Kelvo::Maths {

/// How many values fell below, inside and above an interval. All counts start at 0.
class IntervalCounter {
public:
    std::uint64_t& operator[](Situation situation) { return counts[index(situation)]; }
    std::uint64_t operator[](Situation situation) const { return counts[index(situation)]; }

    bool operator==(const IntervalCounter&) const = default;

private:
    static std::size_t index(Situation situation)
    {
        const int value = static_cast<int>(situation);
        CORE_ASSERT(value >= -1 && value <= 1);
        return value < -1 ? 0 : value > 1 ? 2 : static_cast<std::size_t>(value + 1);
    }

    std::array<std::uint64_t, 3> counts{};
};

} // namespace Kelvo::Maths
