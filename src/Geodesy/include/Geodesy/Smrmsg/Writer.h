// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Geodesy/Smrmsg/Record.h"
#include "Geodesy/Trajectory/FileWriter.h"

namespace Kelvo::Geodesy::Smrmsg {

/// Writes SMRMSG records in the layout that Smrmsg::Reader reads: 80 bytes per record, the
/// ten doubles of Smrmsg::Record in little-endian order. Opening and write failures are those
/// of Trajectory::FileWriter.
class KELVO_GEODESY_EXPORT Writer : public Trajectory::FileWriter {
public:
    using FileWriter::FileWriter;

    void write(const Record& record);
};

} // namespace Kelvo::Geodesy::Smrmsg
