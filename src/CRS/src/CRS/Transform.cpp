// SPDX-License-Identifier: MIT
#include "CRS/Transform.h"

#include <utility>

namespace Kelvo::CRS {

Transform::Transform(std::int32_t kind, Function function)
    : kind(kind)
    , function(std::move(function))
{
}

Transform::~Transform() = default;

Maths::PositionVector3 Transform::convert(Maths::PositionVector3 position, const ConvertStep& step) const
{
    return function ? function(position, step) : position;
}

} // namespace Kelvo::CRS
