// SPDX-License-Identifier: MIT
#include "Core/Logging.h"

#include <iostream>
#include <utility>

namespace Kelvo::Core::Logging {
namespace {

Sink& installedSink()
{
    static Sink sink;
    return sink;
}

void log(Level level, const std::string& message)
{
    if (const auto& sink = installedSink()) {
        sink(level, message);
        return;
    }
    if (level == Level::info || level == Level::warning || level == Level::error) {
        std::clog << toString(level) << ": " << message << '\n';
    }
}

} // namespace

Sink setSink(Sink sink)
{
    return std::exchange(installedSink(), std::move(sink));
}

void logInfo(const std::string& message) { log(Level::info, message); }
void logWarning(const std::string& message) { log(Level::warning, message); }
void logDebug(const std::string& message) { log(Level::debug, message); }
void logError(const std::string& message) { log(Level::error, message); }
void logVerbose(const std::string& message) { log(Level::verbose, message); }

const char* toString(Level level)
{
    switch (level) {
    case Level::info: return "info";
    case Level::warning: return "warning";
    case Level::debug: return "debug";
    case Level::error: return "error";
    case Level::verbose: return "verbose";
    }
    return "unknown";
}

} // namespace Kelvo::Core::Logging
