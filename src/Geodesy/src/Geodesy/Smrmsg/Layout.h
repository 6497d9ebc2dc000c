// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Smrmsg/Record.h"

#include "../Trajectory/ByteOrder.h"

#include <array>
#include <cstddef>

// The SMRMSG record: no header, 80-byte records of ten little-endian IEEE-754 doubles, in the
// order of the fields of Smrmsg::Record. Shared by the reader and the writer.
namespace Kelvo::Geodesy::Smrmsg::Layout {

inline constexpr std::array<double Record::*, 10> FIELDS = {
    &Record::time,           &Record::northPositionRms, &Record::eastPositionRms, &Record::downPositionRms,
    &Record::northVelocityRms, &Record::eastVelocityRms, &Record::downVelocityRms, &Record::rollRms,
    &Record::pitchRms,       &Record::headingRms,
};

inline constexpr std::size_t RECORD_SIZE = 80;
static_assert(RECORD_SIZE == FIELDS.size() * sizeof(double));
static_assert(sizeof(Record) == RECORD_SIZE);

inline void encode(const Record& record, char* bytes)
{
    Trajectory::ByteOrder::storeLittleEndianDoubles(bytes, record, FIELDS);
}

} // namespace Kelvo::Geodesy::Smrmsg::Layout
