// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Trajectory/Record.h"

#include "../Trajectory/ByteOrder.h"

#include <array>
#include <cstddef>

// The SBET record: no header, no trailer, 136-byte records of seventeen little-endian
// IEEE-754 doubles, in the order of the fields of Trajectory::Record. Shared by the reader
// and the writer.
namespace Kelvo::Geodesy::Sbet::Layout {

using Trajectory::Record;

inline constexpr std::array<double Record::*, 17> FIELDS = {
    &Record::time,         &Record::latitude,     &Record::longitude, &Record::height,    &Record::velocityX,
    &Record::velocityY,    &Record::velocityZ,    &Record::roll,      &Record::pitch,     &Record::heading,
    &Record::wanderAngle,  &Record::forceX,       &Record::forceY,    &Record::forceZ,    &Record::angularRateX,
    &Record::angularRateY, &Record::angularRateZ,
};

inline constexpr std::size_t RECORD_SIZE = 136;
static_assert(RECORD_SIZE == FIELDS.size() * sizeof(double));

/// Writes the seventeen doubles of `record` as RECORD_SIZE bytes.
inline void encode(const Record& record, char* bytes)
{
    Trajectory::ByteOrder::storeLittleEndianDoubles(bytes, record, FIELDS);
}

} // namespace Kelvo::Geodesy::Sbet::Layout
