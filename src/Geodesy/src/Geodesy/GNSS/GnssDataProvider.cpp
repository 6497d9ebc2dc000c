// SPDX-License-Identifier: MIT
#include "Geodesy/GNSS/GnssDataProvider.h"

namespace Kelvo::Geodesy::GNSS {

// Defined here so that the interface's type information lives in the library alone.
GnssDataProvider::~GnssDataProvider() = default;

} // namespace Kelvo::Geodesy::GNSS
