// SPDX-License-Identifier: MIT
#pragma once

#include "CRS/Transform.h"
#include "Core/FileInfo.h"
#include "Geodesy/GeodesyExport.h"
#include "Geodesy/PositionAttitudeProvider.h"
#include "Geodesy/Trajectory/Reader.h"

#include <memory>
#include <set>

namespace Kelvo::Geodesy {

/// Makes the position/attitude provider for a set of trajectory files. The format follows
/// the file-name extension: exactly ".stream" (case-sensitive) is raw APX, anything else is
/// SBET. One file gives a SbetPositionAttitudeProvider, several files of one extension a
/// MultipleSbetPositionAttitudeProvider over all of them.
class KELVO_GEODESY_EXPORT PositionAttitudeProviderFactory {
public:
    /// `transform` may be null (positions unchanged); `imuAlignmentStatus` goes to every
    /// reader. Asserts "!fileInfos.empty()" (and then gives an empty pointer) and, for
    /// several files, "extensions.size() == 1" (the first extension in sorted order then
    /// chooses the format). Exceptions of opening the files pass through.
    std::unique_ptr<PositionAttitudeProvider> create(const std::set<Core::FileInfo>& fileInfos,
                                                     const CRS::Transform* transform,
                                                     Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus);
};

} // namespace Kelvo::Geodesy
