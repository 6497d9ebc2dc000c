// SPDX-License-Identifier: MIT
#include "support/TemporaryDirectory.h"

#include "Core/FileInfo.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <set>
#include <vector>

namespace Kelvo::Core {
namespace {

TEST(FileInfo, TextFormIsThePathThenTheRemoteSourceAndAPositiveTimeout)
{
    const std::pair<FileInfo, std::string> cases[] = {
        {FileInfo("/data/run1.sbet"), "/data/run1.sbet"},
        {FileInfo("relative/a.stream"), "relative/a.stream"},
        {FileInfo::remote("live.sbet", "10.0.0.2", 5600), "live.sbet@10.0.0.2:5600"},
        {FileInfo::remote("live.sbet", "nav.local", 5600, 0), "live.sbet@nav.local:5600"},
        {FileInfo::remote("live.sbet", "nav.local", 5600, -3), "live.sbet@nav.local:5600"},
        {FileInfo::remote("live.stream", "127.0.0.1", 80, 250), "live.stream@127.0.0.1:80&timeout=250"},
    };
    for (const auto& [info, text] : cases) {
        EXPECT_EQ(info.toString(), text);
    }
    EXPECT_FALSE(cases[0].first.isRemote());
    EXPECT_TRUE(cases[5].first.isRemote());
    EXPECT_EQ(cases[5].first.getHost(), "127.0.0.1");
    EXPECT_EQ(cases[5].first.getPort(), 80);
    EXPECT_EQ(cases[5].first.getTimeoutMilliseconds(), 250);
}

TEST(FileInfo, OrdersByPathThenLocalBeforeRemoteThenBySource)
{
    const std::set<FileInfo> files = {
        FileInfo::remote("b.sbet", "host", 2),
        FileInfo("b.sbet"),
        FileInfo::remote("b.sbet", "host", 1, 100),
        FileInfo("a/z.sbet"),
        FileInfo::remote("b.sbet", "host", 1),
        FileInfo("b.sbet"),
    };
    std::vector<std::string> order;
    for (const auto& file : files) {
        order.push_back(file.toString());
    }
    EXPECT_EQ(order, (std::vector<std::string>{"a/z.sbet", "b.sbet", "b.sbet@host:1", "b.sbet@host:1&timeout=100",
                                               "b.sbet@host:2"}));
    EXPECT_EQ(FileInfo("x"), FileInfo("x"));
    EXPECT_NE(FileInfo("x"), FileInfo::remote("x", "h", 1));
}

TEST(FileInfo, MakesAFileStreamOrAClosedOneThatSaysWhy)
{
    Testing::TemporaryDirectory folder;
    const auto file = folder.write("data.bin", "abc");

    auto stream = FileInfo(file).makeStream(std::ios::binary | std::ios::ate);
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->tellg(), 3);

    auto missing = FileInfo(folder.path() / "missing.bin").makeStream(std::nullopt);
    EXPECT_FALSE(dynamic_cast<std::ifstream&>(*missing).is_open());
    EXPECT_EQ(errno, ENOENT);

    auto directory = FileInfo(folder.path()).makeStream(std::nullopt);
    EXPECT_FALSE(dynamic_cast<std::ifstream&>(*directory).is_open());
    EXPECT_EQ(errno, EISDIR);
}

} // namespace
} // namespace Kelvo::Core
