// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/ErrorManagement/ErrorIdentifier.h"
#include "Utils/UtilsExport.h"

#include <memory>

namespace Kelvo::Utils::ErrorManagement {

/// An error value: shares the identifier of what went wrong.
class KELVO_UTILS_EXPORT Error {
public:
    explicit Error(std::shared_ptr<ErrorIdentifier> identifier);
    ~Error();
    Error(const Error&) = default;
    Error& operator=(const Error&) = default;

    /// May be empty when the identifier could not be made (package not registered).
    const std::shared_ptr<ErrorIdentifier>& getIdentifier() const { return identifier; }

private:
    std::shared_ptr<ErrorIdentifier> identifier;
};

} // namespace Kelvo::Utils::ErrorManagement
