// SPDX-License-Identifier: MIT
#pragma once

#include "Core/CoreExport.h"

#include <functional>
#include <string>

namespace Kelvo::Core::Logging {

enum class Level { info = 0, warning = 1, debug = 2, error = 3, verbose = 4 };

/// Receives every message the family logs. The default sink writes info, warning and error
/// messages to std::clog, prefixed with their level, and drops debug and verbose ones.
using Sink = std::function<void(Level level, const std::string& message)>;

/// Installs `sink` (an empty one restores the default) and returns the previous one.
KELVO_CORE_EXPORT Sink setSink(Sink sink);

KELVO_CORE_EXPORT void logInfo(const std::string& message);
KELVO_CORE_EXPORT void logWarning(const std::string& message);
KELVO_CORE_EXPORT void logDebug(const std::string& message);
KELVO_CORE_EXPORT void logError(const std::string& message);
KELVO_CORE_EXPORT void logVerbose(const std::string& message);

/// "info", "warning", "debug", "error" or "verbose".
KELVO_CORE_EXPORT const char* toString(Level level);

} // namespace Kelvo::Core::Logging
