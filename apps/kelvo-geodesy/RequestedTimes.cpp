// SPDX-License-Identifier: MIT
#include "RequestedTimes.h"

#include "Context.h"
#include "Numbers.h"

#include <cmath>
#include <string>

namespace Kelvo::Tool {
namespace {

constexpr double MICROSECONDS = 1.0e6;
/// Below this many microseconds every whole microsecond is a double, and so is every grid
/// index of a step of a microsecond or more.
constexpr double EXACT_MICROSECONDS = 0x1p53;

double gridTime(std::int64_t index, double step)
{
    return std::round(static_cast<double>(index) * step * MICROSECONDS) / MICROSECONDS;
}

} // namespace

RequestedTimes::RequestedTimes(std::vector<double> times)
    : listed(std::move(times))
    , count(listed.size())
{
}

RequestedTimes RequestedTimes::grid(double first, double last, double step)
{
    if (!(step > 0.0) || !std::isfinite(step)) {
        throw UsageError("--every needs a positive number of seconds, not " + shortest(step));
    }
    if (step * MICROSECONDS < 1.0) {
        throw UsageError("--every " + shortest(step) + " is finer than the microsecond the times are rounded to");
    }
    const double limit = EXACT_MICROSECONDS / MICROSECONDS;
    if (!(std::abs(first) < limit && std::abs(last) < limit)) {
        throw UsageError("--every cannot count the times from " + shortest(first) + " to " + shortest(last)
                         + " s in microseconds: a grid must lie within +-" + shortest(limit) + " s");
    }
    // Both indexes are below 2^53 in magnitude: exact as doubles and as integers.
    const auto firstIndex = static_cast<std::int64_t>(std::ceil(first / step));
    const auto lastIndex = static_cast<std::int64_t>(std::floor(last / step));
    const std::int64_t span = lastIndex - firstIndex + 1;
    if (span > static_cast<std::int64_t>(MAX_GRID_TIMES)) {
        throw UsageError("--every " + shortest(step) + " gives " + std::to_string(span)
                         + " times, more than the limit of " + std::to_string(MAX_GRID_TIMES));
    }

    RequestedTimes times;
    times.isGrid = true;
    times.step = step;
    times.firstIndex = firstIndex;
    times.count = span > 0 ? static_cast<std::uint64_t>(span) : 0;
    // Rounding to the microsecond may push an end of the grid out of the span.
    while (times.count > 0 && times[0] < first) {
        ++times.firstIndex;
        --times.count;
    }
    while (times.count > 0 && times[times.count - 1] > last) {
        --times.count;
    }
    return times;
}

double RequestedTimes::operator[](std::uint64_t index) const
{
    if (!isGrid) {
        return listed[index];
    }
    return gridTime(firstIndex + static_cast<std::int64_t>(index), step);
}

} // namespace Kelvo::Tool
