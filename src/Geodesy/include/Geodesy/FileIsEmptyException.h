// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Exception.h"
#include "Geodesy/GeodesyExport.h"

#include <string>

namespace Kelvo::Geodesy {

/// Thrown by the family's modules for a file that has no content; they supply the message. Copying and
/// moving both copy the message.
class KELVO_GEODESY_EXPORT FileIsEmptyException : public Core::Exception {
public:
    explicit FileIsEmptyException(const std::string& message);
    FileIsEmptyException(const FileIsEmptyException&) = default;
    FileIsEmptyException(FileIsEmptyException&&) = default;
    FileIsEmptyException& operator=(const FileIsEmptyException&) = default;
    FileIsEmptyException& operator=(FileIsEmptyException&&) = default;
    ~FileIsEmptyException() override;
};

} // namespace Kelvo::Geodesy
