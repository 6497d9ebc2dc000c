// SPDX-License-Identifier: MIT
#include "Utils/ErrorManagement/ErrorIdentifierFactory.h"

#include <map>
#include <utility>

namespace Kelvo::Utils::ErrorManagement {
namespace {

std::map<PackageIdentifier, ErrorIdentifierFactory::Constructor>& registry()
{
    static std::map<PackageIdentifier, ErrorIdentifierFactory::Constructor> constructors;
    return constructors;
}

} // namespace

void ErrorIdentifierFactory::registerConstructor(PackageIdentifier package, Constructor constructor)
{
    registry()[package] = std::move(constructor);
}

void ErrorIdentifierFactory::unregisterConstructor(PackageIdentifier package)
{
    registry().erase(package);
}

bool ErrorIdentifierFactory::isRegistered(PackageIdentifier package)
{
    return registry().contains(package);
}

std::unique_ptr<ErrorIdentifier> ErrorIdentifierFactory::create(PackageIdentifier package, unsigned int errorId)
{
    const auto found = registry().find(package);
    if (found == registry().end() || !found->second) {
        return nullptr;
    }
    return found->second(errorId);
}

} // namespace Kelvo::Utils::ErrorManagement
