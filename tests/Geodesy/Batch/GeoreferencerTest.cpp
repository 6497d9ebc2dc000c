// SPDX-License-Identifier: MIT
// Direct georeferencing against an independent computation (GeographicLib's local Cartesian
// frame for the north-east-down step) over the real trajectory and a violently turning one,
// the two physical checks, the time offset, thread counts and refused arguments.
#include "BatchTestSupport.h"

#include "Geodesy/Batch/ArgumentError.h"
#include "Geodesy/Batch/Georeferencer.h"

#include <GeographicLib/Geocentric.hpp>
#include <GeographicLib/LocalCartesian.hpp>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using namespace BatchTesting;
using Batch::GeoreferenceColumns;
using Batch::GeoreferenceFrame;
using Batch::Georeferencer;
using Batch::SensorMount;
using Batch::ThreadCount;
using Batch::TimeScale;
using Batch::TimeSpec;
using Batch::TrajectoryTable;
using Testing::TemporaryDirectory;

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;

constexpr double DEGREE = 180.0 / std::numbers::pi;
const TimeSpec GPS_SECONDS{TimeScale::gpsWeek, {}};

Matrix product(const Matrix& a, const Matrix& b)
{
    Matrix c{};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            for (int k = 0; k < 3; ++k) {
                c[i][j] += a[i][k] * b[k][j];
            }
        }
    }
    return c;
}

Vector rotate(const Matrix& m, const Vector& v)
{
    return {m[0][0] * v[0] + m[0][1] * v[1] + m[0][2] * v[2], m[1][0] * v[0] + m[1][1] * v[1] + m[1][2] * v[2],
            m[2][0] * v[0] + m[2][1] * v[1] + m[2][2] * v[2]};
}

/// Rz(yaw) Ry(pitch) Rx(roll), built from the three elementary rotations.
Matrix zyx(double roll, double pitch, double yaw)
{
    const Matrix x{{{1, 0, 0}, {0, std::cos(roll), -std::sin(roll)}, {0, std::sin(roll), std::cos(roll)}}};
    const Matrix y{{{std::cos(pitch), 0, std::sin(pitch)}, {0, 1, 0}, {-std::sin(pitch), 0, std::cos(pitch)}}};
    const Matrix z{{{std::cos(yaw), -std::sin(yaw), 0}, {std::sin(yaw), std::cos(yaw), 0}, {0, 0, 1}}};
    return product(z, product(y, x));
}

/// The point in ECEF from a pose (latitude, longitude [rad], height, roll, pitch, yaw), the
/// mount and scanner coordinates: body and NED by plain matrices, NED to the Earth by
/// GeographicLib's local Cartesian frame (east, north, up) about the pose.
Vector reference(const std::array<double, 6>& pose, const SensorMount& mount, const Vector& scanner)
{
    const auto& b = mount.boresight;
    const Vector rotated = rotate(zyx(b.roll, b.pitch, b.yaw), scanner);
    const Vector body{rotated[0] + mount.leverArm.x, rotated[1] + mount.leverArm.y, rotated[2] + mount.leverArm.z};
    const Vector ned = rotate(zyx(pose[3], pose[4], pose[5]), body);
    const GeographicLib::LocalCartesian local(pose[0] * DEGREE, pose[1] * DEGREE, pose[2]);
    Vector ecef;
    double latitude, longitude, height;
    local.Reverse(ned[1], ned[0], -ned[2], latitude, longitude, height);
    GeographicLib::Geocentric::WGS84().Forward(latitude, longitude, height, ecef[0], ecef[1], ecef[2]);
    return ecef;
}

struct Points {
    std::vector<double> times, x, y, z;
};

/// `count` points at random times in [first, last], at `range` metres in random directions.
Points randomPoints(double first, double last, std::size_t count, double range, std::uint64_t seed)
{
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> time(first, last);
    std::normal_distribution<double> direction;
    Points points;
    for (std::size_t i = 0; i < count; ++i) {
        points.times.push_back(time(random));
        const Vector d{direction(random), direction(random), direction(random)};
        const double length = std::hypot(d[0], d[1], d[2]);
        points.x.push_back(range * d[0] / length);
        points.y.push_back(range * d[1] / length);
        points.z.push_back(range * d[2] / length);
    }
    return points;
}

struct Output {
    explicit Output(std::size_t count)
        : values(3, std::vector<double>(count))
        , valid(count)
    {
    }
    GeoreferenceColumns columns() { return {values[0], values[1], values[2], valid}; }
    std::vector<std::vector<double>> values;
    std::vector<std::uint8_t> valid;
};

Output georeference(const Georeferencer& georeferencer, const Points& points, GeoreferenceFrame frame,
                    ThreadCount threads = ThreadCount(1), const TimeSpec& timeSpec = GPS_SECONDS)
{
    Output out(points.times.size());
    georeferencer.georeference(points.times, timeSpec, points.x, points.y, points.z, frame, out.columns(), threads);
    return out;
}

