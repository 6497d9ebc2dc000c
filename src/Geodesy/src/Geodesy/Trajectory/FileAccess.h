// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/FileHelper.h"

#include <filesystem>
#include <sstream>
#include <system_error>

namespace Kelvo::Geodesy::Trajectory {

/// The error of a file that could not be opened: the text of `error` (an errno value), a
/// colon and the path in double quotes, e.g. `No such file or directory: "/data/run1.sbet"`.
inline std::system_error openFailure(int error, const std::filesystem::path& path)
{
    std::ostringstream message;
    message << Utils::FileHelper::errorString(error) << ": " << path;
    return std::system_error(error, std::generic_category(), message.str());
}

} // namespace Kelvo::Geodesy::Trajectory
