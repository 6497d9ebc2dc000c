// SPDX-License-Identifier: MIT
#include "Geodesy/GNSS/GnssDataProviderFactory.h"

#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"
#include "Utils/CoreAssert.h"

#include <string>
#include <string_view>

namespace Kelvo::Geodesy::GNSS {
namespace {

/// The last extension of a path, with the same result on every platform: the file name is
/// what follows the last '/' or '\' and ends before a ':' (an NTFS alternate-stream suffix);
/// its extension runs from its last '.' on. ".", ".." and names without a dot have none.
std::string_view lastExtension(std::string_view path)
{
    const auto separator = path.find_last_of("/\\");
    auto name = separator == std::string_view::npos ? path : path.substr(separator + 1);
    name = name.substr(0, name.find(':'));
    if (name == "." || name == "..") {
        return {};
    }
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view{} : name.substr(dot);
}

} // namespace

std::unique_ptr<GnssDataProvider> GnssDataProviderFactory::create(const std::set<Core::FileInfo>& fileInfos,
                                                                  const double& velocityThreshold)
{
    CORE_ASSERT(fileInfos.size() == NUMBER_OF_FILE);
    if (fileInfos.empty()) {
        return nullptr;
    }
    const Core::FileInfo& fileInfo = *fileInfos.begin();
    const std::string path = fileInfo.getPath().string();
    if (lastExtension(path) == RTKLIB_POS_EXTENSION) {
        return std::make_unique<RtkLibGnssDataProvider>(fileInfo, velocityThreshold);
    }
    CORE_NEVER_COME_HERE("Gnss file not supported");
    return nullptr;
}

} // namespace Kelvo::Geodesy::GNSS
