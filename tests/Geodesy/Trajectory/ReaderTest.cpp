// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"
#include "support/TemporaryDirectory.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/Sbet/Reader.h"
#include "Geodesy/Trajectory/Reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <system_error>

namespace Kelvo::Geodesy::Trajectory {
namespace {

using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::LogRecorder;
using Testing::neverText;
using Testing::TemporaryDirectory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr auto anyAlignment = Reader::ImuAlignmentStatus::NO_SOLUTION;
constexpr const char* baseSource = "src/Geodesy/src/Geodesy/Trajectory.cpp";

// A reader of 8-byte records holding a time, to reach the protected tools of the base.
class TimeReader : public Reader {
public:
    explicit TimeReader(const Core::FileInfo& fileInfo)
        : Reader(fileInfo)
    {
    }
    std::uint64_t getCount() const override { return static_cast<std::uint64_t>(std::streamoff(size)) / 8u; }
    Record getNext() override
    {
        Record record{};
        safeRead(reinterpret_cast<char*>(&record.time), sizeof(record.time));
        return record;
    }
    using Reader::safeRead;
    using Reader::updateTimeInterval;
};

using MakeReader = std::function<std::unique_ptr<Reader>(const Core::FileInfo&)>;

const std::pair<const char*, MakeReader> readerKinds[] = {
    {"SBET", [](const Core::FileInfo& file) { return std::make_unique<Sbet::Reader>(file, anyAlignment); }},
    {"raw APX", [](const Core::FileInfo& file) { return std::make_unique<ApxRaw::Reader>(file, anyAlignment); }},
};

std::string quoted(const std::filesystem::path& path)
{
    std::ostringstream text;
    text << path;
    return text.str();
}

TEST(TrajectoryReader, AFileThatCannotBeOpenedThrowsTheSystemErrorOfItsPath)
{
    const TemporaryDirectory folder;
    struct Case {
        std::filesystem::path path;
        int error;
        const char* text;
    };
    const Case cases[] = {
        {folder.path() / "missing.sbet", ENOENT, "No such file or directory: "},
        {folder.path(), EISDIR, "Is a directory: "},
    };
    for (const auto& [kind, makeReader] : readerKinds) {
        for (const auto& c : cases) {
            SCOPED_TRACE(std::string(kind) + " " + c.path.string());
            AssertionRecorder assertions;
            try {
                makeReader(Core::FileInfo(c.path));
                ADD_FAILURE() << "no exception";
            } catch (const std::system_error& error) {
                EXPECT_EQ(error.code(), std::error_code(c.error, std::generic_category()));
                EXPECT_THAT(error.what(), StartsWith(c.text + quoted(c.path)));
            }
            // A stream that did not open has no size either.
            ASSERT_THAT(assertions.messages(), ElementsAre(assertText("size >= 0")));
            EXPECT_EQ(assertions.records()[0].file, baseSource);
        }
    }
}

TEST(TrajectoryReader, AnEmptyFileIsLoggedAndRefusedWithoutABlankBeforeIsEmpty)
{
    const TemporaryDirectory folder;
    const auto path = folder.write("empty.sbet", "");
    const std::string message = "Trajectory file " + quoted(path) + "is empty";
    for (const auto& [kind, makeReader] : readerKinds) {
        SCOPED_TRACE(kind);
        LogRecorder log;
        try {
            makeReader(Core::FileInfo(path));
            ADD_FAILURE() << "no exception";
        } catch (const std::system_error& error) {
            EXPECT_THAT(error.what(), StartsWith(message));
        }
        EXPECT_THAT(log.at(Core::Logging::Level::error), ElementsAre(message));
    }
}

TEST(TrajectoryReader, TheIntervalTakesEveryTimeAndConvertsToSecondsOfDayWithoutLeapSeconds)
{
    const TemporaryDirectory folder;
    TimeReader reader(Core::FileInfo(folder.write("times.bin", std::string(16, '\0'))));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(infinity, -infinity));

    for (const double time : {5.0, 3.0, 9.0}) {
        reader.updateTimeInterval(time);
    }
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(3.0, 9.0));

    // A time before the interval, then across midnight: the day form wraps.
    TimeReader crossing(Core::FileInfo(folder.write("crossing.bin", std::string(16, '\0'))));
    crossing.updateTimeInterval(86390.0);
    crossing.updateTimeInterval(86410.0);
    EXPECT_EQ(crossing.getTimeInterval(TimeReference::week), Maths::Interval<double>(86390.0, 86410.0));
    EXPECT_EQ(crossing.getTimeInterval(TimeReference::day), Maths::Interval<double>(86390.0, 10.0));
}

TEST(TrajectoryReader, AnUnknownTimeReferenceIsReportedTwiceAndGivesTheEmptyInterval)
{
    const TemporaryDirectory folder;
    TimeReader reader(Core::FileInfo(folder.write("times.bin", std::string(16, '\0'))));
    reader.updateTimeInterval(1.0);
    AssertionRecorder assertions;
    const auto interval = reader.getTimeInterval(static_cast<TimeReference>(7));
    EXPECT_THAT(assertions.messages(),
                ElementsAre(assertText("tref == TimeReference::week || tref == TimeReference::day"),
                            neverText("Unexpected TimeReference!")));
    EXPECT_FALSE(interval.isValid());
}

TEST(TrajectoryReader, SafeReadReturnsTheBytesReadAndLogsAShortRead)
{
    const TemporaryDirectory folder;
    TimeReader reader(Core::FileInfo(folder.write("times.bin", std::string(12, '\1'))));
    EXPECT_EQ(reader.getCount(), 1u);
    char bytes[8];
    LogRecorder log;
    EXPECT_EQ(reader.safeRead(bytes, 8), 8);
    EXPECT_FALSE(reader.endOfFile());
    EXPECT_THAT(log.entries(), IsEmpty());

    EXPECT_EQ(reader.safeRead(bytes, 8), 4);
    EXPECT_TRUE(reader.endOfFile());
    EXPECT_THAT(log.at(Core::Logging::Level::verbose), ElementsAre("Failed to read input-stream."));

    AssertionRecorder assertions;
    EXPECT_EQ(reader.safeRead(nullptr, 0), 0);
    EXPECT_THAT(assertions.messages(),
                ElementsAre(assertText("buffer"), assertText("size > 0"), assertText("inStream->good()")));
}

} // namespace
} // namespace Kelvo::Geodesy::Trajectory
