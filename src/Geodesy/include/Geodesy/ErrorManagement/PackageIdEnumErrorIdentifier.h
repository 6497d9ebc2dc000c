// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Utils/ErrorManagement/ErrorIdentifier.h"

#include <cstdint>

namespace Kelvo::Geodesy::ErrorManagement {

/// An error of the geodesy package: package 24 and one of the GeodesyErrors numbers.
struct KELVO_GEODESY_EXPORT PackageIdEnumErrorIdentifier : Utils::ErrorManagement::ErrorIdentifier {
    explicit PackageIdEnumErrorIdentifier(std::uint32_t errorId);
    ~PackageIdEnumErrorIdentifier() override;

    std::uint32_t getErrorId() const override;

    std::uint32_t errorId;
};

} // namespace Kelvo::Geodesy::ErrorManagement
