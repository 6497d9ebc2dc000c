// SPDX-License-Identifier: MIT
#include "RecordFormats.h"
#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"
#include "support/TemporaryDirectory.h"

#include "Geodesy/Sbet/Writer.h"
#include "Geodesy/Smrmsg/Reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <limits>
#include <system_error>
#include <tuple>

namespace Kelvo::Geodesy::Trajectory {
namespace {

using Core::Logging::Level;
using namespace Testing;
using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr const char* baseSource = "src/Geodesy/src/Geodesy/Trajectory.cpp";

// A reader that reads nothing itself, to reach the protected tools of the base.
class BareReader : public Reader {
public:
    explicit BareReader(const Core::FileInfo& fileInfo)
        : Reader(fileInfo)
    {
    }
    std::uint64_t getCount() const override { return 0; }
    Record getNext() override { return {}; }
    using Reader::safeRead;
    using Reader::updateTimeInterval;
};

TEST(TrajectoryFiles, APathThatCannotBeOpenedThrowsTheSystemErrorOfThePath)
{
    const TemporaryDirectory folder;
    // The readers report "size >= 0" (a stream that did not open has no size); writers nothing.
    std::vector<std::pair<std::function<void(const std::filesystem::path&)>, const char*>> openers = {
        {[](const auto& path) { Smrmsg::Reader reader{Core::FileInfo(path)}; },
         "src/Geodesy/src/Geodesy/Smrmsg/Reader.cpp"},
        {[](const auto& path) { Sbet::Writer writer(path); }, nullptr},
    };
    for (const auto& format : recordFormats) {
        openers.emplace_back([&format](const auto& path) { format.open(Core::FileInfo(path)); }, baseSource);
    }
    const std::tuple<std::filesystem::path, int, std::string> cases[] = {
        {folder.path() / "missing" / "file", ENOENT, "No such file or directory: "},
        {folder.path(), EISDIR, "Is a directory: "},
    };
    for (const auto& [open, source] : openers) {
        for (const auto& [path, error, text] : cases) {
            SCOPED_TRACE(path.string() + " " + (source ? source : "writer"));
            AssertionRecorder assertions;
            try {
                open(path);
                ADD_FAILURE() << "no exception";
            } catch (const std::system_error& failure) {
                EXPECT_EQ(failure.code(), std::error_code(error, std::generic_category()));
                EXPECT_THAT(failure.what(), StartsWith(text + "\"" + path.string() + "\""));
            }
            EXPECT_EQ(assertions.messages(), std::vector<std::string>(source ? 1 : 0, assertText("size >= 0")));
            EXPECT_TRUE(!source || assertions.records().at(0).file == source);
        }
    }
}

TEST(TrajectoryReader, AnEmptyFileIsLoggedAndRefusedWithoutABlankBeforeIsEmpty)
{
    const TemporaryDirectory folder;
    const auto path = folder.write("empty.sbet", "");
    const std::string message = "Trajectory file \"" + path.string() + "\"is empty";
    for (const auto& format : recordFormats) {
        LogRecorder log;
        EXPECT_THAT(thrownText<std::system_error>([&] { format.open(Core::FileInfo(path)); }),
                    StartsWith(message));
        EXPECT_THAT(log.at(Level::error), ElementsAre(message)) << format.name;
    }
}

TEST(TrajectoryReader, TheReadThatHitsTheEndGivesNoDataAndTheNextCallThrows)
{
    const TemporaryDirectory folder;
    for (const auto& format : recordFormats) {
        SCOPED_TRACE(format.name);
        const auto reader = format.open(Core::FileInfo(folder.write("two", format.bytes(2))));
        EXPECT_EQ(reader->getCount(), 2u);
        EXPECT_EQ(reader->getTimeInterval(TimeReference::week), Maths::Interval<double>(10.0, 11.0));
        const auto hit = readPastTheEnd(*reader, {10.0, 11.0}, format.endOfFileMessage);
        EXPECT_EQ(bitsOf(valuesOf(hit)), bitsOf(valuesOf(Record::invalid())));
        EXPECT_EQ(hit.status, Record::INVALID);
    }
}

TEST(TrajectoryReader, AReaderRewoundAfterItsEndEndsAtTheNextRead)
{
    const TemporaryDirectory folder;
    for (const auto& format : recordFormats) {
        SCOPED_TRACE(format.name);
        const auto reader = format.open(Core::FileInfo(folder.write("two", format.bytes(2))));
        EXPECT_EQ(readUntilEnd(*reader).size(), 2u);
        // The seek clears the end-of-file flag but not the failure of the read that hit the
        // end, so the file is not read again: the next read delivers nothing and sets the
        // flag, instead of handing out records of NaNs (SBET ones VALID) forever.
        reader->returnToBegin();
        EXPECT_FALSE(reader->endOfFile());
        AssertionRecorder assertions; // raw APX: "ifs.good()" on entry of the read
        const auto hit = readPastTheEnd(*reader, {}, format.endOfFileMessage);
        EXPECT_EQ(hit.status, Record::INVALID);
    }
}

TEST(TrajectoryReader, TheIntervalTakesEveryTimeAndGivesSecondsOfDayWithoutLeapSeconds)
{
    const TemporaryDirectory folder;
    BareReader reader(Core::FileInfo(folder.write("times.bin", std::string(16, '\0'))));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(infinity, -infinity));
    // The first time sets both ends; a time inside changes neither.
    for (const double time : {86410.0, 86390.0, 86400.0}) {
        reader.updateTimeInterval(time);
    }
    EXPECT_EQ(reader.getTimeInterval(TimeReference::week), Maths::Interval<double>(86390.0, 86410.0));
    EXPECT_EQ(reader.getTimeInterval(TimeReference::day), Maths::Interval<double>(86390.0, 10.0));

    AssertionRecorder assertions;
    EXPECT_FALSE(reader.getTimeInterval(static_cast<TimeReference>(7)).isValid());
    EXPECT_THAT(assertions.messages(),
                ElementsAre(assertText("tref == TimeReference::week || tref == TimeReference::day"),
                            neverText("Unexpected TimeReference!")));
}

TEST(TrajectoryReader, SafeReadReturnsTheBytesReadAndLogsAShortRead)
{
    const TemporaryDirectory folder;
    BareReader reader(Core::FileInfo(folder.write("times.bin", std::string(12, '\1'))));
    char bytes[8];
    LogRecorder log;
    EXPECT_EQ(reader.safeRead(bytes, 8), 8);
    EXPECT_FALSE(reader.endOfFile());
    EXPECT_EQ(reader.safeRead(bytes, 8), 4);
    EXPECT_TRUE(reader.endOfFile());
    EXPECT_THAT(log.entries(), ElementsAre(LogRecorder::Entry{Level::verbose, "Failed to read input-stream."}));

    AssertionRecorder assertions;
    EXPECT_EQ(reader.safeRead(nullptr, 0), 0);
    EXPECT_THAT(assertions.messages(),
                ElementsAre(assertText("buffer"), assertText("size > 0"), assertText("inStream->good()")));
    EXPECT_EQ(assertions.records().at(0).file, baseSource);
}

} // namespace
} // namespace Kelvo::Geodesy::Trajectory
