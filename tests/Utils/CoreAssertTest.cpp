// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include "Utils/CoreAssert.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace Kelvo {
namespace {

using Testing::AssertionRecorder;
using ::testing::ElementsAre;

TEST(CoreAssert, FailedCheckReportsSourceTextFileAndLineAndCarriesOn)
{
    AssertionRecorder recorder;
    const double seconds = -1.0;
    // clang-format off
    CORE_ASSERT(std::abs( seconds ) < 0.0 ||   seconds >= 0.0); const int line = __LINE__;
    // clang-format on
    ASSERT_EQ(recorder.records().size(), 1u); // reached: the check carries on
    // The stringified source keeps the blanks inside parentheses and folds runs of blanks.
    EXPECT_EQ(recorder.records()[0].message, "CORE_ASSERT failed: 'std::abs( seconds ) < 0.0 || seconds >= 0.0'");
    EXPECT_EQ(recorder.records()[0].file, "tests/Utils/CoreAssertTest.cpp");
    EXPECT_EQ(recorder.records()[0].line, static_cast<std::size_t>(line));
}

TEST(CoreAssert, NeverComeHereKeepsTheQuotesOfItsExplanation)
{
    AssertionRecorder recorder;
    CORE_NEVER_COME_HERE("Unsupported data format");
    EXPECT_THAT(recorder.messages(), ElementsAre("CORE_NEVER_COME_HERE triggered: '\"Unsupported data format\"'"));
}

TEST(CoreAssert, SetHandlerReturnsThePreviousOneAndEmptyRestoresTheDefault)
{
    int calls = 0;
    auto testMainHandler = CoreAssert::setHandler([&calls](const std::string&, const char*, std::size_t) { ++calls; });
    CORE_ASSERT(calls == 1);
    EXPECT_EQ(calls, 1);

    auto mine = CoreAssert::setHandler({});
    EXPECT_TRUE(static_cast<bool>(mine));
    ::testing::internal::CaptureStderr();
    CoreAssert::assertFailed("boom", "src/x.cpp", 12);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "src/x.cpp:12: boom\n");

    CoreAssert::setHandler(std::move(testMainHandler));
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace Kelvo
