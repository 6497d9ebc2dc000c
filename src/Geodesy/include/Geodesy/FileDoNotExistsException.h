// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Exception.h"
#include "Geodesy/GeodesyExport.h"

#include <string>

namespace Kelvo::Geodesy {

/// Thrown by the family's modules for a path that does not exist; they supply the message. Copying and
/// moving both copy the message.
class KELVO_GEODESY_EXPORT FileDoNotExistsException : public Core::Exception {
public:
    explicit FileDoNotExistsException(const std::string& message);
    FileDoNotExistsException(const FileDoNotExistsException&) = default;
    FileDoNotExistsException(FileDoNotExistsException&&) = default;
    FileDoNotExistsException& operator=(const FileDoNotExistsException&) = default;
    FileDoNotExistsException& operator=(FileDoNotExistsException&&) = default;
    ~FileDoNotExistsException() override;
};

} // namespace Kelvo::Geodesy
