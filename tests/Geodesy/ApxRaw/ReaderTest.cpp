// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"
#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/ApxRaw/Writer.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::ApxRaw {
namespace {

using namespace Testing;
using Status = Trajectory::Record::Status;
using Alignment = Trajectory::Reader::ImuAlignmentStatus;

double radians(double degrees)
{
    return Maths::Degree(degrees).toRadian();
}

// Big-endian bytes written by hand, independently of the library's own byte-order code.
void putBigEndian(std::string& bytes, std::size_t offset, std::uint64_t value, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        bytes[offset + i] = static_cast<char>((value >> (8 * (size - 1 - i))) & 0xFF);
    }
}

TEST(ApxRawReader, DecodesEachBigEndianFieldIntoItsSlot)
{
    // Every byte that the reader does not use is set, to show that it is ignored.
    std::string bytes(115, '\x5A');
    putBigEndian(bytes, 11, 123456, 4); // time of week [ms]
    bytes[15] = 4;                      // alignment state
    bytes[16] = 1;                      // solution flag
    for (const auto& [offset, value] :
         {std::pair{17, 45.5}, {25, -73.25}, {33, 12.5}, {57, 1.0}, {65, -2.0}, {73, 180.0}}) {
        putBigEndian(bytes, offset, std::bit_cast<std::uint64_t>(value), 8);
    }
    for (const auto& [offset, value] : {std::pair{41, 1.5f}, {45, -2.25f}, {49, 0.125f}, {89, 90.0f}, {93, -45.0f},
                                        {97, 180.0f}, {101, 0.5f}, {105, 0.25f}, {109, -8.0f}}) {
        putBigEndian(bytes, offset, std::bit_cast<std::uint32_t>(value), 4);
    }
    std::string second = bytes;
    putBigEndian(second, 11, 123556, 4);

    const TemporaryDirectory folder;
    Reader reader(Core::FileInfo(folder.write("one.stream", bytes + second)), Alignment::FINE_ALIGNMENT);
    const auto record = reader.getNext();
    EXPECT_EQ(record.status, Status::VALID);
    // The [deg/s] triple lands, converted, in the force slots; the other, as it is, in the
    // angular-rate slots. The wander angle is always 0.
    constexpr double pi = std::numbers::pi;
    const std::array<double, 17> expected = {123.456, radians(45.5), radians(-73.25), 12.5,   1.5,     -2.25,
                                             0.125,   radians(1.0),  radians(-2.0),   pi,     0.0,     pi / 2,
                                             -pi / 4, pi,            0.5,             0.25,   -8.0};
    EXPECT_EQ(valuesOf(record), expected);
}

TEST(ApxRawReader, WriterAndReaderRoundTripEveryBit)
{
    std::vector<RawRecord> records;
    for (std::uint32_t i = 0; i < 5000; ++i) {
        records.push_back(syntheticRawRecord(400000000u + 5u * i));
    }
    records[7].height = -0.0;
    records[8].secondTriple[1] = std::bit_cast<float>(std::uint32_t{0x7FC0BEEF});
    const TemporaryDirectory folder;
    const auto path = folder.path() / "roundtrip.stream";
    {
        Writer writer(path);
        for (const auto& record : records) {
            writer.write(record);
        }
    }
    Reader reader(Core::FileInfo(path), Alignment::NO_SOLUTION);
    EXPECT_EQ(reader.getCount(), records.size());
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(400000.0, 400024.995));
    const auto read = readUntilEnd(reader);
    ASSERT_EQ(read.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto& r = records[i];
        const std::array<double, 17> expected = {
            r.timeOfWeek / 1000.0,     radians(r.latitude),       radians(r.longitude),      r.height,
            r.velocity[0],             r.velocity[1],             r.velocity[2],             radians(r.roll),
            radians(r.pitch),          radians(r.heading),        0.0,                       radians(r.firstTriple[0]),
            radians(r.firstTriple[1]), radians(r.firstTriple[2]), r.secondTriple[0],         r.secondTriple[1],
            r.secondTriple[2]};
        ASSERT_EQ(bitsOf(valuesOf(read[i])), bitsOf(expected)) << "record " << i;
    }
}

