// SPDX-License-Identifier: MIT
#include "Core/Event.h"

#include "Core/Logging.h"

#include <array>
#include <charconv>
#include <utility>

namespace Kelvo::Core::Event {
namespace {

Sink& installedSink()
{
    static Sink sink;
    return sink;
}

void dispatch(const LoggingEventInfo& info, const std::string& text)
{
    if (const auto& sink = installedSink()) {
        sink(info, text);
        return;
    }
    // Appended piece by piece: GCC 12 at -O3 warns falsely (-Wrestrict) on a chain of
    // operator+ starting from a literal.
    std::string line(1, '[');
    line.append(std::to_string(info.category)).append(1, '.').append(std::to_string(info.package));
    line.append(1, '.').append(std::to_string(info.code)).append("] ").append(text);
    if (info.category >= ERROR_CATEGORY) {
        Logging::logError(line);
    } else {
        Logging::logInfo(line);
    }
}

std::string toText(double value)
{
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

} // namespace

Sink setSink(Sink sink)
{
    return std::exchange(installedSink(), std::move(sink));
}

void logEvent(const LoggingEventInfo& info, const Utils::ErrorManagement::ReturnStatus& status)
{
    dispatch(info, status.toString());
}

void logEvent(const LoggingEventInfo& info, const Payload& payload)
{
    if (!payload) {
        dispatch(info, {});
        return;
    }
    struct Formatter {
        std::string operator()(int value) const { return std::to_string(value); }
        std::string operator()(double value) const { return toText(value); }
        std::string operator()(const std::string& value) const { return value; }
    };
    dispatch(info, std::visit(Formatter{}, *payload));
}

} // namespace Kelvo::Core::Event
