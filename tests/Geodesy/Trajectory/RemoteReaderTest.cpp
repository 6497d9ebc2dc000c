// SPDX-License-Identifier: MIT
// Readers over live TCP sources, end to end against a loopback server started by each test.
#include "RecordFormats.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>

#include <poll.h>
#include <sys/socket.h>

namespace Kelvo::Geodesy::Trajectory {
namespace {

using namespace std::chrono_literals;
using namespace Testing;

constexpr double infinity = std::numeric_limits<double>::infinity();

Core::FileInfo remote(const LoopbackServer& server, int timeoutMilliseconds)
{
    return Core::FileInfo::remote("live", "127.0.0.1", server.port(), timeoutMilliseconds);
}

// Keeps the connection open, sending nothing, until the client hangs up (at most 5 s).
void stallUntilTheClientLeaves(int socket)
{
    pollfd request{socket, POLLIN, 0};
    char byte;
    while (::poll(&request, 1, 5000) > 0 && ::recv(socket, &byte, 1, 0) > 0) {
    }
}

TEST(RemoteTrajectoryReader, CountSizeAndIntervalGrowWithEachRecordUntilThePeerCloses)
{
    const TemporaryDirectory folder;
    for (const auto& format : recordFormats) {
        SCOPED_TRACE(format.name);
        const auto bytes = format.bytes(4);
        const auto file = readUntilEnd(*format.open(Core::FileInfo(folder.write("file", bytes))));
        // Pieces of 50 bytes with pauses: records arrive one by one, some of them split.
        LoopbackServer server([&](int socket) {
            for (std::size_t offset = 0; offset < bytes.size(); offset += 50) {
                LoopbackServer::send(socket, std::string_view(bytes).substr(offset, 50));
                std::this_thread::sleep_for(10ms);
            }
        });
        const auto reader = format.open(remote(server, 5000));
        EXPECT_TRUE(reader->isRemote());
        EXPECT_EQ(reader->getSize(), 0);
        EXPECT_EQ(reader->getCount(), 0u);
        EXPECT_EQ(reader->getTimeInterval(TimeReference::week), Maths::Interval<double>(infinity, -infinity));
        for (std::size_t i = 0; i < file.size(); ++i) {
            const auto record = reader->getNext();
            ASSERT_FALSE(reader->endOfFile()) << i;
            EXPECT_EQ(bitsOf(valuesOf(record)), bitsOf(valuesOf(file[i]))) << "the records of the same bytes in a file";
            EXPECT_EQ(reader->getCount(), i + 1);
            EXPECT_EQ(reader->getSize(), format.recordSize * static_cast<std::streamoff>(i + 1));
            EXPECT_EQ(reader->getTimeInterval(TimeReference::week), Maths::Interval<double>(10.0, record.time));
            reader->returnToBegin(); // a live source cannot be rewound: this changes nothing
        }
        EXPECT_EQ(reader->getNext().status, Record::INVALID);
        EXPECT_TRUE(reader->endOfFile());
        EXPECT_EQ(reader->getTimeInterval(TimeReference::week), Maths::Interval<double>(10.0, 13.0))
            << "the record without data does not widen the interval";
        EXPECT_THROW(reader->getNext(), std::runtime_error);
    }
}

TEST(RemoteTrajectoryReader, APeerThatStallsFailsTheReadAndOneThatClosesMidRecordEndsTheFile)
{
    for (const auto& format : recordFormats) {
        SCOPED_TRACE(format.name);
        const auto bytes = format.bytes(2).substr(0, format.recordSize + 50);
        // Past the timeout the read fails instead of hanging.
        LoopbackServer staller([&](int socket) {
            LoopbackServer::send(socket, bytes);
            stallUntilTheClientLeaves(socket);
        });
        const auto stalled = format.open(remote(staller, 200));
        EXPECT_EQ(stalled->getNext().time, 10.0);
        EXPECT_THROW(stalled->getNext(), std::ios_base::failure);

        LoopbackServer closer([&](int socket) { LoopbackServer::send(socket, bytes); });
        const auto reader = format.open(remote(closer, 5000));
        EXPECT_EQ(reader->getNext().time, 10.0);
        const auto cut = reader->getNext();
        EXPECT_TRUE(reader->endOfFile());
        EXPECT_EQ(reader->getSize(), format.recordSize + (format.sizeCountsBytesRead ? 50 : format.recordSize));
        // SBET: no record, raw APX: made of the bytes that came. Never VALID data where none came.
        EXPECT_EQ(cut.status != Record::INVALID, format.cutRecordKeepsBytes);
        EXPECT_TRUE(std::isnan(cut.angularRateZ));
        EXPECT_THROW(reader->getNext(), std::runtime_error);
    }
}

} // namespace
} // namespace Kelvo::Geodesy::Trajectory
