// SPDX-License-Identifier: MIT
#include "Geodesy/CoordinateSystem/OutputCoordinateSystemNotSupportedException.h"

#include <utility>

namespace Kelvo::Geodesy::CoordinateSystem {

OutputCoordinateSystemNotSupportedException::OutputCoordinateSystemNotSupportedException() = default;

OutputCoordinateSystemNotSupportedException::OutputCoordinateSystemNotSupportedException(const std::string& message)
    : message(message)
{
}

OutputCoordinateSystemNotSupportedException::OutputCoordinateSystemNotSupportedException(
    const OutputCoordinateSystemNotSupportedException& other) = default;

OutputCoordinateSystemNotSupportedException::OutputCoordinateSystemNotSupportedException(
    OutputCoordinateSystemNotSupportedException&& other) noexcept
    : std::exception(other)
    , message(std::exchange(other.message, {}))
{
}

OutputCoordinateSystemNotSupportedException& OutputCoordinateSystemNotSupportedException::operator=(
    const OutputCoordinateSystemNotSupportedException& other) = default;

OutputCoordinateSystemNotSupportedException& OutputCoordinateSystemNotSupportedException::operator=(
    OutputCoordinateSystemNotSupportedException&& other) noexcept
{
    std::exception::operator=(other);
    message = std::exchange(other.message, {});
    return *this;
}

OutputCoordinateSystemNotSupportedException::~OutputCoordinateSystemNotSupportedException() = default;

const char* OutputCoordinateSystemNotSupportedException::what() const noexcept
{
    return message.c_str();
}

} // namespace Kelvo::Geodesy::CoordinateSystem
