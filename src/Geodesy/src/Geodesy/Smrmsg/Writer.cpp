// SPDX-License-Identifier: MIT
#include "Geodesy/Smrmsg/Writer.h"

#include "Layout.h"

#include <array>

namespace Kelvo::Geodesy::Smrmsg {

void Writer::write(const Record& record)
{
    std::array<char, Layout::RECORD_SIZE> bytes;
    Layout::encode(record, bytes.data());
    writeBytes(bytes.data(), bytes.size());
}

} // namespace Kelvo::Geodesy::Smrmsg
