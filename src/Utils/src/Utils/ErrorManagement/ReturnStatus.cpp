// SPDX-License-Identifier: MIT
#include "Utils/ErrorManagement/ReturnStatus.h"

namespace Kelvo::Utils::ErrorManagement {

ReturnStatus::ReturnStatus(const Error& error)
    : error(error)
{
}

ReturnStatus::~ReturnStatus() = default;

std::string ReturnStatus::toString() const
{
    const auto& identifier = error.getIdentifier();
    if (!identifier) {
        return "unknown error";
    }
    return "package " + std::to_string(static_cast<std::uint32_t>(identifier->getPackage())) + ", error "
           + std::to_string(identifier->getErrorId());
}

} // namespace Kelvo::Utils::ErrorManagement
