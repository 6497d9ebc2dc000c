// SPDX-License-Identifier: MIT
#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/Smrmsg/Reader.h"
#include "Geodesy/Smrmsg/Writer.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace Kelvo::Geodesy::Smrmsg {
namespace {

using namespace Testing;

constexpr const char* endOfFileMessage = "SMRMSG file has unexpectedly reached EOF.";

std::string bytesOf(const std::vector<Record>& records)
{
    return writtenBytes<Writer>(records);
}

Record recordAt(double time)
{
    return {time, 0.01 * time, 0.02, 0.03, 0.004, 0.005, 0.006, 0.2, 0.3, 3.0};
}

TEST(SmrmsgReader, ReadsEveryRecordOfAFileWrittenByAnotherProgram)
{
    Reader reader(Core::FileInfo(refData("pdal/smrmsg.smrmsg")));
    const auto records = readUntilEnd(reader);
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
        for (const double value : valuesOf(records[i])) {
            double expected = 0.0;
            char comma = 0;
            fields >> expected >> comma;
            ASSERT_NEAR(value, expected, 1e-6) << "record " << i;
        }
    }
}

TEST(SmrmsgReader, TheReadThatHitsTheEndGivesNoDataAndTheNextCallThrows)
{
    const TemporaryDirectory folder;
    // An empty file is accepted; a trailing partial record simply ends the reading.
    const std::pair<std::string, std::vector<double>> cases[] = {
        {bytesOf({recordAt(1.0), recordAt(2.0)}), {1.0, 2.0}},
        {"", {}},
        {bytesOf({recordAt(1.0)}) + std::string(20, '\0'), {1.0}},
    };
    for (const auto& [bytes, times] : cases) {
        Reader reader(Core::FileInfo(folder.write("file.smrmsg", bytes)));
        readPastTheEnd(reader, times, endOfFileMessage);
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
    const auto read = readUntilEnd(reader);
    ASSERT_EQ(read.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        ASSERT_EQ(bitsOf(valuesOf(read[i])), bitsOf(valuesOf(records[i]))) << "record " << i;
    }
}

} // namespace
} // namespace Kelvo::Geodesy::Smrmsg
