// SPDX-License-Identifier: MIT
#include "Commands.h"

namespace Kelvo::Tool {

void runAt(const AtOptions&, Context&)
{
    throw UsageError("at: position/attitude lookups are not available in this build yet");
}

} // namespace Kelvo::Tool
