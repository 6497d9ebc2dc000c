// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"

#include <exception>
#include <string>

namespace Kelvo::Geodesy::CoordinateSystem {

/// Thrown, with an empty message, when a coordinate-system name or value is not one the
/// library knows. Derives from std::exception directly, not from Core::Exception.
class KELVO_GEODESY_EXPORT OutputCoordinateSystemNotSupportedException : public std::exception {
public:
    OutputCoordinateSystemNotSupportedException();
    explicit OutputCoordinateSystemNotSupportedException(const std::string& message);
    OutputCoordinateSystemNotSupportedException(const OutputCoordinateSystemNotSupportedException& other);
    /// Takes the message, leaving `other` with an empty one.
    OutputCoordinateSystemNotSupportedException(OutputCoordinateSystemNotSupportedException&& other) noexcept;
    OutputCoordinateSystemNotSupportedException& operator=(const OutputCoordinateSystemNotSupportedException& other);
    OutputCoordinateSystemNotSupportedException& operator=(OutputCoordinateSystemNotSupportedException&& other) noexcept;
    ~OutputCoordinateSystemNotSupportedException() override;

    const char* what() const noexcept override;

private:
    std::string message;
};

} // namespace Kelvo::Geodesy::CoordinateSystem
