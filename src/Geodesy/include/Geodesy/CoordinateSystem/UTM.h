// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Geodesy/LatLonHeight.h"
#include "Maths/Degree.h"
#include "Maths/Radian.h"

#include <cstddef>
#include <filesystem>

/// UTM zones on WGS84. A zone is a signed number: 1 to 60 north of the equator, -1 to -60
/// south of it (a latitude of -0 counts as south). Zones are plain 6-degree sectors: the
/// Norway and Svalbard exceptions are not applied and no latitude band is computed.
/// Out-of-range input is reported through CoreAssert and the computation goes on.
namespace Kelvo::Geodesy::CoordinateSystem::UTM {

/// The signed zone of a position given in degrees. Asserts "lat <= +84.0_deg" and
/// "lat >= -80.0_deg"; any longitude is brought into [0, 360) first.
KELVO_GEODESY_EXPORT int zone(Maths::Degree lat, Maths::Degree lon);
/// The signed zone of a position given in radians.
KELVO_GEODESY_EXPORT int zone(Maths::Radian lat, Maths::Radian lon);
/// The signed zone of `position`.
KELVO_GEODESY_EXPORT int zone(const LatLonHeight& position);

/// The EPSG code of the WGS84 UTM projection of `zone`: 32600 + zone in the north, 32700 +
/// |zone| in the south. A zone outside 1..60 in magnitude is reported and still mapped
/// (zone 0 gives 32600).
KELVO_GEODESY_EXPORT std::size_t epsgWGS84(int zone);

/// The position of record `index` (from 0) of the trajectory file at the absolute `path`: a
/// raw APX file when the extension is exactly ".stream" (case-sensitive), an SBET file
/// otherwise. Typically used to choose the zone of a survey from its first position. An
/// index past the last record is reported, then read anyway (the reader's end-of-file
/// behaviour applies); file errors are the readers' exceptions.
KELVO_GEODESY_EXPORT LatLonHeight readNthPosition(const std::filesystem::path& path, std::size_t index);

} // namespace Kelvo::Geodesy::CoordinateSystem::UTM
