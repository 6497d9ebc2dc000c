// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/Situation.h"

#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

// The lists of times that `at` and `gnss` answer, and the count of those left without a
// value.
namespace Kelvo::Tool {

/// The multiples of `step` from `first` to `last`, both included when they fall on the grid,
/// rounded to the microsecond so that they print as the short decimals a person expects.
/// Throws UsageError for a step that is not positive or that would give more than 100
/// million times.
std::vector<double> timeGrid(double first, double last, double step);

/// The times of a text file: one number per line; blank lines and lines starting with '#'
/// are skipped. Throws InputError naming the file and line of anything else.
std::vector<double> readTimesFile(const std::filesystem::path& path);

/// Times that got no value, by where they fell against the data's time span.
class MissingTimes {
public:
    void add(Maths::Situation situation) { ++counts[static_cast<std::size_t>(static_cast<int>(situation) + 1)]; }
    std::uint64_t total() const { return counts[0] + counts[1] + counts[2]; }

    /// When any time got no value, writes "<command>: N of M times without a value: B below,
    /// I inside, A above <span>" on `err`.
    void report(std::ostream& err, const std::string& command, std::uint64_t requested, const std::string& span) const;

private:
    std::uint64_t counts[3] = {0, 0, 0};
};

/// "below", "inside" or "above".
std::string situationName(Maths::Situation situation);

} // namespace Kelvo::Tool
