// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Utils/ErrorManagement/ErrorIdentifier.h"

#include <cstdint>
#include <memory>

namespace Kelvo::Geodesy::ErrorManagement {

/// The error numbers of the geodesy package (package 24). The identifier constructor is
/// registered with Utils::ErrorManagement::ErrorIdentifierFactory while the library is
/// loaded.
enum GeodesyErrors : std::uint32_t {
    UNSPECIFIED_GEODESY_ERROR = 0,
    LAST_ERROR,
};

/// The identifier of geodesy error `errorId`. A number at or beyond LAST_ERROR is reported
/// and still yields an identifier holding it.
KELVO_GEODESY_EXPORT std::unique_ptr<Utils::ErrorManagement::ErrorIdentifier> createErrorIdentifier(std::uint32_t errorId);

} // namespace Kelvo::Geodesy::ErrorManagement
