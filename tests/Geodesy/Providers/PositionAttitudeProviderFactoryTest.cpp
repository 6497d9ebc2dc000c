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
using Testing::TemporaryDirectory;
using ::testing::ElementsAre;

enum class Kind { singleSbet, singleApxRaw, multipleSbet, multipleApxRaw };

Kind kindOf(PositionAttitudeProvider* provider)
{
    if (dynamic_cast<SbetPositionAttitudeProvider<Sbet::Reader>*>(provider)) {
        return Kind::singleSbet;
    }
    if (dynamic_cast<SbetPositionAttitudeProvider<ApxRaw::Reader>*>(provider)) {
        return Kind::singleApxRaw;
    }
    if (dynamic_cast<MultipleSbetPositionAttitudeProvider<Sbet::Reader>*>(provider)) {
        return Kind::multipleSbet;
    }
    EXPECT_NE(dynamic_cast<MultipleSbetPositionAttitudeProvider<ApxRaw::Reader>*>(provider), nullptr);
    return Kind::multipleApxRaw;
}

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

    TemporaryDirectory folder;
};

TEST_F(PositionAttitudeProviderFactoryTest, OnlyTheExactStreamExtensionMeansRawApx)
{
    const struct {
        const char* name;
        Kind kind;
    } cases[] = {
        {"a.stream", Kind::singleApxRaw}, {"a.out", Kind::singleSbet},    {"a.sbet", Kind::singleSbet},
        {"a", Kind::singleSbet},          {"a.Stream", Kind::singleSbet}, {"a.stream.sbet", Kind::singleSbet},
        {"a.sbet.stream", Kind::singleApxRaw},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const bool apxRaw = c.kind == Kind::singleApxRaw;
        const auto provider = create({write(c.name, apxRaw)});
        ASSERT_NE(provider, nullptr);
        EXPECT_EQ(kindOf(provider.get()), c.kind);

        // The file is read in its own format: the raw file's degrees come out in radians.
        Maths::IntervalCounter counter;
        const auto value = provider->getPositionAttitude(epochSecondsOf(1000.25), counter);
        ASSERT_NE(value, nullptr);
        const double latitude = apxRaw ? (45.0 + 1e-6 * 1000.25) * std::numbers::pi / 180.0 : 0.5 + 1e-8 * 1000.25;
        EXPECT_NEAR(value->position.latitude, latitude, 1e-12);
    }
}

TEST_F(PositionAttitudeProviderFactoryTest, SeveralFilesOfOneExtensionGiveOneProviderOverAll)
{
    const auto sbet = create({write("a.sbet", false, 1000.0), write("b.sbet", false, 2000.0)});
    EXPECT_EQ(kindOf(sbet.get()), Kind::multipleSbet);
    const auto apxRaw = create({write("a.stream", true, 1000.0), write("b.stream", true, 2000.0)});
    EXPECT_EQ(kindOf(apxRaw.get()), Kind::multipleApxRaw);

    // Both files answer: the second by day, the first again from its start.
    Maths::IntervalCounter counter;
    EXPECT_NE(apxRaw->getPositionAttitudeOfDay(2001.0 - 18.0, counter), nullptr);
    EXPECT_NE(apxRaw->getPositionAttitudeOfDay(1000.5 - 18.0, counter), nullptr);
    EXPECT_EQ(counter[Maths::Situation::inside], 2u);
}

TEST_F(PositionAttitudeProviderFactoryTest, MixedExtensionsAndNoFilesAreReported)
{
    AssertionRecorder recorder;
    const auto mixed = create({write("a.out", false, 1000.0), write("b.sbet", false, 2000.0)});
    EXPECT_THAT(recorder.messages(), ElementsAre(assertText("extensions.size() == 1")));
    EXPECT_EQ(kindOf(mixed.get()), Kind::multipleSbet) << "the first extension, \".out\", chooses";
    recorder.clear();

    EXPECT_EQ(create({}), nullptr);
    EXPECT_THAT(recorder.messages(), ElementsAre(assertText("!fileInfos.empty()")));
    EXPECT_EQ(recorder.records()[0].file, "src/Geodesy/src/Geodesy/PositionAttitudeProviderFactory.cpp");
}

TEST_F(PositionAttitudeProviderFactoryTest, PassesTheTransformOnAndLetsReaderErrorsThrough)
{
    const CRS::Transform lift(1, [](const Maths::PositionVector3& p, CRS::ConvertStep) {
        return Maths::PositionVector3(p.x, p.y, p.z + 10.0);
    });
    Maths::IntervalCounter counter;
    const auto multiple = create({write("a.sbet", false), write("b.sbet", false, 3000.0)}, &lift);
    EXPECT_NEAR(multiple->getPositionAttitude(epochSecondsOf(1000.0), counter)->position.height,
                100.0 + 1e-3 * 1000.0 + 10.0, 1e-9);

    EXPECT_THROW(create({folder.write("short.sbet", std::string(200, '\0'))}), std::runtime_error);
    AssertionRecorder recorder;
    EXPECT_THROW(create({folder.path() / "missing.stream"}), std::system_error);
}

} // namespace
} // namespace Kelvo::Geodesy
