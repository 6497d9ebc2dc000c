// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace Kelvo::Utils::ErrorManagement {

/// The libraries of the family, each owning the error numbers of its package.
enum class PackageIdentifier : std::uint32_t {
    GEODESY = 24,
};

} // namespace Kelvo::Utils::ErrorManagement
