// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/ErrorManagement/PackageIdentifier.h"
#include "Utils/UtilsExport.h"

#include <cstdint>

namespace Kelvo::Utils::ErrorManagement {

/// An error of one package: the package it belongs to and the package's own error number.
/// Each package derives its identifier type and registers a constructor for it with
/// ErrorIdentifierFactory.
class KELVO_UTILS_EXPORT ErrorIdentifier {
public:
    explicit ErrorIdentifier(PackageIdentifier package);
    ErrorIdentifier(const ErrorIdentifier&) = default;
    ErrorIdentifier& operator=(const ErrorIdentifier&) = default;
    virtual ~ErrorIdentifier();

    PackageIdentifier getPackage() const { return package; }

    /// The error number within the package.
    virtual std::uint32_t getErrorId() const = 0;

private:
    PackageIdentifier package;
};

} // namespace Kelvo::Utils::ErrorManagement
