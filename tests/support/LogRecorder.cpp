// SPDX-License-Identifier: MIT
#include "support/LogRecorder.h"

namespace Kelvo::Testing {

LogRecorder::LogRecorder()
    : previous(Core::Logging::setSink(
        [this](Core::Logging::Level level, const std::string& message) { recorded.emplace_back(level, message); }))
{
}

LogRecorder::~LogRecorder()
{
    Core::Logging::setSink(std::move(previous));
}

std::vector<std::string> LogRecorder::at(Core::Logging::Level level) const
{
    std::vector<std::string> messages;
    for (const auto& [entryLevel, message] : recorded) {
        if (entryLevel == level) {
            messages.push_back(message);
        }
    }
    return messages;
}

EventRecorder::EventRecorder()
    : previous(Core::Event::setSink([this](const Core::Event::LoggingEventInfo& info, const std::string& text) {
        recorded.emplace_back(info, text);
    }))
{
}

EventRecorder::~EventRecorder()
{
    Core::Event::setSink(std::move(previous));
}

} // namespace Kelvo::Testing
