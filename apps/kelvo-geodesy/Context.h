// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <ostream>
#include <stdexcept>
#include <string>

namespace Kelvo::Tool {

/// Where a subcommand writes: data to `out`, messages to `err`. `progress` says whether a
/// progress bar may be drawn on `err` (only when it is a terminal).
struct Context {
    std::ostream& out;
    std::ostream& err;
    bool progress = false;
};

/// Exit codes of the tool.
enum ExitCode : int {
    SUCCESS = 0,
    BAD_INPUT = 1, ///< a file or a value in a file that cannot be used
    BAD_USAGE = 2, ///< arguments that do not make a valid command
};

/// A file that cannot be used: missing, empty, truncated, of another format, or holding a
/// value that cannot be read. Reported as "error: <file>: <problem>", exit code 1.
class InputError : public std::runtime_error {
public:
    InputError(const std::filesystem::path& file, const std::string& problem)
        : std::runtime_error(file.string() + ": " + problem)
    {
    }
};

/// Arguments that make no valid command (conflicting or missing options, unreadable numbers
/// on the command line). Reported as "error: <problem>", exit code 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace Kelvo::Tool
