// SPDX-License-Identifier: MIT
#include "Utils/FileHelper.h"

#include <cerrno>

namespace Kelvo::Utils {

std::string FileHelper::toString(const std::filesystem::path& path)
{
    return path.string();
}

std::string FileHelper::errorString(int errorNumber)
{
    return std::generic_category().message(errorNumber);
}

std::system_error FileHelper::makeSystemError(const char* text)
{
    return std::system_error(errno, std::generic_category(), text);
}

std::system_error FileHelper::makeSystemError(const std::string& text)
{
    return makeSystemError(text.c_str());
}

} // namespace Kelvo::Utils
