// SPDX-License-Identifier: MIT
#include "Geodesy/GNSS/GnssDataProviderFactory.h"
#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"
#include "PosFileLines.h"
#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace Kelvo::Geodesy::GNSS {
namespace {

using Testing::AssertionRecorder;
using Testing::assertText;
using Testing::dataLine;
using Testing::LogRecorder;
using Testing::neverText;
using Testing::posHeader;
using Testing::TemporaryDirectory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* factorySource = "src/Geodesy/src/Geodesy/GnssDataProviderFactory.cpp";
const std::string track = posHeader + dataLine(10.0) + dataLine(11.0, 0.5) + dataLine(12.0, 2.0) + dataLine(13.0, 2.0)
                          + dataLine(14.0, 0.5) + dataLine(15.0);

TEST(GnssDataProviderFactory, MakesAnRtkLibProviderForOnePosFile)
{
    TemporaryDirectory folder;
    const auto path = folder.write("track.pos", track);
    LogRecorder log;
    GnssDataProviderFactory factory;
    // The threshold reaches the reader: 1 m/s makes 12 to 13 the used interval, 0.5 m/s 11 to 14.
    const auto strict = factory.create({path}, 1.0);
    const auto loose = factory.create({path}, 0.5);
    ASSERT_NE(dynamic_cast<RtkLibGnssDataProvider*>(strict.get()), nullptr);
    ASSERT_NE(dynamic_cast<RtkLibGnssDataProvider*>(loose.get()), nullptr);
    EXPECT_EQ(strict->getGnssData(11.5), nullptr);
    EXPECT_NE(strict->getGnssData(12.5), nullptr);
    EXPECT_NE(loose->getGnssData(11.5), nullptr);
}

TEST(GnssDataProviderFactory, AcceptsOnlyAPosLastExtension)
{
    struct Case {
        const char* name;
        bool accepted;
    };
    const Case cases[] = {
        {"track.pos", true},     {"track.txt.pos", true},  {"track.pos.txt", false}, {"track.POS", false},
        {"track.Pos", false},    {"track.txt", false},     {"track", false},         {"track.pos.", false},
        {"track.pos:log", true}, // the name ends before an alternate-stream suffix
        {"dir.pos\\track", false}, // a backslash separates folders too
    };
    TemporaryDirectory folder;
    for (const auto& [name, accepted] : cases) {
        const auto path = folder.write(name, track);
        AssertionRecorder recorder;
        LogRecorder log;
        const auto provider = GnssDataProviderFactory().create({path}, 1.0);
        EXPECT_EQ(provider != nullptr, accepted) << name;
        if (accepted) {
            EXPECT_THAT(recorder.messages(), IsEmpty()) << name;
        } else {
            EXPECT_THAT(recorder.messages(), ElementsAre(neverText("Gnss file not supported"))) << name;
            EXPECT_EQ(recorder.records().front().file, factorySource);
        }
    }
}

TEST(GnssDataProviderFactory, WantsExactlyOneFile)
{
    TemporaryDirectory folder;
    const auto first = folder.write("a.pos", track);
    const auto second = folder.write("b.pos", track);
    {
        AssertionRecorder recorder;
        EXPECT_EQ(GnssDataProviderFactory().create({}, 1.0), nullptr);
        EXPECT_THAT(recorder.messages(), ElementsAre(assertText("fileInfos.size() == NUMBER_OF_FILE")));
        EXPECT_EQ(recorder.records().front().file, factorySource);
    }
    {
        // Reported, then served from the first file of the set.
        AssertionRecorder recorder;
        LogRecorder log;
        const auto provider = GnssDataProviderFactory().create({first, second}, 1.0);
        EXPECT_THAT(recorder.messages(), ElementsAre(assertText("fileInfos.size() == NUMBER_OF_FILE")));
        EXPECT_NE(provider, nullptr);
    }
    EXPECT_EQ(GnssDataProviderFactory::NUMBER_OF_FILE, 1u);
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
