// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/UtilsExport.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace Kelvo::Utils {

/// Small helpers for reporting file failures in the family's words.
struct KELVO_UTILS_EXPORT FileHelper {
    /// The path as narrow text, without quotes.
    static std::string toString(const std::filesystem::path& path);

    /// The system's text for an errno value ("No such file or directory").
    static std::string errorString(int errorNumber);

    /// A std::system_error carrying the current errno (generic category) and `text`.
    static std::system_error makeSystemError(const char* text);
    static std::system_error makeSystemError(const std::string& text);
};

} // namespace Kelvo::Utils
