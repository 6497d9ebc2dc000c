// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/ErrorManagement/Error.h"
#include "Utils/UtilsExport.h"

#include <string>

namespace Kelvo::Utils::ErrorManagement {

/// The status an operation reports: here always a failure carrying its Error.
class KELVO_UTILS_EXPORT ReturnStatus {
public:
    explicit ReturnStatus(const Error& error);
    ~ReturnStatus();
    ReturnStatus(const ReturnStatus&) = default;
    ReturnStatus& operator=(const ReturnStatus&) = default;

    const Error& getError() const { return error; }

    /// "package 24, error 0", or "unknown error" when the error carries no identifier.
    std::string toString() const;

private:
    Error error;
};

} // namespace Kelvo::Utils::ErrorManagement
