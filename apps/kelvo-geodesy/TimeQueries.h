// SPDX-License-Identifier: MIT
#pragma once

#include "Maths/Situation.h"

#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

// The times files that `at` reads, and the count of the times left without a value.
namespace Kelvo::Tool {

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
