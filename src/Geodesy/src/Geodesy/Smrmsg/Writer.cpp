// SPDX-License-Identifier: MIT
#include "Geodesy/Smrmsg/Writer.h"

#include "Layout.h"

#include "../Trajectory/FileAccess.h"

#include <array>

namespace Kelvo::Geodesy::Smrmsg {

Writer::Writer(const std::filesystem::path& path)
    : ownedStream(Trajectory::openForWriting(path))
    , out(ownedStream.get())
{
}

Writer::Writer(std::ostream& stream)
    : out(&stream)
{
}

Writer::~Writer() = default;
Writer::Writer(Writer&&) noexcept = default;
Writer& Writer::operator=(Writer&&) noexcept = default;

void Writer::write(const Record& record)
{
    std::array<char, Layout::RECORD_SIZE> bytes;
    Layout::encode(record, bytes.data());
    Trajectory::writeBytes(*out, bytes.data(), bytes.size());
}

void Writer::flush()
{
    Trajectory::flushOrThrow(*out);
}

} // namespace Kelvo::Geodesy::Smrmsg
