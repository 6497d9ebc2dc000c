// SPDX-License-Identifier: MIT
#pragma once

#include "Core/CoreExport.h"

#include <exception>
#include <string>

namespace Kelvo::Core {

/// The family's base exception: a message, returned by what().
class KELVO_CORE_EXPORT Exception : public std::exception {
public:
    explicit Exception(const std::string& message);
    Exception(const Exception& other);
    Exception& operator=(const Exception& other);
    ~Exception() override;

    const char* what() const noexcept override;

private:
    std::string message;
};

} // namespace Kelvo::Core
