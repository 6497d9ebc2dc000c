// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Geodesy/Trajectory/Record.h"

#include <filesystem>
#include <memory>
#include <ostream>

namespace Kelvo::Geodesy::Sbet {

/// Writes trajectory records as an SBET file, in the layout that Sbet::Reader reads: 136
/// bytes per record, the seventeen doubles of Trajectory::Record in little-endian order (the
/// status is not written). The values are written as given, without conversion.
///
/// The path constructor creates or truncates the file and throws std::system_error
/// ("<errno text>: \"<path>\"") when it cannot. A failed write throws std::ios_base::failure.
class KELVO_GEODESY_EXPORT Writer {
public:
    explicit Writer(const std::filesystem::path& path);
    /// Writes into `stream`, which must outlive the writer.
    explicit Writer(std::ostream& stream);
    ~Writer();
    Writer(Writer&&) noexcept;
    Writer& operator=(Writer&&) noexcept;

    void write(const Trajectory::Record& record);
    /// Flushes the stream; errors of a file written by a writer that is destroyed without
    /// flushing go unreported.
    void flush();

private:
    std::unique_ptr<std::ostream> ownedStream;
    std::ostream* out;
};

} // namespace Kelvo::Geodesy::Sbet
