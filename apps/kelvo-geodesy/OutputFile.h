// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>

namespace Kelvo::Tool {

/// A file that appears complete or not at all. The bytes go to a temporary file beside the
/// target (".<name>.<pid>.partial"); commit() flushes and closes it and renames it over the
/// target. A file that is destroyed without commit(), because an error stopped the work, is
/// removed, so a failure never leaves a half-written file under the target's name.
///
/// Failures throw InputError naming the target: the temporary file cannot be created, a
/// write or the close fails, or the rename fails.
class AtomicFile {
public:
    explicit AtomicFile(std::filesystem::path target);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    std::ostream& stream() { return file; }
    void commit();

private:
    std::filesystem::path target;
    std::filesystem::path temporary;
    std::ofstream file;
    bool committed = false;
};

/// Where a subcommand's data goes: the standard output, or the file of --output through an
/// AtomicFile. commit() once everything is written.
class DataOutput {
public:
    DataOutput(std::ostream& standardOutput, const std::optional<std::filesystem::path>& file);

    std::ostream& stream() { return file ? file->stream() : standardOutput; }
    void commit();

private:
    std::ostream& standardOutput;
    std::optional<AtomicFile> file;
};

} // namespace Kelvo::Tool
