// SPDX-License-Identifier: MIT
#include "Diagnostics.h"

namespace Kelvo::Tool {

DiagnosticsScope::DiagnosticsScope(std::ostream& err, bool verbose)
{
    previousAssert = CoreAssert::setHandler([&err](const std::string& message, const char*, std::size_t) {
        err << "warning: " << message << '\n';
    });
    if (verbose) {
        previousLog = Core::Logging::setSink([&err](Core::Logging::Level level, const std::string& message) {
            err << "log: " << Core::Logging::toString(level) << ": " << message << '\n';
        });
        previousEvent = Core::Event::setSink([&err](const Core::Event::LoggingEventInfo&, const std::string& text) {
            err << "log: event: " << text << '\n';
        });
    } else {
        previousLog = Core::Logging::setSink([](Core::Logging::Level, const std::string&) {});
        previousEvent = Core::Event::setSink([](const Core::Event::LoggingEventInfo&, const std::string&) {});
    }
}

DiagnosticsScope::~DiagnosticsScope()
{
    CoreAssert::setHandler(std::move(previousAssert));
    Core::Logging::setSink(std::move(previousLog));
    Core::Event::setSink(std::move(previousEvent));
}

AssertionCapture::AssertionCapture()
{
    previous = CoreAssert::setHandler([this](const std::string& message, const char* file, std::size_t line) {
        reports.push_back({message, file, line});
        held.push_back(message);
    });
}

AssertionCapture::~AssertionCapture()
{
    if (active) {
        CoreAssert::setHandler(std::move(previous));
    }
}

void AssertionCapture::release()
{
    if (!active) {
        return;
    }
    active = false;
    CoreAssert::setHandler(std::move(previous));
    for (const auto& report : reports) {
        CoreAssert::assertFailed(report.message, report.file, report.line);
    }
}

} // namespace Kelvo::Tool
