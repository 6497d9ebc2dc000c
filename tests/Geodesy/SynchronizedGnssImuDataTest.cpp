// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include "Geodesy/SynchronizedGnssImuData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace Kelvo::Geodesy {
namespace {

using Maths::EulerAngles;
using Maths::PositionVector3;
using Maths::Radian;
using Testing::AssertionRecorder;
using ::testing::ElementsAre;

SynchronizedGnssImuData sample()
{
    GNSS::GnssData gnss;
    gnss.gpsTime = GPSTime(1.0, 2086u); // not part of the report
    gnss.position = LatLonHeight(Radian(0.5), Radian(-0.25), -123.25);
    gnss.velocity = {1.5, -2.25, 0.0};
    gnss.positionCovariance = {0.5, -0.25, 0.125, 2.0, 3.5, 4.0};
    return {GPSTime(345600.5, 2086u), gnss, {0.25, -9.75, 0.5}, {0.0625, -0.125, 0.0}, {}, std::nullopt};
}

// Latitude and longitude are 0.5 and -0.25 rad in degrees, rounded to 18 decimals by an
// independent tool; the velocity covariance is the default one.
const std::string sampleReport =
    "GPS TIME:----------------------------------------------------- \n"
    "Week seconds [s]: +345600.500000000000000000\n"
    "Week number: +2086\n"
    "GNSS:----------------------------------------------------- \n"
    "Latitude [deg]: +28.647889756541161432\n"
    "Longitude [deg]: -14.323944878270580716\n"
    "Height [m]: -123.250000000000000000\n"
    "Velocity [m.s^-1]: (+1.500000000000000000, -2.250000000000000000, "
    "+0.000000000000000000)\n"
    "Covariance Position {xx; xy; xz; yy; yz; zz}: {+0.500000000000000000 "
    "-0.250000000000000000 +0.125000000000000000 +2.000000000000000000 "
    "+3.500000000000000000 +4.000000000000000000}\n"
    "Covariance Velocity {xx; xy; xz; yy; yz; zz}: {+0.010000000000000000 "
    "+0.000000000000000000 +0.000000000000000000 +0.010000000000000000 "
    "+0.000000000000000000 +0.010000000000000000}\n"
    "IMU:----------------------------------------------------- \n"
    "Specific forces [m.s^-2]: (+0.250000000000000000, -9.750000000000000000, "
    "+0.500000000000000000)\n"
    "Angular rates [rad.s^-1]: (+0.062500000000000000, -0.125000000000000000, "
    "+0.000000000000000000)\n";

TEST(SynchronizedGnssImuData, ReportOmitsAbsentReadingsAndLeavesTheFormatSet)
{
    std::ostringstream stream;
    stream << sample();
    EXPECT_EQ(stream.str(), sampleReport);
    stream.str("");
    stream << 2.5 << ' ' << -1;
    EXPECT_EQ(stream.str(), "+2.500000000000000000 -1");

    SynchronizedGnssImuData data = sample();
    data.magnetometer = {0.0, 0.0, -0.5}; // one non-zero component is a reading
    data.attitude = EulerAngles(Radian(0.5), Radian(-0.25), Radian(3.0));
    stream.str("");
    stream << data;
    EXPECT_EQ(stream.str(),
              sampleReport
                  + "Magnetometer: (+0.000000000000000000, +0.000000000000000000, -0.500000000000000000)\n"
                    "Attitude [rad]: (+0.500000000000000000, -0.250000000000000000, +3.000000000000000000)\n");
}

TEST(SynchronizedGnssImuData, ReportAssertsNormalOrZeroSecondsAndStillPrints)
{
    const std::string check =
        "std::isnormal( syncData.gpsTime.secondsInWeek ) || syncData.gpsTime.secondsInWeek == 0.0";
    for (const double seconds : {0.0, -0.0, std::nan(""), std::numeric_limits<double>::infinity(), 5e-324}) {
        AssertionRecorder recorder;
        SynchronizedGnssImuData data = sample();
        data.gpsTime.secondsInWeek = seconds;
        std::ostringstream stream;
        stream << data;
        EXPECT_THAT(stream.str(), ::testing::EndsWith("-0.125000000000000000, +0.000000000000000000)\n"));
        if (seconds == 0.0) {
            EXPECT_TRUE(recorder.records().empty()) << seconds;
        } else {
            EXPECT_THAT(recorder.messages(), ElementsAre(Testing::assertText(check))) << seconds;
            EXPECT_EQ(recorder.records().at(0).file, "src/Geodesy/src/Geodesy/SynchronizedGnssImuData.cpp");
        }
    }
}

} // namespace
} // namespace Kelvo::Geodesy
