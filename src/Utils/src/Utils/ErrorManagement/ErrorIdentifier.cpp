// SPDX-License-Identifier: MIT
#include "Utils/ErrorManagement/ErrorIdentifier.h"

namespace Kelvo::Utils::ErrorManagement {

ErrorIdentifier::ErrorIdentifier(PackageIdentifier package)
    : package(package)
{
}

ErrorIdentifier::~ErrorIdentifier() = default;

} // namespace Kelvo::Utils::ErrorManagement
