// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"

#include "Core/Event.h"
#include "Core/Logging/LoggingCallbackPrivate.h"
#include "Utils/ErrorManagement/Error.h"
#include "Utils/ErrorManagement/ReturnStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

namespace Kelvo::Core {
namespace {

using Logging::Level;
using Testing::AssertionRecorder;
using Testing::EventRecorder;
using Testing::LogRecorder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Logging, NumericLevelsDispatchToTheirChannels)
{
    const std::pair<int, Level> cases[] = {
        {0, Level::info}, {1, Level::warning}, {2, Level::debug}, {3, Level::error}, {4, Level::verbose}};
    for (const auto& [number, level] : cases) {
        LogRecorder log;
        Logging::logAtLevel(number, "message");
        EXPECT_THAT(log.entries(), ElementsAre(LogRecorder::Entry{level, "message"})) << number;
    }
}

TEST(Logging, UnknownLevelIsReportedAndLogsNothing)
{
    for (const int level : {-1, 5, 100}) {
        LogRecorder log;
        AssertionRecorder recorder;
        Logging::logAtLevel(level, "lost");
        EXPECT_THAT(log.entries(), IsEmpty());
        ASSERT_THAT(recorder.messages(),
                    ElementsAre(Testing::neverText("Added a new LoggingType? This switch case needs to be updated")));
        EXPECT_EQ(recorder.records()[0].file, "src/Core/include/Core/Logging/LoggingCallbackPrivate.h");
    }
}

TEST(Logging, DefaultSinkWritesInfoWarningAndErrorToTheErrorStream)
{
    auto previous = Logging::setSink({});
    ::testing::internal::CaptureStderr();
    Logging::logInfo("a");
    Logging::logDebug("hidden");
    Logging::logWarning("b");
    Logging::logVerbose("hidden");
    Logging::logError("c");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "info: a\nwarning: b\nerror: c\n");
    Logging::setSink(std::move(previous));
}

TEST(Event, PayloadsBecomeText)
{
    struct UnknownIdentifier : Utils::ErrorManagement::ErrorIdentifier {
        UnknownIdentifier()
            : ErrorIdentifier(Utils::ErrorManagement::PackageIdentifier::GEODESY)
        {
        }
        std::uint32_t getErrorId() const override { return 0; }
    };
    const Event::LoggingEventInfo info{1, 24, 23};
    EventRecorder events;
    Event::logEvent(info, std::string("Timings are not ordered"));
    Event::logEvent(info, 42);
    Event::logEvent(info, 0.5);
    Event::logEvent(info, std::nullopt);
    Event::logEvent(info, Utils::ErrorManagement::ReturnStatus(
                              Utils::ErrorManagement::Error(std::make_shared<UnknownIdentifier>())));
    std::vector<std::string> texts;
    for (const auto& [eventInfo, text] : events.entries()) {
        EXPECT_EQ(eventInfo, info);
        texts.push_back(text);
    }
    EXPECT_THAT(texts, ElementsAre("Timings are not ordered", "42", "0.5", "", "package 24, error 0"));
}

TEST(Event, DefaultSinkForwardsToTheLog)
{
    auto previous = Event::setSink({});
    LogRecorder log;
    Event::logEvent({1, 24, 17}, std::string("same start"));
    Event::logEvent({3, 24, 0}, std::string("bad intensity"));
    EXPECT_THAT(log.entries(), ElementsAre(LogRecorder::Entry{Level::info, "[1.24.17] same start"},
                                           LogRecorder::Entry{Level::error, "[3.24.0] bad intensity"}));
    Event::setSink(std::move(previous));
}

} // namespace
} // namespace Kelvo::Core
