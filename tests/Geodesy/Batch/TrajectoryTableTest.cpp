// SPDX-License-Identifier: MIT
// Loading trajectory tables: the columns of real files, raw APX grading, file sets in any
// order with overlaps, gaps and week rollovers, and every refused input.
#include "BatchTestSupport.h"

#include "../Providers/ProviderTestSupport.h"

#include "support/AssertionRecorder.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/Batch/ArgumentError.h"
#include "Geodesy/Batch/FileFormatError.h"
#include "Geodesy/CoordinateSystem/Ellipsoid.h"
#include "Geodesy/Sbet/Reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <string>
#include <system_error>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using namespace BatchTesting;
using Batch::ArgumentError;
using Batch::FileFormatError;
using Batch::TrajectoryFormat;
using Batch::TrajectoryOptions;
using Batch::TrajectoryTable;
using Testing::TemporaryDirectory;
using Testing::thrownText;

std::vector<double> column(std::span<const double> values)
{
    return {values.begin(), values.end()};
}

TEST(TrajectoryTable, RealSbetGivesTheRecordsWithTrueHeadingAndVelocityNorthEastDown)
{
    const auto path = Testing::refData("leeward/sbet.out");
    const auto records = ProviderTesting::readSbetDirectly(path);
    const TrajectoryTable table = loadPaths({path});
    ASSERT_EQ(table.size(), 200u);
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto& r = records[i];
        SCOPED_TRACE(i);
        EXPECT_EQ(bits(table.time()[i]), bits(r.time));
        EXPECT_EQ(bits(table.latitude()[i]), bits(r.latitude));
        EXPECT_EQ(bits(table.longitude()[i]), bits(r.longitude));
        EXPECT_EQ(bits(table.height()[i]), bits(r.height));
        EXPECT_EQ(bits(table.roll()[i]), bits(r.roll));
        EXPECT_EQ(bits(table.pitch()[i]), bits(r.pitch));
        EXPECT_EQ(bits(table.yaw()[i]), bits(r.heading - r.wanderAngle));
    }
    // The velocities against the motion itself: the mean velocity over the file's second
    // against the distance run north, east and down (radii of curvature of the library).
    const auto mean = [](std::span<const double> values) {
        return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
    };
    const auto [primeVertical, meridian] = CoordinateSystem::getRnRe(records.front().latitude);
    const auto& first = records.front();
    const auto& last = records.back();
    const double seconds = last.time - first.time;
    EXPECT_NEAR(mean(table.velocityNorth()), (last.latitude - first.latitude) / seconds * (meridian + first.height),
                0.01);
    EXPECT_NEAR(mean(table.velocityEast()),
                (last.longitude - first.longitude) / seconds * (primeVertical + first.height)
                    * std::cos(first.latitude),
                0.01);
    EXPECT_NEAR(mean(table.velocityDown()), -(last.height - first.height) / seconds, 0.01);
    // Record 0 flies west-south-west in the wander frame (vy = -38.8 m/s): east is positive.
    EXPECT_NEAR(table.velocityEast()[0], 40.7, 0.1);

    ASSERT_EQ(table.sources().size(), 1u);
    EXPECT_EQ(table.sources()[0].path, path);
    EXPECT_EQ(table.sources()[0].records, 200u);
    EXPECT_EQ(table.sources()[0].used, 200u);
    EXPECT_EQ(table.timeSpan().first, first.time);
    EXPECT_EQ(table.timeSpan().last, last.time);
    EXPECT_TRUE(table.gaps().empty()) << "steps of 5 ms";
}

TEST(TrajectoryTable, RawApxLeavesOutRecordsNotValidAsTheReaderGradesThemAndOpensAGapWhereTheyWere)
{
    // Alignment 3, 3, 5 (reached), 4 (latched: still VALID), flag 0 (not valid), 5, 5 at 1 Hz.
    const std::vector<std::pair<std::uint8_t, std::uint8_t>> grades{{3, 1}, {3, 1}, {5, 1}, {4, 1},
                                                                    {5, 0}, {5, 1}, {5, 1}};
    std::vector<ApxRaw::RawRecord> raw;
    for (std::size_t i = 0; i < grades.size(); ++i) {
        raw.push_back(Testing::syntheticRawRecord(static_cast<std::uint32_t>(100000 + 1000 * i), grades[i].first,
                                                  grades[i].second));
    }
    TemporaryDirectory folder;
    const auto path = folder.write("nav.stream", Testing::apxRawBytes(raw));
    TrajectoryOptions options;
    options.maxGap = 1.5;
    const TrajectoryTable table = loadPaths({path}, options);

    EXPECT_EQ(column(table.time()), (std::vector<double>{102.0, 103.0, 105.0, 106.0}));
    EXPECT_EQ(table.droppedNotValid(), 3u);
    ASSERT_EQ(table.gaps().size(), 1u);
    EXPECT_EQ(table.gaps()[0].start, 103.0);
    EXPECT_EQ(table.gaps()[0].length, 2.0);
    // Degrees to radians as the reader converts them; velocities are north, east, down as stored.
    ApxRaw::Reader reader(path, options.alignment);
    const auto records = Testing::readUntilEnd(reader);
    EXPECT_EQ(table.latitude()[0], records[2].latitude);
    EXPECT_EQ(table.yaw()[1], records[3].heading);
    EXPECT_EQ(table.velocityNorth()[3], static_cast<double>(raw[6].velocity[0]));
    EXPECT_EQ(table.velocityEast()[3], static_cast<double>(raw[6].velocity[1]));
    EXPECT_EQ(table.velocityDown()[3], static_cast<double>(raw[6].velocity[2]));

    // A weaker requirement keeps every record with a solution.
    options.alignment = Trajectory::Reader::ImuAlignmentStatus::COARSE_ALIGNMENT;
    EXPECT_EQ(loadPaths({path}, options).size(), 6u);
}

