// SPDX-License-Identifier: MIT
#include "ProviderTestSupport.h"

#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/MultipleSbetPositionAttitudeProvider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using namespace ProviderTesting;
using Maths::Situation;
using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::EventRecorder;
using Testing::LoopbackServer;
using ::testing::ElementsAre;

using Provider = MultipleSbetPositionAttitudeProvider<Sbet::Reader>;

// Files of records every half second, told apart by their heights: file "a" lies 1000 m
// above the synthetic trajectory, "b" 2000 m, and so on.
class MultipleSbetProvider : public ::testing::Test {
protected:
    const std::vector<Trajectory::Record>* add(const std::string& name, double start, double end)
    {
        auto records = Testing::syntheticTrajectory(start, 0.5, static_cast<std::size_t>((end - start) / 0.5) + 1);
        for (auto& record : records) {
            record.height += 1000.0 * (name[0] - 'a' + 1);
        }
        files.insert(Core::FileInfo(folder.write(name + ".sbet", Testing::sbetBytes(records))));
        return &(contents[name] = records);
    }

    std::unique_ptr<Provider> open()
    {
        return std::make_unique<Provider>(files.begin(), files.end(), nullptr, anyAlignment);
    }

    Testing::TemporaryDirectory folder;
    std::set<Core::FileInfo> files;
    std::map<std::string, std::vector<Trajectory::Record>> contents;
};

// Three files: a gap between a and b, c overlapping the end of b.
class ThreeFiles : public MultipleSbetProvider {
protected:
    const std::vector<Trajectory::Record>* a = add("a", 100.0, 180.0);
    const std::vector<Trajectory::Record>* b = add("b", 200.0, 300.0);
    const std::vector<Trajectory::Record>* c = add("c", 250.0, 350.0);
    std::unique_ptr<Provider> provider = open();
};

TEST_F(ThreeFiles, TheDayLookupTakesTheFileThatStartsLastBeforeTheTime)
{
    expectSteps(byDay(*provider), {
                                      {150.0, a, Situation::inside},
                                      {190.0, nullptr, Situation::upper}, // in the gap: the earlier file, above its end
                                      {250.0, c, Situation::inside},      // a start equal to the time is taken
                                      {260.0, c, Situation::inside},
                                      {220.0, b, Situation::inside},
                                      {270.0, b, Situation::inside},     // b still answers where c overlaps it
                                      {50.0, nullptr, Situation::lower}, // before every file: b stays current
                                      {340.0, c, Situation::inside},
                                  });
    // c stands on its record at 339.5 s, the one before the record at the request.
    EXPECT_EQ(provider->getCurrent()->position.height, (*c)[179].height);
}

TEST_F(ThreeFiles, TheWeekLookupMovesToTheLastFileWheneverTheCurrentOneMisses)
{
    expectSteps(byEpoch(*provider), {
                                        {150.0, a, Situation::inside},
                                        {220.0, nullptr, Situation::lower}, // b holds it, but c is taken
                                        {340.0, c, Situation::inside},
                                        {150.0, nullptr, Situation::lower}, // a is never taken again
                                        {260.0, c, Situation::inside, 1},   // behind c's bracket: a rewind
                                    });
}

TEST_F(MultipleSbetProvider, OfFilesStartingTogetherTheLastInSetOrderIsKeptAndTheOthersAreLogged)
{
    add("a", 2000.0, 2010.0);
    add("b", 2000.0, 2005.0);
    // A live source, named after both in set order; its stream ends at 2002 s.
    const auto live = Testing::syntheticTrajectory(2000.0, 0.5, 5);
    const auto bytes = Testing::sbetBytes(live);
    LoopbackServer server([&](int socket) { LoopbackServer::send(socket, bytes); });
    const auto remotePath = folder.path() / "z.sbet";
    files.insert(Core::FileInfo::remote(remotePath, "127.0.0.1", server.port(), 5000));

    EventRecorder events;
    const auto provider = open();
    const auto sameStart = [](const std::string& file) {
        return EventRecorder::Entry{{1, 24, 17},
                                    "SBET file '" + file + " starts exactly at the same time as another SBET file."};
    };
    EXPECT_THAT(events.entries(),
                ElementsAre(sameStart((folder.path() / "b.sbet").string()),
                            sameStart(remotePath.string() + "@127.0.0.1:" + std::to_string(server.port())
                                      + "&timeout=5000")));
    expectSteps(byDay(*provider), {{2001.25, &live, Situation::inside}, {2008.0, nullptr, Situation::upper}});
}

TEST_F(MultipleSbetProvider, NoFileIsReportedAndAnsweredByNothing)
{
    AssertionRecorder recorder;
    const auto provider = open();
    EXPECT_THAT(recorder.messages(), ElementsAre(assertText("firstFile != lastFile")));
    recorder.clear();

    Maths::IntervalCounter counter;
    EXPECT_EQ(provider->getPositionAttitude(epochSecondsOf(100.0), counter), nullptr);
    EXPECT_EQ(provider->getCurrent(), nullptr);
    EXPECT_EQ(counter, Maths::IntervalCounter());
    const std::string noCurrent = assertText("current != std::end( readers )");
    EXPECT_THAT(recorder.messages(), ElementsAre(assertText("!readers.empty()"), noCurrent, noCurrent, noCurrent));
    for (const auto& record : recorder.records()) {
        EXPECT_EQ(record.file, "src/Geodesy/include/Geodesy/MultipleSbetPositionAttitudeProvider.h");
    }
}

TEST_F(MultipleSbetProvider, AFileThatCannotBeOpenedFailsTheConstruction)
{
    add("a", 100.0, 180.0);
    files.insert(Core::FileInfo(folder.path() / "b-missing.sbet"));
    AssertionRecorder recorder;
    EXPECT_THROW(open(), std::system_error);
}

} // namespace
} // namespace Kelvo::Geodesy
