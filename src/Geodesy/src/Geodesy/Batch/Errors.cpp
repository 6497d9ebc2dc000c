// SPDX-License-Identifier: MIT
// The engine's two exception types share one source: they differ in their message only.
#include "Geodesy/Batch/ArgumentError.h"
#include "Geodesy/Batch/FileFormatError.h"

namespace Kelvo::Geodesy::Batch {

FileFormatError::FileFormatError(const std::filesystem::path& path, const std::string& problem)
    : Core::Exception(path.string() + ": " + problem)
    , path(path)
{
}

FileFormatError::~FileFormatError() = default;

ArgumentError::ArgumentError(const std::string& message)
    : Core::Exception(message)
{
}

ArgumentError::~ArgumentError() = default;

} // namespace Kelvo::Geodesy::Batch
