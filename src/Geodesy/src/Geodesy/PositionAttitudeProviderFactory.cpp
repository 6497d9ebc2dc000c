// SPDX-License-Identifier: MIT
#include "Geodesy/PositionAttitudeProviderFactory.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/MultipleSbetPositionAttitudeProvider.h"
#include "Geodesy/Sbet/Reader.h"
#include "Geodesy/SbetPositionAttitudeProvider.h"
#include "Utils/CoreAssert.h"

#include <new>
#include <string>

namespace Kelvo::Geodesy {
namespace {

bool isApxRaw(const std::string& extension)
{
    return extension == ApxRaw::Reader::FILE_EXTENSION();
}

// Allocation failures give an empty pointer; constructors' exceptions pass through.
template <typename Provider, typename... Arguments>
std::unique_ptr<PositionAttitudeProvider> make(const Arguments&... arguments)
{
    return std::unique_ptr<PositionAttitudeProvider>(new (std::nothrow) Provider(arguments...));
}

} // namespace

std::unique_ptr<PositionAttitudeProvider> PositionAttitudeProviderFactory::create(
    const std::set<Core::FileInfo>& fileInfos, const CRS::Transform* transform,
    Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus)
{
    CORE_ASSERT(!fileInfos.empty());
    if (fileInfos.empty()) {
        return nullptr;
    }

    if (fileInfos.size() < 2) {
        const Core::FileInfo& file = *fileInfos.begin();
        if (isApxRaw(file.getPath().extension().string())) {
            return make<SbetPositionAttitudeProvider<ApxRaw::Reader>>(file, transform, imuAlignmentStatus);
        }
        return make<SbetPositionAttitudeProvider<Sbet::Reader>>(file, transform, imuAlignmentStatus);
    }

    std::set<std::string> extensions;
    for (const auto& file : fileInfos) {
        extensions.insert(file.getPath().extension().string());
    }
    CORE_ASSERT(extensions.size() == 1);
    if (isApxRaw(*extensions.begin())) {
        return make<MultipleSbetPositionAttitudeProvider<ApxRaw::Reader>>(fileInfos.begin(), fileInfos.end(),
                                                                           transform, imuAlignmentStatus);
    }
    return make<MultipleSbetPositionAttitudeProvider<Sbet::Reader>>(fileInfos.begin(), fileInfos.end(), transform,
                                                                     imuAlignmentStatus);
}

} // namespace Kelvo::Geodesy
