// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/UtilsExport.h"

#include <cstddef>
#include <functional>
#include <string>

namespace Kelvo {

/// Reporting of failed preconditions. The library's checks are assertions, not exceptions:
/// a failed check builds its message and hands it to assertFailed, which calls the installed
/// handler and returns, after which the checking code carries on. The default handler writes
/// "file:line: message" to std::cerr. A program decides what a failure means (log, abort,
/// throw) by installing its own handler; tests install one that records the messages.
struct KELVO_UTILS_EXPORT CoreAssert {
    using Handler = std::function<void(const std::string& message, const char* file, std::size_t line)>;

    /// Reports one failure. `file` is the source path (relative to the repository root),
    /// `line` the line of the check.
    static void assertFailed(const std::string& message, const char* file, std::size_t line);

    /// Installs `handler` (an empty one restores the default) and returns the previous one.
    static Handler setHandler(Handler handler);
};

} // namespace Kelvo

/// Checks a precondition; on failure reports "CORE_ASSERT failed: '<expression>'", where the
/// expression is the source text as written, and carries on.
#define CORE_ASSERT(...)                                                                     \
    do {                                                                                     \
        if (!(__VA_ARGS__)) [[unlikely]] {                                                   \
            ::Kelvo::CoreAssert::assertFailed(                                               \
                std::string("CORE_ASSERT failed: '" #__VA_ARGS__ "'"), __FILE__, __LINE__);  \
        }                                                                                    \
    } while (false)

/// Reports a branch that must not be reached: "CORE_NEVER_COME_HERE triggered: '"...."'",
/// the explanation being a string literal whose quotes stay in the message.
#define CORE_NEVER_COME_HERE(explanation)                                                    \
    ::Kelvo::CoreAssert::assertFailed(                                                       \
        std::string("CORE_NEVER_COME_HERE triggered: '" #explanation "'"), __FILE__, __LINE__)
