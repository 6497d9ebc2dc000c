// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Geodesy/Trajectory/Record.h"
#include "Geodesy/Trajectory/FileWriter.h"

namespace Kelvo::Geodesy::Sbet {

/// Writes trajectory records as an SBET file, in the layout that Sbet::Reader reads: 136
/// bytes per record, the seventeen doubles of Trajectory::Record in little-endian order (the
/// status is not written). The values are written as given, without conversion. Opening and
/// write failures are those of Trajectory::FileWriter.
class KELVO_GEODESY_EXPORT Writer : public Trajectory::FileWriter {
public:
    using FileWriter::FileWriter;

    void write(const Trajectory::Record& record);
};

} // namespace Kelvo::Geodesy::Sbet
