// SPDX-License-Identifier: MIT
// Readers over live TCP sources, end to end against a loopback server started by each test.
#include "support/LoopbackServer.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/Sbet/Reader.h"

#include <gtest/gtest.h>

#include <bit>
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
using Testing::LoopbackServer;

constexpr int timeoutMilliseconds = 5000;
constexpr double infinity = std::numeric_limits<double>::infinity();

// Sends `bytes` in pieces of `piece` bytes with a pause between them, so that records arrive
// one by one and some of them split.
void trickle(int socket, const std::string& bytes, std::size_t piece)
{
    for (std::size_t offset = 0; offset < bytes.size(); offset += piece) {
        LoopbackServer::send(socket, std::string_view(bytes).substr(offset, piece));
        std::this_thread::sleep_for(10ms);
    }
}

// Keeps the connection open, sending nothing, until the client hangs up (at most 5 s).
void stallUntilTheClientLeaves(int socket)
{
    pollfd request{socket, POLLIN, 0};
    char byte;
    while (::poll(&request, 1, 5000) > 0 && ::recv(socket, &byte, 1, 0) > 0) {
    }
}

TEST(RemoteTrajectoryReader, SbetCountAndIntervalGrowWithEachRecordUntilThePeerCloses)
{
    const auto records = Testing::syntheticTrajectory(2000.0, 0.5, 4);
    const auto bytes = Testing::sbetBytes(records);
    LoopbackServer server([&](int socket) { trickle(socket, bytes, 100); });

    Sbet::Reader reader(Core::FileInfo::remote("live.sbet", "127.0.0.1", server.port(), timeoutMilliseconds),
                        Reader::ImuAlignmentStatus::NO_SOLUTION);
    EXPECT_TRUE(reader.isRemote());
    EXPECT_EQ(reader.getSize(), 0);
    EXPECT_EQ(reader.getCount(), 0u);
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(infinity, -infinity));

    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto record = reader.getNext();
        ASSERT_FALSE(reader.endOfFile()) << i;
        EXPECT_EQ(record.time, records[i].time);
        EXPECT_EQ(record.angularRateZ, records[i].angularRateZ);
        EXPECT_EQ(reader.getCount(), i + 1);
        EXPECT_EQ(reader.getSize(), static_cast<std::streamoff>(136 * (i + 1)));
        EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(records[0].time, records[i].time));
        // A live source cannot be rewound: this changes nothing.
        reader.returnToBegin();
    }

    reader.getNext();
    EXPECT_TRUE(reader.endOfFile());
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(records[0].time, records[3].time))
        << "the record without data does not widen the interval";
    EXPECT_THROW(reader.getNext(), std::runtime_error);
}

TEST(RemoteTrajectoryReader, ApxRawCountAndIntervalGrowWithEachRecordUntilThePeerCloses)
{
    const std::vector<ApxRaw::RawRecord> raws = {Testing::syntheticRawRecord(1000), Testing::syntheticRawRecord(1005),
                                                 Testing::syntheticRawRecord(1010)};
    const auto bytes = Testing::apxRawBytes(raws);
    LoopbackServer server([&](int socket) { trickle(socket, bytes, 50); });

    ApxRaw::Reader reader(Core::FileInfo::remote("live.stream", "127.0.0.1", server.port(), timeoutMilliseconds),
                          Reader::ImuAlignmentStatus::FULL_NAVIGATION);
    EXPECT_EQ(reader.getCount(), 0u);
    for (std::size_t i = 0; i < raws.size(); ++i) {
        const auto record = reader.getNext();
        ASSERT_FALSE(reader.endOfFile()) << i;
        EXPECT_EQ(record.status, Record::Status::VALID);
        EXPECT_EQ(record.time, raws[i].timeOfWeek / 1000.0);
        EXPECT_EQ(reader.getCount(), i + 1);
        EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(1.0, record.time));
        reader.returnToBegin();
    }
    EXPECT_EQ(reader.getNext().status, Record::Status::INVALID);
    EXPECT_TRUE(reader.endOfFile());
    EXPECT_EQ(reader.getCount(), raws.size()) << "a read of no byte adds nothing";
    EXPECT_THROW(reader.getNext(), std::runtime_error);
}

TEST(RemoteTrajectoryReader, APeerThatStallsPastTheTimeoutFailsTheReadInsteadOfHanging)
{
    const auto sbet = Testing::sbetBytes(Testing::syntheticTrajectory(10.0, 1.0, 1));
    const auto apx = Testing::apxRawBytes({Testing::syntheticRawRecord(10000)});
    LoopbackServer sbetServer([&](int socket) {
        LoopbackServer::send(socket, sbet + sbet.substr(0, 40));
        stallUntilTheClientLeaves(socket);
    });
    LoopbackServer apxServer([&](int socket) {
        LoopbackServer::send(socket, apx);
        stallUntilTheClientLeaves(socket);
    });
    const auto alignment = Reader::ImuAlignmentStatus::NO_SOLUTION;
    {
        Sbet::Reader reader(Core::FileInfo::remote("live.sbet", "127.0.0.1", sbetServer.port(), 200), alignment);
        EXPECT_EQ(reader.getNext().time, 10.0);
        EXPECT_THROW(reader.getNext(), std::ios_base::failure);
    }
    {
        ApxRaw::Reader reader(Core::FileInfo::remote("live.stream", "127.0.0.1", apxServer.port(), 200), alignment);
        EXPECT_EQ(reader.getNext().time, 10.0);
        EXPECT_THROW(reader.getNext(), std::ios_base::failure);
    }
}

TEST(RemoteTrajectoryReader, APeerThatClosesInTheMiddleOfARecordEndsTheFile)
{
    const auto records = Testing::syntheticTrajectory(10.0, 1.0, 2);
    const auto sbet = Testing::sbetBytes(records);
    LoopbackServer sbetServer([&](int socket) { LoopbackServer::send(socket, sbet.substr(0, 136 + 68)); });
    const auto apx = Testing::apxRawBytes({Testing::syntheticRawRecord(10000), Testing::syntheticRawRecord(11000)});
    LoopbackServer apxServer([&](int socket) { LoopbackServer::send(socket, apx.substr(0, 115 + 50)); });
    const auto alignment = Reader::ImuAlignmentStatus::NO_SOLUTION;

    Sbet::Reader sbetReader(Core::FileInfo::remote("live.sbet", "127.0.0.1", sbetServer.port(), timeoutMilliseconds),
                            alignment);
    EXPECT_EQ(sbetReader.getNext().time, 10.0);
    const auto cut = sbetReader.getNext();
    EXPECT_TRUE(sbetReader.endOfFile());
    EXPECT_EQ(cut.time, 11.0) << "the bytes that came are used";
    EXPECT_EQ(std::bit_cast<std::uint64_t>(cut.angularRateZ), 0x7FF0000000000001u) << "those that did not are NaN";
    EXPECT_THROW(sbetReader.getNext(), std::runtime_error);

    ApxRaw::Reader apxReader(Core::FileInfo::remote("live.stream", "127.0.0.1", apxServer.port(), timeoutMilliseconds),
                             alignment);
    EXPECT_EQ(apxReader.getNext().time, 10.0);
    EXPECT_NE(apxReader.getNext().status, Record::Status::INVALID);
    EXPECT_TRUE(apxReader.endOfFile());
    EXPECT_EQ(apxReader.getSize(), 165);
    EXPECT_THROW(apxReader.getNext(), std::runtime_error);
}

} // namespace
} // namespace Kelvo::Geodesy::Trajectory
