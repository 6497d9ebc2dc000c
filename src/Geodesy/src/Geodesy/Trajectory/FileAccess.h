// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/FileHelper.h"

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <ios>
#include <memory>
#include <ostream>
#include <sstream>
#include <system_error>

// Opening and writing the files of the record readers and writers.
namespace Kelvo::Geodesy::Trajectory {

/// The error of a file that could not be opened: the text of `error` (an errno value), a
/// colon and the path in double quotes, e.g. `No such file or directory: "/data/run1.sbet"`.
inline std::system_error openFailure(int error, const std::filesystem::path& path)
{
    std::ostringstream message;
    message << Utils::FileHelper::errorString(error) << ": " << path;
    return std::system_error(error, std::generic_category(), message.str());
}

/// Creates or truncates `path` for binary writing; throws openFailure when it cannot.
inline std::unique_ptr<std::ostream> openForWriting(const std::filesystem::path& path)
{
    errno = 0;
    auto file = std::make_unique<std::ofstream>(path, std::ios::binary | std::ios::trunc);
    if (!file->is_open()) {
        throw openFailure(errno != 0 ? errno : EIO, path);
    }
    return file;
}

/// Writes `count` bytes; a failed stream throws std::ios_base::failure.
inline void writeBytes(std::ostream& out, const char* bytes, std::size_t count)
{
    if (!out.write(bytes, static_cast<std::streamsize>(count))) {
        throw std::ios_base::failure("Failed to write trajectory records.");
    }
}

/// Flushes `out`; a failed stream throws std::ios_base::failure.
inline void flushOrThrow(std::ostream& out)
{
    if (!out.flush()) {
        throw std::ios_base::failure("Failed to write trajectory records.");
    }
}

} // namespace Kelvo::Geodesy::Trajectory
