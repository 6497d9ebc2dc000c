// SPDX-License-Identifier: MIT
#include "Geodesy/ApxRaw/Writer.h"

#include "Layout.h"

#include "../Trajectory/FileAccess.h"

namespace Kelvo::Geodesy::ApxRaw {

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

void Writer::write(const RawRecord& record)
{
    const auto bytes = Layout::encode(record);
    Trajectory::writeBytes(*out, bytes.data(), bytes.size());
}

void Writer::flush()
{
    Trajectory::flushOrThrow(*out);
}

} // namespace Kelvo::Geodesy::ApxRaw
