// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"
#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/Sbet/Reader.h"
#include "Geodesy/Sbet/Writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace Kelvo::Geodesy::Sbet {
namespace {

using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::refData;
using Testing::TemporaryDirectory;
using Trajectory::Record;
using ::testing::ElementsAre;

constexpr auto anyAlignment = Trajectory::Reader::ImuAlignmentStatus::NO_SOLUTION;

std::array<double, 17> valuesOf(const Record& r)
{
    return {r.time,   r.latitude, r.longitude,   r.height, r.velocityX, r.velocityY,    r.velocityZ,    r.roll,        r.pitch,
            r.heading, r.wanderAngle, r.forceX, r.forceY, r.forceZ,    r.angularRateX, r.angularRateY, r.angularRateZ};
}

std::array<std::uint64_t, 17> bitsOf(const Record& r)
{
    std::array<std::uint64_t, 17> bits;
    const auto values = valuesOf(r);
    for (std::size_t i = 0; i < values.size(); ++i) {
        bits[i] = std::bit_cast<std::uint64_t>(values[i]);
    }
    return bits;
}

TEST(SbetReader, ReadsTheTwoRecordsOfAFileWrittenByAnotherProgram)
{
    Reader reader(Core::FileInfo(refData("pdal/2-points.sbet")), anyAlignment);
    EXPECT_FALSE(reader.isRemote());
    EXPECT_EQ(reader.getSize(), 272);
    EXPECT_EQ(reader.getCount(), 2u);
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week),
              Maths::Interval<double>(151631.00283607095, 151631.00783186406));

    const std::array<double, 17> expected[] = {
        {151631.00283607095, 0.5680211852972264, -2.04165439230394, 107.71529532965604, -2.3324208666000246,
         -0.3335067504871401, -0.030939616317678383, -0.028134071493213387, -0.024299053938891393,
         3.0467732302786623, -0.021984147369226575, 0.785963973775239, 0.7849084719295495, -0.29788079164502623,
         6.226807982589819e-05, 0.009312162756440178, 0.07217812320996525},
        {151631.00783186406, 0.5680211834722869, -2.0416543920340526, 107.71514243575072, -2.3362282296912706,
         -0.3324663118952635, -0.030229489610089866, -0.02813856631423094, -0.024252156693921688,
         3.0471311052368106, -0.021984160079321084, 0.8397590491636475, 0.3252165276637165, -0.15588832259908442,
         0.0008379685112283802, 0.0073728867847180765, 0.07179027672314571},
    };
    for (const auto& values : expected) {
        const auto record = reader.getNext();
        EXPECT_FALSE(reader.endOfFile());
        EXPECT_EQ(record.status, Record::Status::VALID);
        EXPECT_EQ(valuesOf(record), values);
    }
}

TEST(SbetReader, TheCallWhoseReadHitsTheEndIsDiscardableAndTheNextOneThrows)
{
    Reader reader(Core::FileInfo(refData("pdal/2-points.sbet")), anyAlignment);
    reader.getNext();
    reader.getNext();
    EXPECT_FALSE(reader.endOfFile()) << "the second read ends exactly at the end of the file";
    const auto hit = reader.getNext();
    EXPECT_TRUE(reader.endOfFile());
    EXPECT_TRUE(std::isnan(hit.time)) << "no file data in the record of the read that hit the end";
    try {
        reader.getNext();
        ADD_FAILURE() << "no exception";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "SBET file has unexpectedly reached EOF.");
    }
}

TEST(SbetReader, ReadsAnAirborneFileFromFirstToLastRecord)
{
    const auto path = refData("leeward/sbet.out");
    Reader reader(Core::FileInfo(path), anyAlignment);
    EXPECT_EQ(reader.getCount(), 200u);
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week),
              Maths::Interval<double>(400825.0013129992, 400825.9965316785));

    const auto records = Testing::readUntilEnd(reader);
    ASSERT_EQ(records.size(), 200u);
    const std::array<double, 17> first = {
        400825.0013129992,     0.6591193041070427,   -2.0773576101964117,   6991.64706648894,
        -103.34004972777056,   -38.822450641849706,  -0.010084228308443674, -0.0015711392632070827,
        0.050720863827141055,  2.879948014037479,    0.017832386615283132,  0.3534960398990962,
        -0.4234359675207871,   0.3786774447593295,   0.028269502710227018,  0.0011934673517062613,
        -0.0022712868271646696};
    EXPECT_EQ(valuesOf(records.front()), first);
    const auto& last = records.back();
    EXPECT_EQ(last.time, 400825.9965316785);
    EXPECT_EQ(last.latitude, 0.6591032609508304);
    EXPECT_EQ(last.longitude, -2.0773496003367242);
    EXPECT_EQ(last.height, 6991.681271365001);
    EXPECT_EQ(last.heading, 2.8788443463344704);
    EXPECT_EQ(last.wanderAngle, 0.017827438683126334);
    for (std::size_t i = 1; i < records.size(); ++i) {
        EXPECT_GT(records[i].time, records[i - 1].time) << i;
    }
}

