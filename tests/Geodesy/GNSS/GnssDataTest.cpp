// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include "Geodesy/GNSS/GnssData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::GNSS {
namespace {

using Testing::AssertionRecorder;
using Testing::assertText;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

// Every field different, so that a field read from the wrong place shows.
GnssData record(double seconds, double base, std::uint64_t week = 2244)
{
    GnssData data;
    data.gpsTime = GPSTime(seconds, week);
    data.position = LatLonHeight(Maths::Radian(base + 0.1), Maths::Radian(base + 0.2), base + 0.3);
    data.velocity = Maths::PositionVector3(base + 1.0, base + 2.0, base + 3.0);
    data.positionCovariance = {base + 11, base + 12, base + 13, base + 14, base + 15, base + 16};
    data.velocityCovariance = {base + 21, base + 22, base + 23, base + 24, base + 25, base + 26};
    return data;
}

std::vector<double> values(const GnssData& data)
{
    const auto& p = data.positionCovariance;
    const auto& v = data.velocityCovariance;
    return {data.position.latitude, data.position.longitude, data.position.height,
            data.velocity.x,        data.velocity.y,         data.velocity.z,
            p.xx, p.xy, p.xz, p.yy, p.yz, p.zz, v.xx, v.xy, v.xz, v.yy, v.yz, v.zz};
}

TEST(GnssData, DefaultsHoldNoTimeAndTheUnitCovariance)
{
    const GnssData data;
    EXPECT_TRUE(std::isnan(data.gpsTime.secondsInWeek));
    EXPECT_FALSE(std::signbit(data.gpsTime.secondsInWeek));
    EXPECT_EQ(data.gpsTime.auxiliarySeconds, 0.0);
    EXPECT_EQ(data.gpsTime.weekNumber, 0u);
    EXPECT_THAT(values(data), ElementsAreArray({0.0, 0.0, 0.0, 0.0, 0.0, 0.0,   //
                                                0.01, 0.0, 0.0, 0.01, 0.0, 0.01, //
                                                0.01, 0.0, 0.0, 0.01, 0.0, 0.01}));
}

TEST(GnssData, InterpolatesEveryFieldLinearlyAndTakesTheFirstWeek)
{
    const GnssData first = record(100.0, 0.0);
    const GnssData second = record(104.0, 40.0);
    struct Case {
        double seconds;
        double fraction;
    };
    for (const auto [seconds, fraction] : {Case{100.0, 0.0}, Case{101.0, 0.25}, Case{103.0, 0.75}, Case{104.0, 1.0}}) {
        AssertionRecorder recorder;
        const GnssData result = GnssData::interpolate(seconds, first, second);
        EXPECT_EQ(result.gpsTime.secondsInWeek, seconds);
        EXPECT_EQ(result.gpsTime.weekNumber, 2244u);
        EXPECT_EQ(result.gpsTime.auxiliarySeconds, 0.0);
        const auto a = values(first);
        const auto b = values(second);
        const auto got = values(result);
        for (std::size_t i = 0; i < got.size(); ++i) {
            EXPECT_NEAR(got[i], a[i] + (b[i] - a[i]) * fraction, 1e-12) << "value " << i << " at " << seconds;
        }
        EXPECT_THAT(recorder.messages(), IsEmpty());
    }
    // At the first record's time the result is that record exactly.
    EXPECT_EQ(values(GnssData::interpolate(100.0, first, second)), values(first));
}

TEST(GnssData, EqualTimesTakeTheFirstRecordWithoutDividing)
{
    AssertionRecorder recorder;
    const GnssData result = GnssData::interpolate(50.0, record(50.0, 1.0, 7), record(50.0, 9.0, 7));
    EXPECT_EQ(values(result), values(record(50.0, 1.0)));
    EXPECT_EQ(result.gpsTime.secondsInWeek, 50.0);
    EXPECT_EQ(result.gpsTime.weekNumber, 7u);
    EXPECT_THAT(recorder.messages(), IsEmpty());
}

TEST(GnssData, UnfilledRecordsKeepTheirDefaultCovarianceExactly)
{
    GnssData first;
    GnssData second;
    first.gpsTime = GPSTime(10.0, 0u);
    second.gpsTime = GPSTime(13.0, 0u);
    const GnssData result = GnssData::interpolate(11.0, first, second);
    EXPECT_EQ(result.positionCovariance, CovarianceElements{});
    EXPECT_EQ(result.velocityCovariance, CovarianceElements{});
}

TEST(GnssData, BrokenPreconditionsAreEachReportedAndTheResultStillComputed)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        const char* name;
        GnssData first;
        GnssData second;
        double seconds;
        std::vector<std::string> expressions;
    };
    const Case cases[] = {
        {"different weeks", record(10.0, 0.0, 5), record(20.0, 0.0, 6), 15.0,
         {"data1.gpsTime.weekNumber == data2.gpsTime.weekNumber"}},
        {"records swapped", record(20.0, 0.0), record(10.0, 0.0), 15.0,
         {"time1 <= time2", "gpsTime >= time1", "gpsTime <= time2"}},
        {"before the first", record(10.0, 0.0), record(20.0, 0.0), 5.0, {"gpsTime >= time1", "k >= 0.0"}},
        {"after the second", record(10.0, 0.0), record(20.0, 0.0), 25.0, {"gpsTime <= time2", "k <= 1.0"}},
        {"first without time", GnssData{}, record(20.0, 0.0, 0), 15.0,
         {"time1 <= time2", "gpsTime >= time1", "k >= 0.0", "k <= 1.0"}},
        {"time is nan", record(10.0, 0.0), record(20.0, 0.0), nan,
         {"gpsTime >= time1", "gpsTime <= time2", "k >= 0.0", "k <= 1.0"}},
    };
    for (const auto& c : cases) {
        AssertionRecorder recorder;
        const GnssData result = GnssData::interpolate(c.seconds, c.first, c.second);
        std::vector<std::string> expected;
        for (const auto& expression : c.expressions) {
            expected.push_back(assertText(expression));
        }
        EXPECT_THAT(recorder.messages(), ElementsAreArray(expected)) << c.name;
        for (const auto& report : recorder.records()) {
            EXPECT_EQ(report.file, "src/Geodesy/include/Geodesy/GNSS/GnssData.h") << c.name;
        }
        EXPECT_EQ(result.gpsTime.weekNumber, c.first.gpsTime.weekNumber) << c.name;
    }
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
