// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/CoreAssert.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace Kelvo::Utils {
namespace Detail {

// The parameter names below appear in the assertion texts: D is the destination type of a
// floating-point narrowing, S the signed destination and U the unsigned source of an
// unsigned-to-signed one.

template <typename D, typename F>
D narrowFloating(F value)
{
    CORE_ASSERT(value <= std::numeric_limits< D >::max());
    CORE_ASSERT(value >= std::numeric_limits< D >::min());
    // Out of range (or NaN) the plain conversion is undefined: saturate instead, which is
    // what truncation toward zero gives at the edges of the range.
    if (std::isnan(value)) {
        return D{0};
    }
    if (value >= static_cast<F>(std::numeric_limits<D>::max())) {
        return std::numeric_limits<D>::max();
    }
    if (value <= static_cast<F>(std::numeric_limits<D>::min())) {
        return std::numeric_limits<D>::min();
    }
    return static_cast<D>(value);
}

template <typename S, typename U>
S narrowUnsignedToSigned(U value)
{
    CORE_ASSERT(value <= static_cast< U >( std::numeric_limits< S >::max() ));
    if (value > static_cast<U>(std::numeric_limits<S>::max())) {
        return std::numeric_limits<S>::max();
    }
    return static_cast<S>(value);
}

} // namespace Detail

/// Checked narrowing conversion. Floating point to integer truncates toward zero after
/// asserting that the value fits; unsigned to signed asserts that the value fits. A value
/// that does not fit is reported and saturated to the nearest bound (NaN gives 0).
template <typename To, typename From>
To safeCast(From value)
{
    if constexpr (std::is_floating_point_v<From> && std::is_integral_v<To>) {
        return Detail::narrowFloating<To>(value);
    } else if constexpr (std::is_unsigned_v<From> && std::is_signed_v<To> && std::is_integral_v<To>) {
        return Detail::narrowUnsignedToSigned<To>(value);
    } else {
        static_assert(std::is_same_v<To, From> || (std::is_arithmetic_v<To> && std::is_arithmetic_v<From>
                                                   && sizeof(To) > sizeof(From)),
                      "safeCast: unsupported narrowing");
        return static_cast<To>(value);
    }
}

} // namespace Kelvo::Utils
