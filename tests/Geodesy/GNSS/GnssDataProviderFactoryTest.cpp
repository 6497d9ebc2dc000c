// SPDX-License-Identifier: MIT
#include "Geodesy/GNSS/GnssDataProviderFactory.h"
#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"
#include "GnssTestSupport.h"
#include "support/LogRecorder.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Kelvo::Geodesy::GNSS {
namespace {

using namespace Testing;
using ::testing::ElementsAre;

constexpr const char* factorySource = "src/Geodesy/src/Geodesy/GnssDataProviderFactory.cpp";
const std::string track = posHeader + dataLine(10.0) + dataLine(11.0, 0.5) + dataLine(12.0, 2.0) + dataLine(13.0, 2.0)
                          + dataLine(14.0, 0.5) + dataLine(15.0);

TEST(GnssDataProviderFactory, MakesAnRtkLibProviderForExactlyOneFile)
{
    TemporaryDirectory folder;
    const auto path = folder.write("track.pos", track);
    AssertionRecorder recorder;
    LogRecorder log;
    // The threshold reaches the reader: 1 m/s makes 12 to 13 the used interval, 0.5 m/s 11 to 14.
    const auto strict = GnssDataProviderFactory().create({path}, 1.0);
    ASSERT_NE(dynamic_cast<RtkLibGnssDataProvider*>(strict.get()), nullptr);
    EXPECT_EQ(strict->getGnssData(11.5), nullptr);
    EXPECT_NE(GnssDataProviderFactory().create({path}, 0.5)->getGnssData(11.5), nullptr);
    EXPECT_EQ(GnssDataProviderFactory().create({}, 1.0), nullptr);
    // Two files are reported, then the first of the set is served.
    EXPECT_NE(GnssDataProviderFactory().create({path, folder.write("b.pos", track)}, 1.0), nullptr);
    EXPECT_EQ(recorder.messages(), assertTexts({"fileInfos.size() == NUMBER_OF_FILE", "fileInfos.size() == NUMBER_OF_FILE"}));
    EXPECT_EQ(recorder.records().front().file, factorySource);
}

TEST(GnssDataProviderFactory, AcceptsOnlyAPosLastExtension)
{
    const std::pair<const char*, bool> cases[] = {
        {"track.pos", true},  {"track.txt.pos", true}, {"track.pos.txt", false}, {"track.POS", false},
        {"track.Pos", false}, {"track.txt", false},    {"track", false},         {"track.pos.", false},
        {"track.pos:log", true}, {"dir.pos\\track", false}, // alternate-stream suffix; backslash separator
    };
    TemporaryDirectory folder;
    for (const auto& [name, accepted] : cases) {
        const auto path = folder.write(name, track);
        AssertionRecorder recorder;
        LogRecorder log;
        EXPECT_EQ(GnssDataProviderFactory().create({path}, 1.0) != nullptr, accepted) << name;
        if (!accepted) {
            EXPECT_THAT(recorder.messages(), ElementsAre(neverText("Gnss file not supported"))) << name;
            EXPECT_EQ(recorder.records().front().file, factorySource);
        }
    }
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
