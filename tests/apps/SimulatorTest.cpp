// SPDX-License-Identifier: MIT
// The simulated drive must be physically consistent: positions, velocities, attitude, body
// rates and specific forces all describe one motion, as a real IMU and GNSS would see it.
#include "Simulator.h"

#include "Geodesy/CoordinateSystem/Ellipsoid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Kelvo::Tool {
namespace {

using Maths::PositionVector3;
using std::numbers::pi;

const Geodesy::LatLonHeight SITE(Maths::Radian(0.84), Maths::Radian(0.2), 560.0);
constexpr double EARTH_RATE = 7.292115e-5; // [rad/s]

/// Body (x forward, y right, z down) to NED for roll, pitch and heading, written out from
/// the three elementary rotations, independently of the simulator.
PositionVector3 bodyToNed(const VehicleState& s, const PositionVector3& v)
{
    const auto rotX = [](double a, PositionVector3 p) {
        return PositionVector3{p.x, std::cos(a) * p.y - std::sin(a) * p.z, std::sin(a) * p.y + std::cos(a) * p.z};
    };
    const auto rotY = [](double a, PositionVector3 p) {
        return PositionVector3{std::cos(a) * p.x + std::sin(a) * p.z, p.y, -std::sin(a) * p.x + std::cos(a) * p.z};
    };
    const auto rotZ = [](double a, PositionVector3 p) {
        return PositionVector3{std::cos(a) * p.x - std::sin(a) * p.y, std::sin(a) * p.x + std::cos(a) * p.y, p.z};
    };
    return rotZ(s.heading, rotY(s.pitch, rotX(s.roll, v)));
}

/// Difference of two positions in metres north, east, down.
PositionVector3 nedOffset(const VehicleState& from, const VehicleState& to)
{
    const auto [primeVertical, meridian] = Geodesy::CoordinateSystem::getRnRe(from.position.latitude);
    const double h = from.position.height;
    return {(to.position.latitude - from.position.latitude) * (meridian + h),
            (to.position.longitude - from.position.longitude) * (primeVertical + h) * std::cos(from.position.latitude),
            -(to.position.height - from.position.height)};
}

double angleDifference(double a, double b) { return std::remainder(a - b, 2 * pi); }

/// The states just before, at and just after a time.
struct Neighbourhood {
    double time;
    VehicleState before;
    VehicleState now;
    VehicleState after;
    double step;
};

/// Neighbourhoods of times that sample standing, speeding up, straight runs and the middle of
/// turns, `step` seconds wide on each side.
std::vector<Neighbourhood> samples(SurveySimulator& simulator, double step = 1e-3)
{
    std::vector<double> times{5.0, simulator.departure() + 2.0, 60.0, simulator.arrival() - 3.0};
    for (const auto& turn : simulator.turns()) {
        times.push_back(turn.start + 4.0);
        times.push_back((turn.start + turn.end) / 2);
    }
    std::sort(times.begin(), times.end());
    std::vector<Neighbourhood> result;
    for (const double t : times) {
        // In increasing time order, as the simulator integrates forward.
        const VehicleState before = simulator.stateAt(t - step);
        const VehicleState now = simulator.stateAt(t);
        result.push_back({t, before, now, simulator.stateAt(t + step), step});
    }
    return result;
}

TEST(SimulatorTest, DriveStandsThenTurnsInALawnMowerPatternThenStands)
{
    SurveySimulator simulator(300.0, SITE, 0.3);
    const auto& turns = simulator.turns();
    ASSERT_GE(turns.size(), 4u);
    const std::vector<int> pattern{1, 1, -1, -1};
    for (std::size_t i = 0; i < turns.size(); ++i) {
        EXPECT_EQ(turns[i].direction, pattern[i % 4]) << i;
        EXPECT_GT(turns[i].start, simulator.departure());
        EXPECT_LT(turns[i].end, simulator.arrival());
    }

    const VehicleState start = simulator.stateAt(0.0);
    EXPECT_EQ(start.velocity, PositionVector3(0.0, 0.0, 0.0));
    EXPECT_EQ(start.position.latitude, SITE.latitude);
    const double beforeFirstTurn = (simulator.departure() + turns[0].start) / 2 + 4.0;
    EXPECT_NEAR(std::hypot(simulator.stateAt(beforeFirstTurn).velocity.x, simulator.stateAt(beforeFirstTurn).velocity.y),
                10.0, 1e-9);
    // Two right turns reverse the heading.
    const VehicleState afterTwo = simulator.stateAt(turns[1].end + 1.0);
    EXPECT_NEAR(angleDifference(afterTwo.heading, 0.3 + pi), 0.0, 1e-9);
    EXPECT_GT(afterTwo.heading, -pi);
    EXPECT_LE(afterTwo.heading, pi);
    const VehicleState end = simulator.stateAt(300.0);
    EXPECT_EQ(std::hypot(end.velocity.x, end.velocity.y, end.velocity.z), 0.0);
    EXPECT_GT(end.distance, 2000.0);
}

TEST(SimulatorTest, VelocityIsTheRateOfChangeOfThePosition)
{
    SurveySimulator simulator(300.0, SITE, 0.3);
    for (const auto& [t, before, now, after, h] : samples(simulator)) {
        SCOPED_TRACE(t);
        const PositionVector3 rate = nedOffset(before, after) * (1.0 / (2 * h));
        EXPECT_NEAR(rate.x, now.velocity.x, 1e-4);
        EXPECT_NEAR(rate.y, now.velocity.y, 1e-4);
        EXPECT_NEAR(rate.z, now.velocity.z, 1e-4);
    }
}

TEST(SimulatorTest, SpecificForceAndBodyRatesAreThoseOfTheMotion)
{
    SurveySimulator simulator(300.0, SITE, 0.3);
    for (const auto& [t, before, now, after, h] : samples(simulator)) {
        SCOPED_TRACE(t);
        // Acceleration minus gravity, in NED; Coriolis terms are below 2e-3 m/s^2 at 10 m/s.
        const double gravity = Geodesy::CoordinateSystem::computeGravity(now.position);
        const PositionVector3 acceleration = (after.velocity - before.velocity) * (1.0 / (2 * h));
        const PositionVector3 force = bodyToNed(now, now.specificForce);
        EXPECT_NEAR(force.x, acceleration.x, 2e-3);
        EXPECT_NEAR(force.y, acceleration.y, 2e-3);
        EXPECT_NEAR(force.z, acceleration.z - gravity, 2e-3);

        // Euler-angle rates seen in body axes; Earth and transport rate stay below 1e-4 rad/s.
        const double droll = angleDifference(after.roll, before.roll) / (2 * h);
        const double dpitch = angleDifference(after.pitch, before.pitch) / (2 * h);
        const double dheading = angleDifference(after.heading, before.heading) / (2 * h);
        const double sr = std::sin(now.roll), cr = std::cos(now.roll);
        const double sp = std::sin(now.pitch), cp = std::cos(now.pitch);
        EXPECT_NEAR(now.angularRate.x, droll - dheading * sp, 1e-4);
        EXPECT_NEAR(now.angularRate.y, dpitch * cr + dheading * sr * cp, 1e-4);
        EXPECT_NEAR(now.angularRate.z, -dpitch * sr + dheading * cr * cp, 1e-4);
    }
}

TEST(SimulatorTest, StandingStillTheImuFeelsGravityAndEarthRotationOnly)
{
    SurveySimulator simulator(300.0, SITE, 0.3);
    const VehicleState still = simulator.stateAt(2.0);
    const PositionVector3 force = bodyToNed(still, still.specificForce);
    EXPECT_NEAR(force.x, 0.0, 1e-12);
    EXPECT_NEAR(force.y, 0.0, 1e-12);
    EXPECT_NEAR(force.z, -Geodesy::CoordinateSystem::computeGravity(still.position), 1e-12);
    const PositionVector3 rate = bodyToNed(still, still.angularRate);
    EXPECT_NEAR(rate.x, EARTH_RATE * std::cos(SITE.latitude), 1e-10);
    EXPECT_NEAR(rate.y, 0.0, 1e-12);
    EXPECT_NEAR(rate.z, -EARTH_RATE * std::sin(SITE.latitude), 1e-10);
}

} // namespace
} // namespace Kelvo::Tool
