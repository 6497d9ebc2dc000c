// SPDX-License-Identifier: MIT
#pragma once

#include "Core/FileInfo.h"
#include "Geodesy/GeodesyExport.h"
#include "Geodesy/Smrmsg/Record.h"

#include <istream>
#include <memory>

namespace Kelvo::Geodesy::Trajectory {
class ReadBuffer;
}

namespace Kelvo::Geodesy::Smrmsg {

/// Reads SMRMSG files, the smoothed RMS errors of an SBET trajectory: no header, 80-byte
/// records of ten little-endian doubles, returned as Smrmsg::Record without interpretation.
/// Local files only; an empty file is accepted, and a trailing partial record ends the
/// reading.
///
/// Failures: a file that cannot be opened throws std::system_error ("<errno text>:
/// \"<path>\""); reading after the end throws std::runtime_error ("SMRMSG file has
/// unexpectedly reached EOF."); a stream failure throws std::ios_base::failure.
///
/// End of file is tested before each read: the `getNext()` whose read hits the end returns a
/// record holding no file data (signalling NaNs where no byte came), which callers drop after
/// seeing `endOfFile()`; the call after it throws.
class KELVO_GEODESY_EXPORT Reader {
public:
    explicit Reader(const Core::FileInfo& fileInfo);
    ~Reader();
    Reader(Reader&&) noexcept;
    /// Releases the stream held before.
    Reader& operator=(Reader&&) noexcept;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    /// Whether a read has run into the end of the file.
    bool endOfFile() const { return inStream->eof(); }
    Record getNext();

private:
    std::unique_ptr<std::istream> inStream;
    /// Read-ahead over `inStream`.
    std::unique_ptr<Trajectory::ReadBuffer> readBuffer;
};

} // namespace Kelvo::Geodesy::Smrmsg
