// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Exception.h"
#include "Geodesy/GeodesyExport.h"

#include <string>

namespace Kelvo::Geodesy::Batch {

/// An argument that the batch engine cannot use: columns of unequal length, a time that is
/// NaN or infinite, an empty file set, an unknown coordinate reference system. `what()` is
/// one line naming the argument: "times[17] is NaN".
class KELVO_GEODESY_EXPORT ArgumentError : public Core::Exception {
public:
    explicit ArgumentError(const std::string& message);
    ArgumentError(const ArgumentError&) = default;
    ArgumentError& operator=(const ArgumentError&) = default;
    ~ArgumentError() override;
};

} // namespace Kelvo::Geodesy::Batch
