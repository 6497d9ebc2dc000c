// SPDX-License-Identifier: MIT
#include "Maths/EulerAngles.h"

#include <ostream>

namespace Kelvo::Maths {

std::ostream& operator<<(std::ostream& stream, const EulerAngles& angles)
{
    return stream << '(' << static_cast<double>(angles.getRoll()) << ", " << static_cast<double>(angles.getPitch())
                  << ", " << static_cast<double>(angles.getYaw()) << ')';
}

} // namespace Kelvo::Maths
