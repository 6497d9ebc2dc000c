// SPDX-License-Identifier: MIT
#include "Geodesy/Sbet/Writer.h"

#include "Layout.h"

#include <array>

namespace Kelvo::Geodesy::Sbet {

void Writer::write(const Trajectory::Record& record)
{
    std::array<char, Layout::RECORD_SIZE> bytes;
    Layout::encode(record, bytes.data());
    writeBytes(bytes.data(), bytes.size());
}

} // namespace Kelvo::Geodesy::Sbet
