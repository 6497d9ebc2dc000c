// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Event.h"
#include "Core/Logging.h"

#include <string>
#include <utility>
#include <vector>

namespace Kelvo::Testing {

/// Records every log message while it lives, then restores the previous sink.
class LogRecorder {
public:
    using Entry = std::pair<Core::Logging::Level, std::string>;

    LogRecorder();
    ~LogRecorder();
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    const std::vector<Entry>& entries() const { return recorded; }
    /// The messages logged at `level`.
    std::vector<std::string> at(Core::Logging::Level level) const;

private:
    std::vector<Entry> recorded;
    Core::Logging::Sink previous;
};

/// Records every structured event while it lives, then restores the previous sink.
class EventRecorder {
public:
    using Entry = std::pair<Core::Event::LoggingEventInfo, std::string>;

    EventRecorder();
    ~EventRecorder();
    EventRecorder(const EventRecorder&) = delete;
    EventRecorder& operator=(const EventRecorder&) = delete;

    const std::vector<Entry>& entries() const { return recorded; }

private:
    std::vector<Entry> recorded;
    Core::Event::Sink previous;
};

} // namespace Kelvo::Testing
