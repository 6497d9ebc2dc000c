// SPDX-License-Identifier: MIT
// The built program as a user starts it: exit codes, where output and errors go, and
// simulated files that are the same bytes on every run.
#include "ToolTestSupport.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Kelvo::Testing {
namespace {

using ::testing::HasSubstr;

TEST(ProcessTest, ExitCodesAndStreams)
{
    const std::string sbet = refData("pdal/2-points.sbet").string();
    const struct {
        std::vector<std::string> arguments;
        int code;
        std::string out;
        std::string err;
    } cases[] = {
        {{"--version"}, 0, "kelvo-geodesy 0.1.0\n", ""},
        {{"--help"}, 0, "Subcommands:", ""},
        {{"gnss", "--help"}, 0, "--velocity-threshold", ""},
        {{"info", sbet}, 0, "  records         2\n", ""},
        {{"info", sbet, "--verbose"}, 0, "  records         2\n", ""},
        {{"utm", "85", "10"}, 0, "32,N,32632", "warning: CORE_ASSERT failed: 'lat <= +84.0_deg'\n"},
        {{"info", "/no/such/file.sbet"}, 1, "", "error: /no/such/file.sbet: no such file\n"},
        {{"dump", refData("pdal/badfile.sbet").string()}, 1, "", "truncated"},
        {{"info"}, 2, "", "error: files is required"},
        {{"info", sbet, "--bogus"}, 2, "", "--bogus"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(c.arguments));
        const ToolResult result = runProcess(c.arguments);
        EXPECT_EQ(result.code, c.code) << result.err;
        if (c.out.empty()) {
            EXPECT_EQ(result.out, "");
        } else {
            EXPECT_THAT(result.out, HasSubstr(c.out));
        }
        if (c.err.empty()) {
            EXPECT_EQ(result.err, "");
        } else {
            EXPECT_THAT(result.err, HasSubstr(c.err));
            EXPECT_EQ(lines(result.err).size(), 1u) << result.err;
        }
    }
}

TEST(ProcessTest, SimulateTwiceGivesIdenticalBytes)
{
    TemporaryDirectory folder;
    const std::vector<std::string> options{"--duration", "30", "--rate", "20", "--start", "2021-03-04T05:06:07.5Z"};
    for (const char* name : {"first", "second"}) {
        std::vector<std::string> arguments{"simulate", (folder.path() / name).string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const ToolResult result = runProcess(arguments);
        ASSERT_EQ(result.code, 0) << result.err;
        EXPECT_THAT(result.out, HasSubstr("survey.sbet: 601 SBET records at 20 Hz"));
    }
    for (const char* file : {"survey.sbet", "survey.stream", "survey.smrmsg", "survey.pos"}) {
        const std::string first = fileBytes(folder.path() / "first" / file);
        EXPECT_GT(first.size(), 1000u) << file;
        EXPECT_EQ(first, fileBytes(folder.path() / "second" / file)) << file;
    }
}

} // namespace
} // namespace Kelvo::Testing
