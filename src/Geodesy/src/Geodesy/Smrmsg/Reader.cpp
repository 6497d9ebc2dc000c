// SPDX-License-Identifier: MIT
#include "Geodesy/Smrmsg/Reader.h"

#include "Layout.h"

#include "../Trajectory/ByteOrder.h"
#include "../Trajectory/FileAccess.h"
#include "../Trajectory/ReadBuffer.h"

#include "Utils/CoreAssert.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <stdexcept>

namespace Kelvo::Geodesy::Smrmsg {

Reader::Reader(const Core::FileInfo& fileInfo)
    : inStream(fileInfo.makeStream(std::optional<int>(std::ios::binary | std::ios::ate)))
    , readBuffer(std::make_unique<Trajectory::ReadBuffer>(true))
{
    // Kept before anything else can overwrite it: it says why the file did not open.
    const int openError = errno;
    CORE_ASSERT(inStream);
    inStream->exceptions(std::ios::badbit);
    const std::streampos size = inStream->tellg();
    CORE_ASSERT(size >= 0);
    auto* ifs = dynamic_cast<std::ifstream*>(inStream.get());
    CORE_ASSERT(ifs);
    if (ifs != nullptr && ifs->is_open()) {
        ifs->seekg(0, std::ios::beg);
        return;
    }
    // A live source is no file: this reader cannot take one.
    throw Trajectory::openFailure(ifs == nullptr ? EOPNOTSUPP : openError, fileInfo.getPath());
}

Reader::~Reader() = default;
Reader::Reader(Reader&&) noexcept = default;
Reader& Reader::operator=(Reader&&) noexcept = default;

Record Reader::getNext()
{
    if (endOfFile()) {
        throw std::runtime_error("SMRMSG file has unexpectedly reached EOF.");
    }
    // At the end of the file, values that never came stay NaN.
    Record record;
    Trajectory::readLittleEndianDoubles(*inStream, *readBuffer, record, Layout::FIELDS);
    return record;
}

} // namespace Kelvo::Geodesy::Smrmsg
