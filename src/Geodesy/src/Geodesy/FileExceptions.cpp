// SPDX-License-Identifier: MIT
// The two file exceptions share one source: they differ only in their type identity.
#include "Geodesy/FileDoNotExistsException.h"
#include "Geodesy/FileIsEmptyException.h"

namespace Kelvo::Geodesy {

FileDoNotExistsException::FileDoNotExistsException(const std::string& message)
    : Core::Exception(message)
{
}

FileDoNotExistsException::~FileDoNotExistsException() = default;

FileIsEmptyException::FileIsEmptyException(const std::string& message)
    : Core::Exception(message)
{
}

FileIsEmptyException::~FileIsEmptyException() = default;

} // namespace Kelvo::Geodesy
