// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"
#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/ApxRaw/Writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::ApxRaw {
namespace {

using Testing::AssertionRecorder;
using Testing::syntheticRawRecord;
using Testing::TemporaryDirectory;
using Trajectory::Record;
using Status = Trajectory::Record::Status;
using Alignment = Trajectory::Reader::ImuAlignmentStatus;

// Big-endian bytes written by hand, independently of the library's own byte-order code.
void putBigEndian(std::string& bytes, std::size_t offset, std::uint64_t value, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        bytes[offset + i] = static_cast<char>((value >> (8 * (size - 1 - i))) & 0xFF);
    }
}
void putDouble(std::string& bytes, std::size_t offset, double value)
{
    putBigEndian(bytes, offset, std::bit_cast<std::uint64_t>(value), 8);
}
void putFloat(std::string& bytes, std::size_t offset, float value)
{
    putBigEndian(bytes, offset, std::bit_cast<std::uint32_t>(value), 4);
}

double radians(double degrees)
{
    return Maths::Degree(degrees).toRadian();
}

std::string file(const std::vector<RawRecord>& records)
{
    return Testing::apxRawBytes(records);
}

TEST(ApxRawReader, DecodesEachBigEndianFieldIntoItsSlot)
{
    // Every byte that the reader does not use is set, to show that it is ignored.
    std::string bytes(115, '\x5A');
    putBigEndian(bytes, 11, 123456, 4); // time of week [ms]
    bytes[15] = 4;                      // alignment state
    bytes[16] = 1;                      // solution flag
    putDouble(bytes, 17, 45.5);
    putDouble(bytes, 25, -73.25);
    putDouble(bytes, 33, 12.5);
    putFloat(bytes, 41, 1.5f);
    putFloat(bytes, 45, -2.25f);
    putFloat(bytes, 49, 0.125f);
    putDouble(bytes, 57, 1.0);
    putDouble(bytes, 65, -2.0);
    putDouble(bytes, 73, 180.0);
    putFloat(bytes, 89, 90.0f);
    putFloat(bytes, 93, -45.0f);
    putFloat(bytes, 97, 180.0f);
    putFloat(bytes, 101, 0.5f);
    putFloat(bytes, 105, 0.25f);
    putFloat(bytes, 109, -8.0f);
    std::string second = bytes;
    putBigEndian(second, 11, 123556, 4);

    const TemporaryDirectory folder;
    Reader reader(Core::FileInfo(folder.write("one.stream", bytes + second)), Alignment::FINE_ALIGNMENT);
    const auto record = reader.getNext();
    EXPECT_EQ(record.status, Status::VALID);
    EXPECT_EQ(record.time, 123.456);
    EXPECT_EQ(record.latitude, radians(45.5));
    EXPECT_EQ(record.longitude, radians(-73.25));
    EXPECT_EQ(record.height, 12.5);
    EXPECT_EQ(record.velocityX, 1.5);
    EXPECT_EQ(record.velocityY, -2.25);
    EXPECT_EQ(record.velocityZ, 0.125);
    EXPECT_EQ(record.roll, radians(1.0));
    EXPECT_EQ(record.pitch, radians(-2.0));
    EXPECT_DOUBLE_EQ(record.heading, std::numbers::pi);
    EXPECT_EQ(record.wanderAngle, 0.0);
    // The [deg/s] triple lands, converted, in the force slots; the other, as it is, in the
    // angular-rate slots.
    EXPECT_DOUBLE_EQ(record.forceX, std::numbers::pi / 2);
    EXPECT_DOUBLE_EQ(record.forceY, -std::numbers::pi / 4);
    EXPECT_DOUBLE_EQ(record.forceZ, std::numbers::pi);
    EXPECT_EQ(record.angularRateX, 0.5);
    EXPECT_EQ(record.angularRateY, 0.25);
    EXPECT_EQ(record.angularRateZ, -8.0);
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
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto& raw = records[i];
        const auto record = reader.getNext();
        ASSERT_FALSE(reader.endOfFile()) << i;
        const double expected[17] = {raw.timeOfWeek / 1000.0,  radians(raw.latitude),     radians(raw.longitude),
                                     raw.height,               raw.velocity[0],           raw.velocity[1],
                                     raw.velocity[2],          radians(raw.roll),         radians(raw.pitch),
                                     radians(raw.heading),     0.0,                       radians(raw.firstTriple[0]),
                                     radians(raw.firstTriple[1]), radians(raw.firstTriple[2]), raw.secondTriple[0],
                                     raw.secondTriple[1],      raw.secondTriple[2]};
        EXPECT_EQ(std::memcmp(&record.time, expected, sizeof(expected)), 0) << "record " << i;
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
        {Alignment::FULL_NAVIGATION, {{200, 1}}, {Status::VALID}},
    };
    const TemporaryDirectory folder;
    for (const auto& c : cases) {
        std::vector<RawRecord> records;
        for (const auto& [state, flag] : c.stateAndFlag) {
            records.push_back(syntheticRawRecord(1000u * static_cast<std::uint32_t>(records.size() + 1), state, flag));
        }
        // A single-record file has an empty interval, which the reader reports.
        AssertionRecorder assertions;
        Reader reader(Core::FileInfo(folder.write("graded.stream", file(records))), c.required);
        std::vector<Status> statuses;
        for (std::size_t i = 0; i < records.size(); ++i) {
            statuses.push_back(reader.getNext().status);
        }
        EXPECT_EQ(statuses, c.expected) << "required state " << static_cast<int>(c.required);
    }
}

