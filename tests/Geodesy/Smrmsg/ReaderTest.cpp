// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"
#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/Smrmsg/Reader.h"
#include "Geodesy/Smrmsg/Writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace Kelvo::Geodesy::Smrmsg {
namespace {

using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::refData;
using Testing::TemporaryDirectory;
using ::testing::ElementsAre;

std::array<double, 10> valuesOf(const Record& r)
{
    return {r.time,          r.northPositionRms, r.eastPositionRms, r.downPositionRms, r.northVelocityRms,
            r.eastVelocityRms, r.downVelocityRms, r.rollRms,         r.pitchRms,        r.headingRms};
}

std::string bytesOf(const std::vector<Record>& records)
{
    std::ostringstream bytes;
    Writer writer(bytes);
    for (const auto& record : records) {
        writer.write(record);
    }
    return bytes.str();
}

Record recordAt(double time)
{
    return {time, 0.01 * time, 0.02, 0.03, 0.004, 0.005, 0.006, 0.2, 0.3, 3.0};
}

TEST(SmrmsgReader, ReadsEveryRecordOfAFileWrittenByAnotherProgram)
{
    Reader reader(Core::FileInfo(refData("pdal/smrmsg.smrmsg")));
    const auto records = Testing::readUntilEnd(reader);
    ASSERT_EQ(records.size(), 21902u);
    EXPECT_EQ(valuesOf(records.front()),
              (std::array<double, 10>{536258.0, 0.0562789546440652, 0.05779133225572036, 0.0707735879825197,
                                      0.0066424606746074, 0.008034364744854262, 0.008130622792363963,
                                      0.23698520689106414, 0.23942021838953054, 3.0108023633776173}));
    EXPECT_EQ(valuesOf(records.back()),
              (std::array<double, 10>{558159.0, 0.07549545827193843, 0.08037354342788569, 0.10007031677932912,
                                      0.007515620940157777, 0.008126847412605751, 0.009165193447977768,
                                      0.225886045846102, 0.226854047609627, 2.6300975928636725}));

    // The other program's text dump of the same file, six decimals, agrees with every record.
    std::ifstream text(refData("pdal/smrmsg.txt"));
    std::string line;
    std::getline(text, line);
    for (std::size_t i = 0; i < records.size(); ++i) {
        ASSERT_TRUE(std::getline(text, line)) << i;
        std::istringstream fields(line);
        const auto values = valuesOf(records[i]);
        for (std::size_t j = 0; j < values.size(); ++j) {
            double value = 0.0;
            char comma = 0;
            fields >> value;
            fields >> comma;
            ASSERT_NEAR(values[j], value, 1e-6) << "record " << i << ", value " << j;
        }
    }
}

TEST(SmrmsgReader, TheCallWhoseReadHitsTheEndIsDiscardableAndTheNextOneThrows)
{
    const TemporaryDirectory folder;
    struct Case {
        std::string bytes;
        std::size_t records;
    };
    const Case cases[] = {
        {bytesOf({recordAt(1.0), recordAt(2.0)}), 2},
        {"", 0},
        // A trailing partial record simply ends the reading.
        {bytesOf({recordAt(1.0)}) + std::string(20, '\0'), 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bytes.size());
        Reader reader(Core::FileInfo(folder.write("file.smrmsg", c.bytes)));
        for (std::size_t i = 0; i < c.records; ++i) {
            EXPECT_EQ(reader.getNext().time, static_cast<double>(i + 1));
            EXPECT_FALSE(reader.endOfFile());
        }
        const auto hit = reader.getNext();
        EXPECT_TRUE(reader.endOfFile());
        EXPECT_EQ(std::bit_cast<std::uint64_t>(hit.headingRms), 0x7FF0000000000001u) << "no data in that record";
        try {
            reader.getNext();
            ADD_FAILURE() << "no exception";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "SMRMSG file has unexpectedly reached EOF.");
        }
    }
}

TEST(SmrmsgReader, WriterAndReaderRoundTripEveryBit)
{
    std::vector<Record> records;
    for (int i = 0; i < 7000; ++i) {
        records.push_back(recordAt(500000.0 + i));
    }
    records[3].pitchRms = -0.0;
    records[4].rollRms = std::numeric_limits<double>::quiet_NaN();
    const TemporaryDirectory folder;
    const auto path = folder.path() / "roundtrip.smrmsg";
    {
        Writer writer(path);
        for (const auto& record : records) {
            writer.write(record);
        }
    }
    Reader reader(Core::FileInfo{path});
    const auto read = Testing::readUntilEnd(reader);
    ASSERT_EQ(read.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        using Bits = std::array<std::uint64_t, 10>;
        ASSERT_EQ(std::bit_cast<Bits>(valuesOf(read[i])), std::bit_cast<Bits>(valuesOf(records[i]))) << "record " << i;
    }
}

TEST(SmrmsgReader, MovingTransfersTheStream)
{
    const TemporaryDirectory folder;
    const auto first = folder.write("a.smrmsg", bytesOf({recordAt(1.0), recordAt(2.0)}));
    const auto second = folder.write("b.smrmsg", bytesOf({recordAt(7.0)}));
    Reader reader(Core::FileInfo{first});
    EXPECT_EQ(reader.getNext().time, 1.0);
    Reader moved(std::move(reader));
    EXPECT_EQ(moved.getNext().time, 2.0);

    Reader other(Core::FileInfo{second});
    other = std::move(moved);
    moved = Reader(Core::FileInfo{second});
    EXPECT_EQ(moved.getNext().time, 7.0);
    other.getNext();
    EXPECT_TRUE(other.endOfFile());
}

TEST(SmrmsgReader, AFileThatCannotBeOpenedThrowsTheSystemErrorOfItsPath)
{
    const TemporaryDirectory folder;
    const std::pair<std::filesystem::path, int> cases[] = {{folder.path() / "missing.smrmsg", ENOENT},
                                                           {folder.path(), EISDIR}};
    for (const auto& [path, errorNumber] : cases) {
        AssertionRecorder assertions;
        try {
            Reader reader(Core::FileInfo{path});
            ADD_FAILURE() << "no exception for " << path;
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), std::error_code(errorNumber, std::generic_category()));
            EXPECT_THAT(error.what(), ::testing::StartsWith(std::generic_category().message(errorNumber) + ": \""
                                                            + path.string() + "\""));
        }
        ASSERT_THAT(assertions.messages(), ElementsAre(assertText("size >= 0")));
        EXPECT_EQ(assertions.records()[0].file, "src/Geodesy/src/Geodesy/Smrmsg/Reader.cpp");
    }
}

} // namespace
} // namespace Kelvo::Geodesy::Smrmsg
