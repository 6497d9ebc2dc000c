// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/ErrorManagement/ErrorIdentifier.h"
#include "Utils/ErrorManagement/PackageIdentifier.h"
#include "Utils/UtilsExport.h"

#include <functional>
#include <memory>

namespace Kelvo::Utils::ErrorManagement {

/// Process-wide registry of the error-identifier constructors of the loaded packages. A
/// package registers its constructor when its library is loaded and unregisters it when the
/// library is unloaded.
class KELVO_UTILS_EXPORT ErrorIdentifierFactory {
public:
    using Constructor = std::function<std::unique_ptr<ErrorIdentifier>(unsigned int errorId)>;

    /// Registers (or replaces) the constructor of `package`.
    static void registerConstructor(PackageIdentifier package, Constructor constructor);
    static void unregisterConstructor(PackageIdentifier package);
    static bool isRegistered(PackageIdentifier package);

    /// The identifier of error `errorId` of `package`; empty when the package has no
    /// registered constructor.
    static std::unique_ptr<ErrorIdentifier> create(PackageIdentifier package, unsigned int errorId);
};

} // namespace Kelvo::Utils::ErrorManagement
