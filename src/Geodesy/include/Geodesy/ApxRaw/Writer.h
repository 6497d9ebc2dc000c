// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Geodesy/ApxRaw/RawRecord.h"
#include "Geodesy/Trajectory/FileWriter.h"

namespace Kelvo::Geodesy::ApxRaw {

/// Writes raw APX navigation records in the layout that ApxRaw::Reader reads: 115 bytes per
/// record, big-endian, the fields of RawRecord in the file's units and zeros in every other
/// byte. Opening and write failures are those of Trajectory::FileWriter.
class KELVO_GEODESY_EXPORT Writer : public Trajectory::FileWriter {
public:
    using FileWriter::FileWriter;

    void write(const RawRecord& record);
};

} // namespace Kelvo::Geodesy::ApxRaw
