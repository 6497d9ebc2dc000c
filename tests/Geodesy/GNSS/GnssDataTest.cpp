// SPDX-License-Identifier: MIT
#include "Geodesy/GNSS/GnssData.h"
#include "GnssTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace Kelvo::Geodesy::GNSS {
namespace {

using namespace Testing;

// Every field different, so that a field taken from the wrong place shows.
GnssData record(double seconds, double base, std::uint64_t week = 2244)
{
    GnssData data;
    data.gpsTime = GPSTime(seconds, week);
    data.position = LatLonHeight(Maths::Radian(base + 0.1), Maths::Radian(base + 0.2), base + 0.3);
    data.velocity = Maths::PositionVector3(base + 1, base + 2, base + 3);
    data.positionCovariance = {base + 11, base + 12, base + 13, base + 14, base + 15, base + 16};
    data.velocityCovariance = {base + 21, base + 22, base + 23, base + 24, base + 25, base + 26};
    return data;
}

TEST(GnssData, DefaultsAndTheLinearInterpolationOfEveryField)
{
    GnssData unset;
    EXPECT_TRUE(std::isnan(unset.gpsTime.secondsInWeek));
    unset.gpsTime = GPSTime(10.0, 0u);
    EXPECT_EQ(valuesOf(unset), (std::vector<double>{10, 0, 0, 0, 0, 0, 0, 0, 0.01, 0, 0, 0.01, 0, 0.01, 0.01, 0, 0,
                                                    0.01, 0, 0.01}));

    const auto first = valuesOf(record(100.0, 0.0));
    for (const double fraction : {0.0, 0.25, 0.75, 1.0}) {
        const double seconds = 100.0 + 4.0 * fraction;
        const auto result = valuesOf(GnssData::interpolate(seconds, record(100.0, 0.0), record(104.0, 40.0)));
        EXPECT_EQ(result[0], seconds);
        EXPECT_EQ(result[1], 2244);
        for (std::size_t i = 2; i < result.size(); ++i) {
            EXPECT_NEAR(result[i], first[i] + 40.0 * fraction, 1e-12) << "value " << i << " at " << seconds;
        }
    }
    // Equal values stay exact (the covariance's 0.01 too); equal times take the first record,
    // with no division and no report.
    EXPECT_EQ(valuesOf(GnssData::interpolate(101, record(100, 0.3), record(104, 0.3))), valuesOf(record(101, 0.3)));
    EXPECT_EQ(valuesOf(GnssData::interpolate(50, record(50, 1.0), record(50, 9.0))), valuesOf(record(50, 1.0)));
}

TEST(GnssData, ReportsEachBrokenPreconditionAndStillAnswers)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        GnssData first, second;
        double seconds;
        std::vector<std::string> reports;
    };
    const Case cases[] = {
        {record(10, 0, 5), record(20, 0, 6), 15, assertTexts({"data1.gpsTime.weekNumber == data2.gpsTime.weekNumber"})},
        {record(20, 0), record(10, 0), 15, assertTexts({"time1 <= time2", "gpsTime >= time1", "gpsTime <= time2"})},
        {record(10, 0), record(20, 0), 5, assertTexts({"gpsTime >= time1", "k >= 0.0"})},
        {record(10, 0), record(20, 0), 25, assertTexts({"gpsTime <= time2", "k <= 1.0"})},
        {GnssData{}, record(20, 0, 0), 15, assertTexts({"time1 <= time2", "gpsTime >= time1", "k >= 0.0", "k <= 1.0"})},
        {record(10, 0), record(20, 0), nan,
         assertTexts({"gpsTime >= time1", "gpsTime <= time2", "k >= 0.0", "k <= 1.0"})},
    };
    for (const auto& c : cases) {
        AssertionRecorder recorder;
        EXPECT_EQ(GnssData::interpolate(c.seconds, c.first, c.second).gpsTime.weekNumber, c.first.gpsTime.weekNumber);
        EXPECT_EQ(recorder.messages(), c.reports) << c.seconds;
        EXPECT_EQ(recorder.records().front().file, "src/Geodesy/include/Geodesy/GNSS/GnssData.h");
    }
}

} // namespace
} // namespace Kelvo::Geodesy::GNSS
