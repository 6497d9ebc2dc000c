// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Geodesy/Smrmsg/Record.h"

#include <filesystem>
#include <memory>
#include <ostream>

namespace Kelvo::Geodesy::Smrmsg {

/// Writes SMRMSG records in the layout that Smrmsg::Reader reads: 80 bytes per record, the
/// ten doubles of Smrmsg::Record in little-endian order.
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

    void write(const Record& record);
    /// Flushes the stream; errors of a file written by a writer that is destroyed without
    /// flushing go unreported.
    void flush();

private:
    std::unique_ptr<std::ostream> ownedStream;
    std::ostream* out;
};

} // namespace Kelvo::Geodesy::Smrmsg
