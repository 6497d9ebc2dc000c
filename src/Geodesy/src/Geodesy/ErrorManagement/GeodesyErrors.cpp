// SPDX-License-Identifier: MIT
#include "Geodesy/ErrorManagement/GeodesyErrors.h"

#include "Geodesy/ErrorManagement/PackageIdEnumErrorIdentifier.h"
#include "Utils/CoreAssert.h"
#include "Utils/ErrorManagement/ErrorIdentifierFactory.h"

namespace Kelvo::Geodesy::ErrorManagement {

using Utils::ErrorManagement::ErrorIdentifierFactory;
using Utils::ErrorManagement::PackageIdentifier;

PackageIdEnumErrorIdentifier::PackageIdEnumErrorIdentifier(std::uint32_t errorId)
    : ErrorIdentifier(PackageIdentifier::GEODESY)
    , errorId(errorId)
{
}

PackageIdEnumErrorIdentifier::~PackageIdEnumErrorIdentifier() = default;

std::uint32_t PackageIdEnumErrorIdentifier::getErrorId() const
{
    return errorId;
}

std::unique_ptr<Utils::ErrorManagement::ErrorIdentifier> createErrorIdentifier(std::uint32_t errorId)
{
    CORE_ASSERT(errorId < Kelvo::Geodesy::ErrorManagement::GeodesyErrors::LAST_ERROR);
    return std::make_unique<PackageIdEnumErrorIdentifier>(errorId);
}

namespace {

// Registers the package's identifier constructor when the library is loaded and removes it
// when the library is unloaded (its destructor runs from the library's exit handlers).
struct Registration {
    Registration()
    {
        ErrorIdentifierFactory::registerConstructor(PackageIdentifier::GEODESY, &createErrorIdentifier);
    }
    ~Registration() { ErrorIdentifierFactory::unregisterConstructor(PackageIdentifier::GEODESY); }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
};

const Registration registration;

} // namespace
} // namespace Kelvo::Geodesy::ErrorManagement