TEST(ApxRawReader, GradesRecordsByTheBestAlignmentSoFarAndTheSolutionFlag)
{
    struct Case {
        Alignment required;
        std::vector<std::pair<std::uint8_t, std::uint8_t>> stateAndFlag;
        std::vector<Status> expected;
    };
    const Case cases[] = {
        // Once reached, the required alignment stays reached (state 2 after 3).
        {Alignment::COARSE_ALIGNMENT, {{1, 1}, {3, 1}, {2, 1}}, {Status::NOT_ALIGNED, Status::VALID, Status::VALID}},
        // A zero flag is never usable, whatever the alignment.
        {Alignment::COARSE_ALIGNMENT, {{5, 0}, {5, 1}, {0, 1}}, {Status::NOT_ALIGNED, Status::VALID, Status::VALID}},
        {Alignment::NO_SOLUTION, {{0, 1}, {0, 0}}, {Status::VALID, Status::NOT_ALIGNED}},
        {Alignment::FULL_NAVIGATION, {{4, 1}, {4, 1}}, {Status::NOT_ALIGNED, Status::NOT_ALIGNED}},
        // States beyond the named ones compare as numbers.
        {Alignment::FULL_NAVIGATION, {{200, 1}, {0, 1}}, {Status::VALID, Status::VALID}},
    };
    const TemporaryDirectory folder;
    for (const auto& c : cases) {
        std::vector<RawRecord> records;
        for (const auto& [state, flag] : c.stateAndFlag) {
            records.push_back(syntheticRawRecord(1000u * static_cast<std::uint32_t>(records.size() + 1), state, flag));
        }
        Reader reader(Core::FileInfo(folder.write("graded.stream", apxRawBytes(records))), c.required);
        std::vector<Status> statuses;
        for (const auto& record : readUntilEnd(reader)) {
            statuses.push_back(record.status);
        }
        EXPECT_EQ(statuses, c.expected) << "required state " << static_cast<int>(c.required);
    }
}

TEST(ApxRawReader, ATrailingPartialRecordIsCountedOutAndReadOverTheNaNPrefill)
{
    const TemporaryDirectory folder;
    const auto bytes = apxRawBytes({syntheticRawRecord(1000), syntheticRawRecord(2000), syntheticRawRecord(3000)});
    // The last 115 bytes of the file straddle two records: their time is no real time.
    AssertionRecorder assertions;
    Reader reader(Core::FileInfo(folder.write("cut.stream", bytes.substr(0, 2 * 115 + 50))), Alignment::NO_SOLUTION);
    EXPECT_EQ(reader.getCount(), 2u);
    const auto cut = readPastTheEnd(reader, {1.0, 2.0}, "Raw APX file has unexpectedly reached EOF.");
    EXPECT_EQ(cut.status, Status::VALID) << "alignment and flag were among the bytes read";
    // The read stopped before the byte swap: the time keeps the file's byte order.
    if constexpr (std::endian::native == std::endian::little) {
        EXPECT_EQ(cut.time, __builtin_bswap32(3000u) / 1000.0);
    }
    EXPECT_TRUE(std::isnan(cut.roll) && std::isnan(cut.forceX));
    EXPECT_EQ(cut.wanderAngle, 0.0);
}

TEST(ApxRawReader, AFileShorterThanOneRecordEndsAtItsFirstRead)
{
    const TemporaryDirectory folder;
    const auto bytes = apxRawBytes({syntheticRawRecord(1000)});
    for (const std::size_t size : {1, 7, 16, 17, 113, 114}) {
        SCOPED_TRACE(size);
        AssertionRecorder assertions;
        Reader reader(Core::FileInfo(folder.write("short.stream", bytes.substr(0, size))), Alignment::NO_SOLUTION);
        EXPECT_EQ(reader.getCount(), 0u);
        // Reading the interval runs into the end and the seeks after it fail: the stream can
        // deliver nothing, and the first read says so instead of giving INVALID records forever.
        const auto hit = readPastTheEnd(reader, {}, "Raw APX file has unexpectedly reached EOF.");
        EXPECT_EQ(hit.status, Status::INVALID);
        EXPECT_EQ(assertions.messages().at(0), assertText("!ifs.eof()"));
    }
}

} // namespace
} // namespace Kelvo::Geodesy::ApxRaw
