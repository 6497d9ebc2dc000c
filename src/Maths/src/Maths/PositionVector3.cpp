// SPDX-License-Identifier: MIT
#include "Maths/PositionVector3.h"

#include <ostream>

namespace Kelvo::Maths {

std::ostream& operator<<(std::ostream& stream, const PositionVector3& vector)
{
    return stream << '(' << vector.x << ", " << vector.y << ", " << vector.z << ')';
}

} // namespace Kelvo::Maths
