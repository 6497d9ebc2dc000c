// SPDX-License-Identifier: MIT
#pragma once

#include "Core/CoreExport.h"
#include "Utils/ErrorManagement/ReturnStatus.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>

namespace Kelvo::Core::Event {

/// What an event is: its category (1 information, 3 error), the package that emits it and
/// the package's own event code.
struct LoggingEventInfo {
    std::uint32_t category;
    std::uint32_t package;
    std::uint32_t code;
    bool operator==(const LoggingEventInfo&) const = default;
};

inline constexpr std::uint32_t INFORMATION_CATEGORY = 1;
inline constexpr std::uint32_t ERROR_CATEGORY = 3;

using Payload = std::optional<std::variant<int, double, std::string>>;

/// Receives every structured event. `text` is the string payload, an int or double payload
/// in decimal, or a ReturnStatus as "package P, error N". The default sink forwards the
/// event to the log ("[category.package.code] text"), errors at error level.
using Sink = std::function<void(const LoggingEventInfo& info, const std::string& text)>;

/// Installs `sink` (an empty one restores the default) and returns the previous one.
KELVO_CORE_EXPORT Sink setSink(Sink sink);

KELVO_CORE_EXPORT void logEvent(const LoggingEventInfo& info, const Utils::ErrorManagement::ReturnStatus& status);
KELVO_CORE_EXPORT void logEvent(const LoggingEventInfo& info, const Payload& payload);

} // namespace Kelvo::Core::Event
