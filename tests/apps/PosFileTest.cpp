// SPDX-License-Identifier: MIT
// RTKLIB position files: the tool writes them as RTKLIB does and tells which ones the library
// can read before it is asked to.
#include "Context.h"
#include "PosFile.h"
#include "ToolTestSupport.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Kelvo::Tool {
namespace {

using Testing::refData;

TEST(PosFileTest, WritesDataLinesByteForByteAsRtklib)
{
    // Every data line of RTKLIB's own output, read and written again, comes back unchanged:
    // same columns, widths, decimals, signs of zero and CRLF line ends.
    for (const char* file : {"rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos", "rtklib/spp_vel_crescent.pos",
                             "rtklib/rtk_kinematic_dyn_vel_multignss.pos", "rtklib/spp_vel_gsi0759.pos"}) {
        std::istringstream lines(Testing::fileBytes(refData(file)));
        int checked = 0;
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("%")) {
                continue;
            }
            const auto epoch = parsePosLine(line);
            ASSERT_TRUE(epoch) << file << ": " << line;
            std::ostringstream written;
            writePosEpoch(written, *epoch);
            ASSERT_EQ(written.str(), line + "\n") << file;
            ++checked;
        }
        EXPECT_GT(checked, 100) << file;
    }
}

TEST(PosFileTest, HeaderNamesTheObservationSpanInGpsTime)
{
    PosHeader header;
    header.program = "test";
    header.inputs = {"rover.obs"};
    header.first.week = header.last.week = 2244;
    header.first.secondsOfWeek = 36000.0;
    header.last.secondsOfWeek = 36600.0;
    header.first.latitude = 48.780735783;
    header.first.longitude = 9.17199225;
    header.first.height = 320.0;
    std::ostringstream out;
    writePosHeader(out, header);
    const std::string text = out.str();
    // The lines RTKLIB builds from its inputs end in LF, the others in CRLF.
    EXPECT_NE(text.find("% obs start : 2023/01/08 10:00:00.0 GPST (week2244  36000.0s)\n"), std::string::npos);
    EXPECT_NE(text.find("% obs end   : 2023/01/08 10:10:00.0 GPST (week2244  36600.0s)\n"), std::string::npos);
    EXPECT_NE(text.find("% ref pos   : 48.780735783    9.171992250   320.0000\n%\n"), std::string::npos);
    EXPECT_NE(text.find("% pos mode  : Kinematic\r\n"), std::string::npos);
    EXPECT_NE(text.find("sdvne    sdveu    sdvun\r\n"), std::string::npos);
}

TEST(PosFileTest, ScanFindsRecordsAndMovingSpanOrTellsWhyNot)
{
    const struct {
        const char* file;
        std::uint64_t count;
        std::optional<std::uint64_t> moving; // records at 0.5 m/s or faster, when known
        const char* error;
    } cases[] = {
        {"rtklib/rtk_kinematic_dyn_vel_gpsgal_spirent.pos", 601, 601, nullptr},
        {"rtklib/spp_vel_crescent.pos", 312, std::nullopt, nullptr},
        {"rtklib/rtk_kinematic_vel.pos", 115, 0, nullptr},
        {"rtklib/rtk_kinematic_novel.pos", 0, 0, "no velocity columns"},
        {"rtklib/rtk_kinematic_vel_hms.pos", 0, 0, "calendar times"},
        {"rtklib/spp_vel_xyz_crescent.pos", 0, 0, "ECEF coordinates"},
        {"rtklib/public/rtklibexplorer_demo1_out.pos", 0, 0, "baseline coordinates"},
        {"rtklib/public/instinct/lla_gpst_000_dd.pos", 0, 0, "no velocity columns"},
        {"rtklib/public/instinct/corrupt_header_missing.pos", 0, 0, "calendar times"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        if (c.error != nullptr) {
            try {
                scanPosFile(refData(c.file), 0.5);
                ADD_FAILURE() << "no error";
            } catch (const InputError& error) {
                EXPECT_NE(std::string(error.what()).find(c.error), std::string::npos) << error.what();
            }
            continue;
        }
        const PosSummary summary = scanPosFile(refData(c.file), 0.5);
        EXPECT_EQ(summary.count, c.count);
        if (c.moving) {
            EXPECT_EQ(summary.moving, *c.moving);
        }
    }
    const PosSummary crescent = scanPosFile(refData("rtklib/spp_vel_crescent.pos"), 0.5);
    EXPECT_EQ(crescent.first.secondsOfWeek, 108094.0);
    EXPECT_EQ(crescent.last.secondsOfWeek, 108405.0);
    EXPECT_EQ(crescent.secondToLast, 108404.0);
    EXPECT_LT(crescent.firstMoving, crescent.lastMoving);
}

TEST(PosFileTest, ScanStopsWhereTheLibraryStops)
{
    Testing::TemporaryDirectory folder;
    const std::string line = "2244  36000.000   48.780735774    9.173352864   320.0009   1   6   0.0070   0.0045   "
                             "0.0162  -0.0021  -0.0012  -0.0075   0.00  999.9    5.24067    0.00081   -0.00557  "
                             "10.00000 10.00000 10.00000  0.00000 -0.00000 -0.00000\r\n";
    std::string second = line;
    second.replace(second.find("36000"), 5, "36001");
    const auto path = folder.write("cut.pos", "% header\r\n" + line + second + "2244 corrupt\r\n" + line);
    const PosSummary summary = scanPosFile(path, 0.5);
    EXPECT_EQ(summary.count, 2u);
    EXPECT_EQ(summary.stoppedAtLine, 4u);
}

} // namespace
} // namespace Kelvo::Tool