TEST(ApxRawReader, TheReadThatFindsNoByteGivesAnInvalidRecordAndTheNextCallThrows)
{
    const TemporaryDirectory folder;
    const auto bytes = file({syntheticRawRecord(1000), syntheticRawRecord(2000)});
    ASSERT_EQ(bytes.size(), 230u);
    Reader reader(Core::FileInfo(folder.write("two.stream", bytes)), Alignment::NO_SOLUTION);
    EXPECT_EQ(reader.getCount(), 2u);
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(1.0, 2.0));
    EXPECT_EQ(reader.getNext().time, 1.0);
    EXPECT_EQ(reader.getNext().time, 2.0);
    EXPECT_FALSE(reader.endOfFile());

    const auto hit = reader.getNext();
    EXPECT_TRUE(reader.endOfFile());
    EXPECT_EQ(hit.status, Status::INVALID);
    const double* values = &hit.time;
    for (int i = 0; i < 17; ++i) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(values[i]), 0x7FF0000000000001u) << "value " << i;
    }
    try {
        reader.getNext();
        ADD_FAILURE() << "no exception";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Raw APX file has unexpectedly reached EOF.");
    }
}

TEST(ApxRawReader, ATrailingPartialRecordIsCountedOutAndReadOverTheNaNPrefill)
{
    const TemporaryDirectory folder;
    const auto partial = syntheticRawRecord(3000, 5, 1);
    const auto bytes = file({syntheticRawRecord(1000), syntheticRawRecord(2000)}) + file({partial}).substr(0, 50);
    // The last 115 bytes of the file straddle two records: their time is no real time.
    AssertionRecorder assertions;
    Reader reader(Core::FileInfo(folder.write("cut.stream", bytes)), Alignment::NO_SOLUTION);
    EXPECT_EQ(reader.getCount(), 2u);
    reader.getNext();
    reader.getNext();
    EXPECT_FALSE(reader.endOfFile());

    const auto cut = reader.getNext();
    EXPECT_TRUE(reader.endOfFile());
    EXPECT_EQ(cut.status, Status::VALID) << "alignment and flag were among the bytes read";
    // The read stopped before the byte swap: the time keeps the file's byte order.
    if constexpr (std::endian::native == std::endian::little) {
        EXPECT_EQ(cut.time, __builtin_bswap32(3000u) / 1000.0);
    }
    EXPECT_TRUE(std::isnan(cut.roll));
    EXPECT_TRUE(std::isnan(cut.forceX));
    EXPECT_TRUE(std::isnan(cut.angularRateZ));
    EXPECT_EQ(cut.wanderAngle, 0.0);
    EXPECT_THROW(reader.getNext(), std::runtime_error);
}

} // namespace
} // namespace Kelvo::Geodesy::ApxRaw