TEST(SbetReader, AFileThatIsNotAWholeNumberOfRecordsIsRefusedAsTruncated)
{
    const TemporaryDirectory folder;
    const auto oneByteMore = folder.write("run1.sbet", Testing::sbetBytes(Testing::syntheticTrajectory(10.0, 1.0, 1)) + "x");
    for (const auto& path : {refData("pdal/badfile.sbet"), oneByteMore}) {
        try {
            Reader reader(Core::FileInfo(path), anyAlignment);
            ADD_FAILURE() << "no exception for " << path;
        } catch (const std::runtime_error& error) {
            // No closing quote and no blank: the text reads "...run1.sbetis truncated.".
            EXPECT_EQ(error.what(), "SBET file '" + path.string() + "is truncated.");
        }
    }
}

TEST(SbetReader, AFileWhoseLastTimeIsNotAfterItsFirstFailsTheIntervalCheck)
{
    const TemporaryDirectory folder;
    const std::vector<std::vector<Record>> files = {
        Testing::syntheticTrajectory(10.0, 1.0, 1),
        Testing::syntheticTrajectory(10.0, -1.0, 3),
    };
    for (const auto& records : files) {
        AssertionRecorder assertions;
        Reader reader(Core::FileInfo(folder.write("bad-order.sbet", Testing::sbetBytes(records))), anyAlignment);
        ASSERT_THAT(assertions.messages(), ElementsAre(assertText("timeInterval.data.first < timeInterval.data.second")));
        EXPECT_EQ(assertions.records()[0].file, "src/Geodesy/src/Geodesy/Sbet/Reader.cpp");
        // The reader still starts at the first record.
        EXPECT_EQ(reader.getNext().time, 10.0);
    }
}

TEST(SbetReader, WriterAndReaderRoundTripEveryBitOverManyReadChunks)
{
    // Enough records for the reads to cross several internal chunk boundaries.
    auto records = Testing::syntheticTrajectory(100000.0, 0.005, 9000);
    records[1].height = -0.0;
    records[2].velocityX = std::numeric_limits<double>::infinity();
    records[3].roll = std::bit_cast<double>(std::uint64_t{0x7FF8DEADBEEF0001});
    records[4].angularRateZ = std::numeric_limits<double>::denorm_min();

    const TemporaryDirectory folder;
    const auto path = folder.path() / "roundtrip.sbet";
    {
        Writer writer(path);
        for (const auto& record : records) {
            writer.write(record);
        }
        writer.flush();
    }
    EXPECT_EQ(std::filesystem::file_size(path), records.size() * 136);

    Reader reader(Core::FileInfo(path), anyAlignment);
    EXPECT_EQ(reader.getCount(), records.size());
    const auto read = Testing::readUntilEnd(reader);
    ASSERT_EQ(read.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        ASSERT_EQ(bitsOf(read[i]), bitsOf(records[i])) << "record " << i;
    }
}

TEST(SbetReader, ReturnToBeginRestartsAtTheFirstRecordButKeepsAFailedStreamFailed)
{
    const auto records = Testing::syntheticTrajectory(5000.0, 0.01, 3000);
    const TemporaryDirectory folder;
    Reader reader(Core::FileInfo(folder.write("rewind.sbet", Testing::sbetBytes(records))), anyAlignment);
    for (int i = 0; i < 2500; ++i) {
        reader.getNext();
    }
    reader.returnToBegin();
    EXPECT_EQ(bitsOf(reader.getNext()), bitsOf(records[0]));
    EXPECT_EQ(bitsOf(reader.getNext()), bitsOf(records[1]));

    // Once the end was hit, rewinding does not clear the failure: the reader no longer
    // reports the end, and hands out records without data.
    while (!reader.endOfFile()) {
        reader.getNext();
    }
    reader.returnToBegin();
    EXPECT_FALSE(reader.endOfFile());
    EXPECT_TRUE(std::isnan(reader.getNext().time));
}

TEST(SbetWriter, APathThatCannotBeCreatedThrowsTheSystemErrorOfItsPath)
{
    const TemporaryDirectory folder;
    const auto path = folder.path() / "no-such-folder" / "out.sbet";
    try {
        Writer writer(path);
        ADD_FAILURE() << "no exception";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::error_code(ENOENT, std::generic_category()));
        EXPECT_THAT(error.what(), ::testing::StartsWith("No such file or directory: \"" + path.string() + "\""));
    }
}

} // namespace
} // namespace Kelvo::Geodesy::Sbet
