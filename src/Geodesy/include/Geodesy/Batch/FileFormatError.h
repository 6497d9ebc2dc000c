// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Exception.h"
#include "Geodesy/GeodesyExport.h"

#include <filesystem>
#include <string>

namespace Kelvo::Geodesy::Batch {

/// A file that the batch engine cannot use as it stands: of another format than the others of
/// its set, without one usable record, with times going back inside it, a malformed line.
/// `what()` is one line naming the file and, where there is one, the record or line:
/// "<path>: record 12: time goes back from 1000.5 to 999.0 s".
class KELVO_GEODESY_EXPORT FileFormatError : public Core::Exception {
public:
    FileFormatError(const std::filesystem::path& path, const std::string& problem);
    FileFormatError(const FileFormatError&) = default;
    FileFormatError& operator=(const FileFormatError&) = default;
    ~FileFormatError() override;

    /// The file the problem is in.
    const std::filesystem::path& getPath() const { return path; }

private:
    std::filesystem::path path;
};

} // namespace Kelvo::Geodesy::Batch
