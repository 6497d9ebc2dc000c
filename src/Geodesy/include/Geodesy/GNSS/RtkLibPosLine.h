// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GNSS/GnssData.h"
#include "Geodesy/GeodesyExport.h"

#include <optional>
#include <string_view>

namespace Kelvo::Geodesy::GNSS {

/// The record of one data line of an RTKLIB position file (GPS week and seconds of week,
/// latitude/longitude in degrees, height, then Q, ns, the standard deviations, age, ratio
/// and the velocity columns: 24 numbers, anything after them ignored), exactly as the
/// library's GNSS reader reads it: latitude and longitude in radians, the third position
/// component and the down velocity negated from the file's height and up velocity, the
/// off-diagonal covariances from the file's signed square roots, diagonals 0.01.
/// Nothing when the line does not hold the 24 numbers as stream extraction reads them: a
/// header line, calendar time, missing velocity columns. Lets callers tell beforehand which
/// lines the reader will take.
KELVO_GEODESY_EXPORT std::optional<GnssData> parseRtkLibPosLine(std::string_view line);

} // namespace Kelvo::Geodesy::GNSS
