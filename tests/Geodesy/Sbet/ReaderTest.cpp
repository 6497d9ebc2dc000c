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
#include <vector>

namespace Kelvo::Geodesy::Sbet {
namespace {

using namespace Testing;
using Trajectory::Record;

constexpr auto anyAlignment = Trajectory::Reader::ImuAlignmentStatus::NO_SOLUTION;

TEST(SbetReader, ReadsFilesWrittenByOtherProgramsFromFirstToLastRecord)
{
    // First and last records as read with Python's struct '<17d'.
    struct Case {
        const char* file;
        std::size_t count;
        std::array<double, 17> first, last;
    };
    const Case cases[] = {
        {"pdal/2-points.sbet", 2,
         {151631.00283607095, 0.5680211852972264, -2.04165439230394, 107.71529532965604, -2.3324208666000246,
          -0.3335067504871401, -0.030939616317678383, -0.028134071493213387, -0.024299053938891393,
          3.0467732302786623, -0.021984147369226575, 0.785963973775239, 0.7849084719295495, -0.29788079164502623,
          6.226807982589819e-05, 0.009312162756440178, 0.07217812320996525},
         {151631.00783186406, 0.5680211834722869, -2.0416543920340526, 107.71514243575072, -2.3362282296912706,
          -0.3324663118952635, -0.030229489610089866, -0.02813856631423094, -0.024252156693921688,
          3.0471311052368106, -0.021984160079321084, 0.8397590491636475, 0.3252165276637165, -0.15588832259908442,
          0.0008379685112283802, 0.0073728867847180765, 0.07179027672314571}},
        {"leeward/sbet.out", 200,
         {400825.0013129992, 0.6591193041070427, -2.0773576101964117, 6991.64706648894, -103.34004972777056,
          -38.822450641849706, -0.010084228308443674, -0.0015711392632070827, 0.050720863827141055,
          2.879948014037479, 0.017832386615283132, 0.3534960398990962, -0.4234359675207871, 0.3786774447593295,
          0.028269502710227018, 0.0011934673517062613, -0.0022712868271646696},
         {400825.9965316785, 0.6591032609508304, -2.0773496003367242, 6991.681271365001, -103.3269025476551,
          -38.84712044160127, 0.05201990941891735, 0.0002627749300282825, 0.05021034793099217, 2.8788443463344704,
          0.017827438683126334, -0.704317887991258, 2.900318946652077, 0.5850741960134105, 0.007390279295730096,
          0.0012643902333764855, 0.00038093313669145554}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        Reader reader(Core::FileInfo(refData(c.file)), anyAlignment);
        EXPECT_FALSE(reader.isRemote());
        EXPECT_EQ(reader.getSize(), static_cast<std::streamoff>(136 * c.count));
        EXPECT_EQ(reader.getCount(), c.count);
        EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(c.first[0], c.last[0]));
        const auto records = readUntilEnd(reader);
        ASSERT_EQ(records.size(), c.count);
        EXPECT_EQ(valuesOf(records.front()), c.first);
        EXPECT_EQ(valuesOf(records.back()), c.last);
        for (std::size_t i = 0; i < records.size(); ++i) {
            EXPECT_EQ(records[i].status, Record::VALID);
            EXPECT_TRUE(i == 0 || records[i].time > records[i - 1].time) << i;
        }
    }
}

TEST(SbetReader, AFileThatIsNotAWholeNumberOfRecordsIsRefusedAsTruncated)
{
    const TemporaryDirectory folder;
    const auto oneByteMore = folder.write("run1.sbet", sbetBytes(syntheticTrajectory(10, 1, 1)) + "x");
    for (const auto& path : {refData("pdal/badfile.sbet"), oneByteMore}) {
        // No closing quote and no blank: the text reads "...run1.sbetis truncated.".
        EXPECT_EQ(thrownText<std::runtime_error>([&] { Reader reader(Core::FileInfo(path), anyAlignment); }),
                  "SBET file '" + path.string() + "is truncated.");
    }
}

TEST(SbetReader, AFileWhoseLastTimeIsNotAfterItsFirstFailsTheIntervalCheck)
{
    const TemporaryDirectory folder;
    for (const double step : {1.0, -1.0}) {
        // One record has the same first and last time.
        const auto records = syntheticTrajectory(10.0, step, step > 0 ? 1 : 3);
        AssertionRecorder assertions;
        Reader reader(Core::FileInfo(folder.write("bad-order.sbet", sbetBytes(records))), anyAlignment);
        EXPECT_THAT(assertions.messages(),
                    ::testing::ElementsAre(assertText("timeInterval.data.first < timeInterval.data.second")));
        EXPECT_EQ(assertions.records().at(0).file, "src/Geodesy/src/Geodesy/Sbet/Reader.cpp");
        EXPECT_EQ(reader.getNext().time, 10.0) << "the reader still starts at the first record";
    }
}

TEST(SbetReader, WriterAndReaderRoundTripEveryBitAndRewindOverManyReadChunks)
{
    // Enough records for the reads to cross several chunks of the read-ahead.
    auto records = syntheticTrajectory(100000.0, 0.005, 9000);
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
    for (int i = 0; i < 2500; ++i) {
        reader.getNext();
    }
    reader.returnToBegin();
    const auto read = readUntilEnd(reader);
    ASSERT_EQ(read.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        ASSERT_EQ(bitsOf(valuesOf(read[i])), bitsOf(valuesOf(records[i]))) << "record " << i;
    }
}

} // namespace
} // namespace Kelvo::Geodesy::Sbet
