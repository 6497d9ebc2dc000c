// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Logging.h"
#include "Utils/CoreAssert.h"

#include <string>

namespace Kelvo::Core::Logging {

/// Logs `message` at a numeric level: 0 info, 1 warning, 2 debug, 3 error, 4 verbose. Any
/// other level is a programming error: it is reported and nothing is logged.
inline void logAtLevel(int level, const std::string& message)
{
    switch (level) {
    case 0: logInfo(message); break;
    case 1: logWarning(message); break;
    case 2: logDebug(message); break;
    case 3: logError(message); break;
    case 4: logVerbose(message); break;
    default: CORE_NEVER_COME_HERE("Added a new LoggingType? This switch case needs to be updated"); break;
    }
}

} // namespace Kelvo::Core::Logging
