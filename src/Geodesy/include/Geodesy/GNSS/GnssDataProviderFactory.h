// SPDX-License-Identifier: MIT
#pragma once

#include "Core/FileInfo.h"
#include "Geodesy/GNSS/GnssDataProvider.h"
#include "Geodesy/GeodesyExport.h"

#include <cstdint>
#include <memory>
#include <set>

namespace Kelvo::Geodesy::GNSS {

/// Makes the GNSS provider for a set of input files. The one kind supported is a single
/// RTKLIB position file, recognised by its last extension being exactly ".pos" (".POS" is
/// not accepted).
class KELVO_GEODESY_EXPORT GnssDataProviderFactory {
public:
    /// How many files a GNSS input consists of.
    static constexpr std::uint64_t NUMBER_OF_FILE = 1;
    /// The extension of an RTKLIB position file.
    static constexpr const char* RTKLIB_POS_EXTENSION = ".pos";

    /// A provider over `fileInfos`, whose records count as moving from `velocityThreshold`
    /// [m/s] on (see RtkLibGnssDataProvider). Asserts "fileInfos.size() == NUMBER_OF_FILE";
    /// any other extension reports "Gnss file not supported" and gives an empty pointer.
    /// Exceptions of opening the file pass through.
    std::unique_ptr<GnssDataProvider> create(const std::set<Core::FileInfo>& fileInfos,
                                             const double& velocityThreshold);
};

} // namespace Kelvo::Geodesy::GNSS