/// The largest distance [m] between the georeferenced points and the reference, over the
/// poses of the table at the point times plus the mount's offset.
double worstError(const TrajectoryTable& table, const SensorMount& mount, const Points& points)
{
    std::vector<double> poseTimes;
    for (const double time : points.times) {
        poseTimes.push_back(time + mount.timeOffset);
    }
    const PoseBuffers poses = posesOf(table, poseTimes, GPS_SECONDS);
    const Output ecef = georeference(Georeferencer(table, mount), points, GeoreferenceFrame::ecef);
    double worst = 0.0;
    for (std::size_t i = 0; i < points.times.size(); ++i) {
        EXPECT_EQ(ecef.valid[i], 1);
        const std::array<double, 6> pose{poses.values[0][i], poses.values[1][i], poses.values[2][i],
                                         poses.values[3][i], poses.values[4][i], poses.values[5][i]};
        const Vector expected = reference(pose, mount, {points.x[i], points.y[i], points.z[i]});
        worst = std::max(worst, std::hypot(ecef.values[0][i] - expected[0], ecef.values[1][i] - expected[1],
                                           ecef.values[2][i] - expected[2]));
    }
    return worst;
}

TEST(Georeferencer, RealTrajectoryAgreesWithTheLocalCartesianReferenceToAMillimetre)
{
    const TrajectoryTable table = loadPaths({Testing::refData("leeward/sbet.out")});
    SensorMount mount;
    mount.leverArm = {0.52, -0.31, 1.24};
    mount.boresight = {0.011, -0.023, 0.035};
    mount.timeOffset = 0.0021;
    const auto span = table.timeSpan();
    const Points points = randomPoints(span.first, span.last - mount.timeOffset, 20'000, 300.0, 5);
    EXPECT_LT(worstError(table, mount, points), 1e-3);

    // Geodetic output is ecef2llh of the same points: compared through GeographicLib.
    const Georeferencer georeferencer(table, mount);
    const Output ecef = georeference(georeferencer, points, GeoreferenceFrame::ecef);
    const Output geodetic = georeference(georeferencer, points, GeoreferenceFrame::geodetic);
    for (std::size_t i = 0; i < points.times.size(); i += 97) {
        double x, y, z;
        GeographicLib::Geocentric::WGS84().Forward(geodetic.values[0][i] * DEGREE, geodetic.values[1][i] * DEGREE,
                                                   geodetic.values[2][i], x, y, z);
        EXPECT_NEAR(std::hypot(x - ecef.values[0][i], y - ecef.values[1][i], z - ecef.values[2][i]), 0.0, 1e-6);
    }
}

TEST(Georeferencer, AVehicleTurningAtThreeRadiansASecondAboutEveryAxisStaysWithinAMillimetreAt300Metres)
{
    // 200 Hz for 2 s: roll and pitch swing at up to 3 rad/s, the heading turns at 3 rad/s
    // (across +-180 deg, stored unwrapped) while the vehicle climbs a slope at 30 m/s.
    std::vector<Trajectory::Record> records;
    for (int i = 0; i < 400; ++i) {
        const double t = i / 200.0;
        auto record = Testing::syntheticRecord(300000.0 + t);
        record.time = 300000.0 + t;
        record.roll = 0.5 * std::sin(6.0 * t);
        record.pitch = 0.3 * std::cos(10.0 * t);
        record.heading = 2.0 + 3.0 * t;
        record.wanderAngle = 0.0;
        record.latitude = 0.8 + 30.0 * t / 6.4e6;
        record.height = 100.0 + 5.0 * t;
        records.push_back(record);
    }
    TemporaryDirectory folder;
    const TrajectoryTable table = loadPaths({writeSbet(folder, "turning.sbet", records)});
    SensorMount mount;
    mount.leverArm = {1.0, 0.5, -2.0};
    const Points points = randomPoints(300000.0, 300001.995, 20'000, 300.0, 6);
    const double worst = worstError(table, mount, points);
    EXPECT_LT(worst, 1e-3);
    RecordProperty("worstErrorMetres", std::to_string(worst));
}

TEST(Georeferencer, APointBelowALevelVehicleIsLowerAndAPointAheadLiesAlongTheHeading)
{
    const auto level = [](double heading) {
        auto records = Testing::syntheticTrajectory(1000.0, 0.5, 2);
        for (auto& record : records) {
            record.roll = record.pitch = record.wanderAngle = 0.0;
            record.heading = heading;
            record.latitude = 0.8;
            record.longitude = 0.2;
            record.height = 100.0;
        }
        return records;
    };
    TemporaryDirectory folder;
    const struct {
        const char* name;
        double heading;
        Vector scanner;
        Vector eastNorthUp;
    } cases[] = {
        {"10 m below, heading north", 0.0, {0.0, 0.0, 10.0}, {0.0, 0.0, -10.0}},
        {"10 m below, heading east", std::numbers::pi / 2.0, {0.0, 0.0, 10.0}, {0.0, 0.0, -10.0}},
        {"10 m ahead, heading north", 0.0, {10.0, 0.0, 0.0}, {0.0, 10.0, 0.0}},
        {"10 m ahead, heading east", std::numbers::pi / 2.0, {10.0, 0.0, 0.0}, {10.0, 0.0, 0.0}},
        {"10 m right, heading east", std::numbers::pi / 2.0, {0.0, 10.0, 0.0}, {0.0, -10.0, 0.0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TrajectoryTable table = loadPaths({writeSbet(folder, "level.sbet", level(c.heading))});
        const Points point{{1000.25}, {c.scanner[0]}, {c.scanner[1]}, {c.scanner[2]}};
        const Output geodetic = georeference(Georeferencer(table, SensorMount{}), point, GeoreferenceFrame::geodetic);
        ASSERT_EQ(geodetic.valid[0], 1);
        const GeographicLib::LocalCartesian vehicle(0.8 * DEGREE, 0.2 * DEGREE, 100.0);
        Vector enu;
        vehicle.Forward(geodetic.values[0][0] * DEGREE, geodetic.values[1][0] * DEGREE, geodetic.values[2][0], enu[0],
                        enu[1], enu[2]);
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(enu[axis], c.eastNorthUp[axis], 1e-6) << axis;
        }
    }
}

TEST(Georeferencer, TheTimeOffsetIsAddedToThePointTimesAndPointsWithoutAPoseAreNaN)
{
    TemporaryDirectory folder;
    const TrajectoryTable table = loadPaths({writeSbet(folder, "a.sbet", Testing::syntheticTrajectory(100.0, 0.5, 9))});
    SensorMount late;
    late.timeOffset = 0.25;
    const Points early{{100.5, 101.0, 103.875, 99.5}, {5.0, 1.0, 2.0, 3.0}, {1.0, 2.0, 3.0, 4.0}, {7.0, 8.0, 9.0, 1.0}};
    Points shifted = early;
    for (double& time : shifted.times) {
        time += 0.25;
    }
    const Output withOffset = georeference(Georeferencer(table, late), early, GeoreferenceFrame::ecef);
    const Output without = georeference(Georeferencer(table, SensorMount{}), shifted, GeoreferenceFrame::ecef);
    EXPECT_EQ(withOffset.valid, (std::vector<std::uint8_t>{1, 1, 0, 0})) << "104.125 and 99.75 lie outside";
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_TRUE(std::isnan(withOffset.values[axis][2]) && std::isnan(withOffset.values[axis][3]));
        EXPECT_EQ(bits(withOffset.values[axis][0]), bits(without.values[axis][0]));
        EXPECT_EQ(bits(withOffset.values[axis][1]), bits(without.values[axis][1]));
    }
}

TEST(Georeferencer, RefusedArgumentsNameTheColumnOrTheFirstBadTime)
{
    TemporaryDirectory folder;
    const TrajectoryTable table = loadPaths({writeSbet(folder, "a.sbet", Testing::syntheticTrajectory(100.0, 0.5, 9))});
    const Georeferencer georeferencer(table, SensorMount{});
    const auto run = [&](Points points, std::size_t outputs) {
        return [&georeferencer, points, outputs] {
            Output out(outputs);
            georeferencer.georeference(points.times, GPS_SECONDS, points.x, points.y, points.z,
                                       GeoreferenceFrame::ecef, out.columns());
        };
    };
    const Points good{std::vector<double>(10, 101.0), std::vector<double>(10), std::vector<double>(10),
                      std::vector<double>(10)};
    Points shortY = good;
    shortY.y.pop_back();
    Points badTime = good;
    badTime.times[2] = std::nan("");
    badTime.times[7] = HUGE_VAL;
    const std::pair<std::function<void()>, std::string> cases[] = {
        {run(shortY, 10), "y has 9 elements, times has 10"},
        {run(good, 9), "first has 9 elements, times has 10"},
        {run(badTime, 10), "times[2] is NaN"},
    };
    for (const auto& [action, expected] : cases) {
        EXPECT_EQ(Testing::thrownText<Batch::ArgumentError>(action), expected);
    }
}

TEST(GeoreferencerThreads, EveryThreadCountGivesTheSameBits)
{
    const auto records = Testing::syntheticTrajectory(400000.0, 0.005, 4000);
    TemporaryDirectory folder;
    const TrajectoryTable table = loadPaths({writeSbet(folder, "long.sbet", records)});
    SensorMount mount;
    mount.leverArm = {0.1, 0.2, 0.3};
    mount.boresight = {0.01, 0.02, 0.03};
    const Points points = randomPoints(records.front().time - 1.0, records.back().time + 1.0, 60'000, 50.0, 8);
    for (const auto frame : {GeoreferenceFrame::ecef, GeoreferenceFrame::geodetic}) {
        const Output one = georeference(Georeferencer(table, mount), points, frame, ThreadCount(1));
        for (const unsigned threads : {2u, 3u, 0u}) {
            SCOPED_TRACE(threads);
            const Output many = georeference(Georeferencer(table, mount), points, frame, ThreadCount(threads));
            EXPECT_EQ(many.valid, one.valid);
            for (int axis = 0; axis < 3; ++axis) {
                EXPECT_TRUE(std::equal(one.values[axis].begin(), one.values[axis].end(), many.values[axis].begin(),
                                       [](double a, double b) { return bits(a) == bits(b); }));
            }
        }
    }
}

} // namespace
} // namespace Kelvo::Geodesy
