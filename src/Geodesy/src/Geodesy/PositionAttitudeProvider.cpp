// SPDX-License-Identifier: MIT
#include "Geodesy/PositionAttitudeProvider.h"

namespace Kelvo::Geodesy {

// Defined here so that the interface's type information lives in the library alone.
PositionAttitudeProvider::PositionAttitudeProvider() = default;
PositionAttitudeProvider::~PositionAttitudeProvider() = default;

} // namespace Kelvo::Geodesy