// Files of records every 0.25 s, each told apart by its height offset.
class FileSets : public ::testing::Test {
protected:
    std::filesystem::path add(const std::string& name, double start, double end, double heightOffset)
    {
        auto records = Testing::syntheticTrajectory(start, 0.25, static_cast<std::size_t>((end - start) / 0.25) + 1);
        for (auto& record : records) {
            record.height += heightOffset;
        }
        return writeSbet(folder, name, records);
    }

    TemporaryDirectory folder;
};

TEST_F(FileSets, FilesInAnyOrderAreMergedByTimeAndOverlapsAreKeptOnceFromTheEarlierFile)
{
    const auto a = add("a.sbet", 1000.0, 1010.0, 0.0);
    const auto b = add("b.sbet", 1005.0, 1020.0, 100.0); // overlaps a from 1005 to 1010
    const auto c = add("c.sbet", 1020.25, 1030.0, 200.0); // follows b
    std::vector<std::filesystem::path> files{a, b, c};
    std::sort(files.begin(), files.end());
    do {
        const TrajectoryTable table = loadPaths(files);
        ASSERT_EQ(table.size(), 121u);
        const auto time = table.time();
        EXPECT_TRUE(std::adjacent_find(time.begin(), time.end(), std::greater_equal<>()) == time.end());
        EXPECT_EQ(table.height()[40], Testing::syntheticRecord(1010.0).height) << "1010 comes from a";
        EXPECT_EQ(table.height()[41], Testing::syntheticRecord(1010.25).height + 100.0);
        EXPECT_EQ(table.droppedOverlap(), 21u);
        ASSERT_EQ(table.sources().size(), 3u);
        const auto& merged = table.sources();
        EXPECT_EQ(merged[0].path, a);
        EXPECT_EQ(merged[1].path, b);
        EXPECT_EQ(merged[1].overlap, 21u);
        EXPECT_EQ(merged[1].used, 40u);
        EXPECT_EQ(merged[1].firstTime, 1010.25);
        EXPECT_EQ(merged[2].path, c);
        EXPECT_TRUE(table.gaps().empty());
    } while (std::next_permutation(files.begin(), files.end()));
}

TEST_F(FileSets, TwoHalvesOfOneSbetMakeTheWholeFileAndAGapBetweenFilesIsAGap)
{
    const auto path = Testing::refData("leeward/sbet.out");
    const auto records = ProviderTesting::readSbetDirectly(path);
    const auto firstHalf = writeSbet(folder, "first.out", {records.begin(), records.begin() + 100});
    const auto secondHalf = writeSbet(folder, "second.out", {records.begin() + 100, records.end()});
    const TrajectoryTable whole = loadPaths({path});
    const TrajectoryTable halves = loadPaths({secondHalf, firstHalf});
    EXPECT_EQ(column(halves.time()), column(whole.time()));
    EXPECT_EQ(column(halves.yaw()), column(whole.yaw()));
    EXPECT_EQ(column(halves.velocityEast()), column(whole.velocityEast()));

    // 60 s without a record, between files or inside one.
    const auto before = add("before.sbet", 1000.0, 1010.0, 0.0);
    const auto after = add("after.sbet", 1070.0, 1080.0, 0.0);
    auto joined = Testing::syntheticTrajectory(1000.0, 0.25, 41);
    const auto tail = Testing::syntheticTrajectory(1070.0, 0.25, 41);
    joined.insert(joined.end(), tail.begin(), tail.end());
    const auto inside = writeSbet(folder, "gap.sbet", joined);
    for (const auto& table : {loadPaths({after, before}), loadPaths({inside})}) {
        ASSERT_EQ(table.gaps().size(), 1u);
        EXPECT_EQ(table.gaps()[0].start, 1010.0);
        EXPECT_EQ(table.gaps()[0].length, 60.0);
    }
    TrajectoryOptions options;
    options.maxGap = 60.0;
    EXPECT_TRUE(loadPaths({inside}, options).gaps().empty()) << "a gap is longer than maxGap";
}

