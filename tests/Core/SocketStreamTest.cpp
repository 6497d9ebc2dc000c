// SPDX-License-Identifier: MIT
#include "support/LoopbackServer.h"

#include "Core/FileInfo.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <system_error>
#include <thread>

namespace Kelvo::Core {
namespace {

using Testing::LoopbackServer;
using namespace std::chrono_literals;

std::string readAll(std::istream& stream)
{
    std::string bytes;
    char buffer[7];
    while (stream.read(buffer, sizeof(buffer)), stream.gcount() > 0) {
        bytes.append(buffer, static_cast<std::size_t>(stream.gcount()));
    }
    return bytes;
}

TEST(RemoteSource, ReadsEverySendUntilThePeerClosesAndCountsTheBytesConsumed)
{
    LoopbackServer server([](int socket) {
        LoopbackServer::send(socket, "hello ");
        std::this_thread::sleep_for(50ms);
        LoopbackServer::send(socket, "live world");
    });
    auto stream = FileInfo::remote("live.sbet", "127.0.0.1", server.port(), 5000).makeStream(std::ios::binary);
    EXPECT_EQ(stream->tellg(), 0);
    char first[3];
    stream->read(first, 3);
    EXPECT_EQ(stream->tellg(), 3);
    EXPECT_EQ(std::string(first, 3) + readAll(*stream), "hello live world");
    EXPECT_TRUE(stream->eof());
    EXPECT_FALSE(stream->bad());
}

TEST(RemoteSource, APeerThatStallsPastTheTimeoutFailsTheReadInsteadOfHanging)
{
    LoopbackServer server([](int socket) {
        LoopbackServer::send(socket, "ab");
        std::this_thread::sleep_for(600ms);
    });
    auto stream = FileInfo::remote("live.sbet", "127.0.0.1", server.port(), 100).makeStream(std::ios::binary);
    const auto start = std::chrono::steady_clock::now();
    char buffer[4];
    stream->read(buffer, 4);
    EXPECT_TRUE(stream->bad());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 500ms);

    // With badbit exceptions on, as the trajectory readers set them, the read throws.
    LoopbackServer silent([](int) { std::this_thread::sleep_for(400ms); });
    auto throwing = FileInfo::remote("live.sbet", "127.0.0.1", silent.port(), 50).makeStream(std::ios::binary);
    throwing->exceptions(std::ios::badbit);
    EXPECT_THROW(throwing->read(buffer, 1), std::ios_base::failure);
}

TEST(RemoteSource, AnUnreachablePeerThrowsAtConnection)
{
    std::uint16_t closedPort = 0;
    {
        LoopbackServer server([](int) {});
        closedPort = server.port();
        auto stream = FileInfo::remote("x", "127.0.0.1", closedPort, 1000).makeStream(std::nullopt);
    }
    EXPECT_THROW(FileInfo::remote("x", "127.0.0.1", closedPort, 1000).makeStream(std::nullopt), std::system_error);
}

} // namespace
} // namespace Kelvo::Core
