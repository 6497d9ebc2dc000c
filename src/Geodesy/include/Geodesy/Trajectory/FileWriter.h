// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <ostream>

namespace Kelvo::Geodesy::Trajectory {

/// Where the record writers of the binary trajectory formats (Sbet::Writer, ApxRaw::Writer,
/// Smrmsg::Writer) put their bytes: a file that the writer creates, or a stream that the
/// caller owns.
///
/// The path constructor creates or truncates the file and throws std::system_error
/// ("<errno text>: \"<path>\"") when it cannot. A failed write or flush throws
/// std::ios_base::failure; a file whose writer is destroyed without flush() is flushed
/// without reporting errors.
class KELVO_GEODESY_EXPORT FileWriter {
public:
    explicit FileWriter(const std::filesystem::path& path);
    /// Writes into `stream`, which must outlive the writer.
    explicit FileWriter(std::ostream& stream);
    ~FileWriter();
    FileWriter(FileWriter&&) noexcept;
    FileWriter& operator=(FileWriter&&) noexcept;

    void flush();

protected:
    void writeBytes(const char* bytes, std::size_t count);

private:
    std::unique_ptr<std::ostream> ownedStream;
    std::ostream* out;
};

} // namespace Kelvo::Geodesy::Trajectory
