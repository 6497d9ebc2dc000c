// SPDX-License-Identifier: MIT
#pragma once

#include "CRS/CRSExport.h"
#include "CRS/ConvertStep.h"
#include "Maths/PositionVector3.h"

#include <cstdint>
#include <functional>

namespace Kelvo::CRS {

/// A coordinate reference system transform: a kind, which says what the transform expects
/// (kind 1 takes and returns geographic coordinates in degrees and metres), and the function
/// that converts one position.
class KELVO_CRS_EXPORT Transform {
public:
    using Function = std::function<Maths::PositionVector3(const Maths::PositionVector3&, ConvertStep)>;

    /// Kind of the transforms that convert geographic degrees to geographic degrees.
    static constexpr std::int32_t GEOGRAPHIC_DEGREES_KIND = 1;

    Transform(std::int32_t kind, Function function);
    Transform(const Transform&) = default;
    Transform& operator=(const Transform&) = default;
    ~Transform();

    std::int32_t getKind() const { return kind; }

    /// The converted position; a transform without a function returns it unchanged.
    Maths::PositionVector3 convert(Maths::PositionVector3 position, const ConvertStep& step) const;

private:
    std::int32_t kind;
    Function function;
};

} // namespace Kelvo::CRS
