// SPDX-License-Identifier: MIT
#pragma once

#include "ProjContext.h"

#include <string>

namespace Kelvo::Projection {

/// "<argument> '<text>'", the start of every message about a user's CRS text.
std::string quoted(const std::string& argument, const std::string& text);

/// The CRS that a user's text names, made in `context`: an authority code, a PROJ string (with
/// or without "+type=crs"), WKT, PROJJSON or an exact name from PROJ's database. A bound CRS
/// (a PROJ string with "+towgs84") is kept as it is. Throws `Geodesy::Batch::ArgumentError`
/// "<argument> '<text>': <reason>" when the text names no CRS, or a CRS without x and y.
PjPointer createCrs(ProjContext& context, const std::string& text, const std::string& argument);

/// The CRS a bound CRS is bound to (a copy of `crs` otherwise), whose type and axes describe
/// the coordinates. Empty if PROJ fails.
PjPointer baseCrs(ProjContext& context, const PJ* crs);

} // namespace Kelvo::Projection
