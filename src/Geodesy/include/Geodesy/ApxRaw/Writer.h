// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/ApxRaw/RawRecord.h"
#include "Geodesy/GeodesyExport.h"

#include <filesystem>
#include <memory>
#include <ostream>

namespace Kelvo::Geodesy::ApxRaw {

/// Writes raw APX navigation records in the layout that ApxRaw::Reader reads: 115 bytes per
/// record, big-endian, the fields of RawRecord in the file's units and zeros in every other
/// byte.
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

    void write(const RawRecord& record);
    /// Flushes the stream; errors of a file written by a writer that is destroyed without
    /// flushing go unreported.
    void flush();

private:
    std::unique_ptr<std::ostream> ownedStream;
    std::ostream* out;
};

} // namespace Kelvo::Geodesy::ApxRaw
