// SPDX-License-Identifier: MIT
#include "Geodesy/ApxRaw/Writer.h"

#include "Layout.h"

#include <array>

namespace Kelvo::Geodesy::ApxRaw {

void Writer::write(const RawRecord& record)
{
    const auto bytes = Layout::encode(record);
    writeBytes(bytes.data(), bytes.size());
}

} // namespace Kelvo::Geodesy::ApxRaw
