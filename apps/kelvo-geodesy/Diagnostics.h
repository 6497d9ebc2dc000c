// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Event.h"
#include "Core/Logging.h"
#include "Utils/CoreAssert.h"

#include <ostream>
#include <string>
#include <vector>

namespace Kelvo::Tool {

/// Routes what the library reports while the tool runs, and restores the previous handlers
/// when it dies. Assertion reports go to `err` as "warning: <message>". Log messages and
/// events are the library's diary (the used time interval of a GNSS file, rewinds of a
/// trajectory file): they are dropped, or with `verbose` written to `err` as
/// "log: <level>: <message>".
class DiagnosticsScope {
public:
    DiagnosticsScope(std::ostream& err, bool verbose);
    ~DiagnosticsScope();
    DiagnosticsScope(const DiagnosticsScope&) = delete;
    DiagnosticsScope& operator=(const DiagnosticsScope&) = delete;

private:
    CoreAssert::Handler previousAssert;
    Core::Logging::Sink previousLog;
    Core::Event::Sink previousEvent;
};

/// Holds back the assertion reports raised while it lives. A file probe uses it so that a
/// file that turns out to be of the wrong format gives one clear error instead of the
/// library's reports about its odd values; release() hands what was held to the handler
/// that was installed before.
class AssertionCapture {
public:
    AssertionCapture();
    ~AssertionCapture();
    AssertionCapture(const AssertionCapture&) = delete;
    AssertionCapture& operator=(const AssertionCapture&) = delete;

    const std::vector<std::string>& messages() const { return held; }
    /// Restores the previous handler and reports the held messages through it.
    void release();

private:
    struct Report {
        std::string message;
        const char* file;
        std::size_t line;
    };
    std::vector<Report> reports;
    std::vector<std::string> held;
    CoreAssert::Handler previous;
    bool active = true;
};

} // namespace Kelvo::Tool