TEST_F(FileSets, TimesRunOnAcrossTheEndOfTheWeekInsideAFileAndAcrossFiles)
{
    auto rolling = Testing::syntheticTrajectory(604799.5, 0.25, 4); // 604799.5 to 604800.25
    rolling[2].time = 0.0;
    rolling[3].time = 0.25;
    const auto rollingPath = writeSbet(folder, "rolling.sbet", rolling);
    Testing::AssertionRecorder recorder;
    const TrajectoryTable inFile = loadPaths({rollingPath});
    EXPECT_EQ(column(inFile.time()), (std::vector<double>{604799.5, 604799.75, 604800.0, 604800.25}));
    // The SBET reader takes the first and last times as the file's interval, and says so.
    EXPECT_EQ(recorder.messages(),
              std::vector<std::string>{Testing::assertText("timeInterval.data.first < timeInterval.data.second")});

    // A file starting early in the week, given first, belongs after one ending the week before.
    const auto next = add("next.sbet", 0.0, 10.0, 0.0);
    const auto previous = add("previous.sbet", 604790.0, 604799.75, 0.0);
    const TrajectoryTable acrossFiles = loadPaths({next, previous});
    EXPECT_EQ(acrossFiles.timeSpan().first, 604790.0);
    EXPECT_EQ(acrossFiles.timeSpan().last, 604810.0);
    EXPECT_EQ(acrossFiles.sources()[1].path, next);
    EXPECT_TRUE(acrossFiles.gaps().empty());
}

TEST_F(FileSets, RefusedInputNamesTheFileOrTheArgument)
{
    auto backward = Testing::syntheticTrajectory(100.0, 0.5, 4);
    backward[2].time = 100.25;
    const auto backwardPath = writeSbet(folder, "backward.sbet", backward);
    auto notFinite = Testing::syntheticTrajectory(100.0, 0.5, 3);
    notFinite[1].time = std::nan(""); // first and last times in order: the reader opens it
    const auto notFinitePath = writeSbet(folder, "nan.sbet", notFinite);
    const auto sbet = add("a.sbet", 100.0, 101.0, 0.0);
    const auto stream = folder.write("b.stream", Testing::apxRawBytes({Testing::syntheticRawRecord(100000, 1),
                                                                       Testing::syntheticRawRecord(101000, 1)}));
    const auto truncated = folder.write("cut.sbet", Testing::sbetBytes(backward).substr(0, 137));

    const auto message = [](auto&& action) { return thrownText<Core::Exception>(action); };
    const auto load = [](std::vector<std::filesystem::path> files, TrajectoryOptions options = {}) {
        return [files, options] { loadPaths(files, options); };
    };
    const auto withGap = [](double gap) {
        TrajectoryOptions options;
        options.maxGap = gap;
        return options;
    };
    const std::pair<std::function<void()>, std::string> cases[] = {
        {load({}), "files is empty: a trajectory needs at least one file"},
        {load({sbet, stream}), "files mix raw APX (\"" + stream.string() + "\") and SBET (\"" + sbet.string()
                                   + "\"); give them one format"},
        {load({backwardPath}), backwardPath.string() + ": record 2: time goes back from 100.5 to 100.25 s"},
        {load({notFinitePath}), notFinitePath.string() + ": record 1: time is nan"},
        {load({stream}), stream.string() + ": no VALID record among its 2 records"},
        {load({truncated}), truncated.string() + ": SBET file '" + truncated.string() + "is truncated."},
        {load({sbet}, withGap(0.0)), "maxGap is 0 s: it must be positive"},
        {load({sbet}, withGap(std::nan(""))), "maxGap is nan s: it must be positive"},
    };
    for (const auto& [action, expected] : cases) {
        EXPECT_EQ(message(action), expected);
    }
    EXPECT_THROW(load({backwardPath})(), FileFormatError);
    EXPECT_THROW(load({})(), ArgumentError);
    // Read as SBET, the raw file is not a whole number of 136-byte records.
    TrajectoryOptions asSbet;
    asSbet.format = TrajectoryFormat::sbet;
    EXPECT_THROW(load({stream}, asSbet)(), FileFormatError);
    // A missing file keeps the readers' error (after the reader's report on its size).
    Testing::AssertionRecorder recorder;
    EXPECT_THROW(load({folder.path() / "missing.sbet"})(), std::system_error);
}

} // namespace
} // namespace Kelvo::Geodesy
