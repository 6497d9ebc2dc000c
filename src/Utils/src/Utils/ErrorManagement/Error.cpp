// SPDX-License-Identifier: MIT
#include "Utils/ErrorManagement/Error.h"

#include <utility>

namespace Kelvo::Utils::ErrorManagement {

Error::Error(std::shared_ptr<ErrorIdentifier> identifier)
    : identifier(std::move(identifier))
{
}

Error::~Error() = default;

} // namespace Kelvo::Utils::ErrorManagement
