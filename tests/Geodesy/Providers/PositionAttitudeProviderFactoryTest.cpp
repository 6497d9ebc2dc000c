// SPDX-License-Identifier: MIT
#include "ProviderTestSupport.h"

#include "support/AssertionRecorder.h"
#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/MultipleSbetPositionAttitudeProvider.h"
#include "Geodesy/PositionAttitudeProviderFactory.h"
#include "Geodesy/SbetPositionAttitudeProvider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using namespace ProviderTesting;
using Testing::AssertionRecorder;
using Testing::assertText;
using ::testing::ElementsAre;

using IsKind = bool (*)(const PositionAttitudeProvider*);
template <typename Provider>
bool is(const PositionAttitudeProvider* provider)
{
    return dynamic_cast<const Provider*>(provider) != nullptr;
}
constexpr IsKind singleSbet = is<SbetPositionAttitudeProvider<Sbet::Reader>>;
constexpr IsKind singleApxRaw = is<SbetPositionAttitudeProvider<ApxRaw::Reader>>;
constexpr IsKind multipleSbet = is<MultipleSbetPositionAttitudeProvider<Sbet::Reader>>;
constexpr IsKind multipleApxRaw = is<MultipleSbetPositionAttitudeProvider<ApxRaw::Reader>>;

class PositionAttitudeProviderFactoryTest : public ::testing::Test {
protected:
    // An SBET file of records every half second from GPS 1000 s of week, or the raw APX file
    // of the same times, named `name`.
    Core::FileInfo write(const std::string& name, bool apxRaw, double start = 1000.0)
    {
        if (apxRaw) {
            std::vector<ApxRaw::RawRecord> raws;
            for (int i = 0; i < 5; ++i) {
                raws.push_back(Testing::syntheticRawRecord(static_cast<std::uint32_t>(start * 1000.0) + 500u * i));
            }
            return folder.write(name, Testing::apxRawBytes(raws));
        }
        return folder.write(name, Testing::sbetBytes(Testing::syntheticTrajectory(start, 0.5, 5)));
    }

    std::unique_ptr<PositionAttitudeProvider> create(const std::set<Core::FileInfo>& files,
                                                     const CRS::Transform* transform = nullptr)
    {
        return PositionAttitudeProviderFactory().create(files, transform, anyAlignment);
    }

    Testing::TemporaryDirectory folder;
};

TEST_F(PositionAttitudeProviderFactoryTest, OnlyTheExactStreamExtensionMeansRawApx)
{
    const std::pair<const char*, IsKind> cases[] = {
        {"a.stream", singleApxRaw}, {"a.out", singleSbet},    {"a.sbet", singleSbet},
        {"a", singleSbet},          {"a.Stream", singleSbet}, {"a.stream.sbet", singleSbet},
        {"a.sbet.stream", singleApxRaw},
    };
    for (const auto& [name, kind] : cases) {
        SCOPED_TRACE(name);
        const bool apxRaw = kind == singleApxRaw;
        const auto provider = create({write(name, apxRaw)});
        EXPECT_TRUE(kind(provider.get()));

        // The file is read in its own format: the raw file's degrees come out in radians.
        Maths::IntervalCounter counter;
        const auto value = provider->getPositionAttitude(epochSecondsOf(1000.25), counter);
        ASSERT_NE(value, nullptr);
        const double latitude = apxRaw ? (45.0 + 1e-6 * 1000.25) * std::numbers::pi / 180.0 : 0.5 + 1e-8 * 1000.25;
        EXPECT_NEAR(value->position.latitude, latitude, 1e-12);
    }
}

TEST_F(PositionAttitudeProviderFactoryTest, SeveralFilesGiveOneProviderOverAllAndMixedExtensionsAreReported)
{
    const struct { std::set<Core::FileInfo> files; IsKind kind; std::vector<std::string> reports; } cases[] = {
        {{write("a.sbet", false), write("b.sbet", false, 2000.0)}, multipleSbet, {}},
        {{write("a.stream", true), write("b.stream", true, 2000.0)}, multipleApxRaw, {}},
        // The first extension in set order, ".out", chooses.
        {{write("a.out", false), write("b.sbet", false, 2000.0)}, multipleSbet, {assertText("extensions.size() == 1")}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.files.begin()->toString());
        AssertionRecorder recorder;
        const auto provider = create(c.files);
        EXPECT_EQ(recorder.messages(), c.reports);
        EXPECT_TRUE(c.kind(provider.get()));

        // Both files answer: the second by day, the first again from its start.
        Maths::IntervalCounter counter;
        EXPECT_NE(provider->getPositionAttitudeOfDay(2001.0 - 18.0, counter), nullptr);
        EXPECT_NE(provider->getPositionAttitudeOfDay(1000.5 - 18.0, counter), nullptr);
        EXPECT_EQ(counter[Maths::Situation::inside], 2u);
    }
    AssertionRecorder recorder;
    EXPECT_EQ(create({}), nullptr);
    ASSERT_THAT(recorder.messages(), ElementsAre(assertText("!fileInfos.empty()")));
    EXPECT_EQ(recorder.records()[0].file, "src/Geodesy/src/Geodesy/PositionAttitudeProviderFactory.cpp");
}

TEST_F(PositionAttitudeProviderFactoryTest, PassesACopyOfTheTransformOnAndLetsReaderErrorsThrough)
{
    for (const auto& files : {std::set<Core::FileInfo>{write("a.sbet", false)},
                              std::set<Core::FileInfo>{write("b.sbet", false), write("c.sbet", false, 3000.0)}}) {
        std::unique_ptr<PositionAttitudeProvider> provider;
        {
            const CRS::Transform lift(1, [](const Maths::PositionVector3& p, CRS::ConvertStep) {
                return Maths::PositionVector3(p.x, p.y, p.z + 10.0);
            });
            provider = create(files, &lift);
        }
        Maths::IntervalCounter counter;
        EXPECT_NEAR(provider->getPositionAttitude(epochSecondsOf(1000.0), counter)->position.height,
                    100.0 + 1e-3 * 1000.0 + 10.0, 1e-9);
    }
    EXPECT_THROW(create({folder.write("short.sbet", std::string(200, '\0'))}), std::runtime_error);
    AssertionRecorder recorder;
    EXPECT_THROW(create({folder.path() / "missing.stream"}), std::system_error);
}

} // namespace
} // namespace Kelvo::Geodesy
