// SPDX-License-Identifier: MIT
#include "Simulator.h"

#include "Geodesy/CoordinateSystem/Ellipsoid.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Kelvo::Tool {
namespace {

using Maths::PositionVector3;
using std::numbers::pi;

constexpr double CRUISE_SPEED = 10.0;     // [m/s]
constexpr double TURN_TIME = 15.0;        // a 90-degree turn [s]
constexpr double HILL_AMPLITUDE = 2.5;    // [m]
constexpr double HILL_LENGTH = 500.0;     // [m]
constexpr double ROLL_PER_LATERAL = 0.01; // body roll per lateral acceleration [rad / (m/s^2)]
constexpr double MAX_STEP = 0.01;         // integration step of the horizontal position [s]

/// Height above the site's height after `s` metres of road, and its first two derivatives.
double hill(double s) { return HILL_AMPLITUDE * std::sin(2 * pi * s / HILL_LENGTH); }
double hillSlope(double s) { return HILL_AMPLITUDE * 2 * pi / HILL_LENGTH * std::cos(2 * pi * s / HILL_LENGTH); }
double hillCurvature(double s)
{
    const double k = 2 * pi / HILL_LENGTH;
    return -HILL_AMPLITUDE * k * k * std::sin(k * s);
}

PositionVector3 cross(const PositionVector3& a, const PositionVector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Rows of the rotation from body to NED axes for roll, pitch and heading (z-y-x order);
/// multiplying by its transpose turns an NED vector into body axes.
struct BodyToNed {
    double m[3][3];

    BodyToNed(double roll, double pitch, double heading)
    {
        const double sr = std::sin(roll), cr = std::cos(roll);
        const double sp = std::sin(pitch), cp = std::cos(pitch);
        const double sh = std::sin(heading), ch = std::cos(heading);
        const double rows[3][3] = {{cp * ch, sr * sp * ch - cr * sh, cr * sp * ch + sr * sh},
                                   {cp * sh, sr * sp * sh + cr * ch, cr * sp * sh - sr * ch},
                                   {-sp, sr * cp, cr * cp}};
        std::copy(&rows[0][0], &rows[0][0] + 9, &m[0][0]);
    }

    PositionVector3 toBody(const PositionVector3& v) const
    {
        return {m[0][0] * v.x + m[1][0] * v.y + m[2][0] * v.z, m[0][1] * v.x + m[1][1] * v.y + m[2][1] * v.z,
                m[0][2] * v.x + m[1][2] * v.y + m[2][2] * v.z};
    }
};

} // namespace

SurveySimulator::SurveySimulator(double duration, const Geodesy::LatLonHeight& site, double initialHeading)
    : duration(duration)
    , standStart(std::min(10.0, 0.1 * duration))
    , driveEnd(duration - std::min(5.0, 0.05 * duration))
    , cruiseSpeed(CRUISE_SPEED)
    , initialHeading(initialHeading)
    , siteHeight(site.height)
    , latitude(site.latitude)
    , longitude(site.longitude)
{
    rampTime = std::min(8.0, 0.15 * (driveEnd - standStart));
    const double cruiseStart = standStart + rampTime;
    const double cruiseEnd = driveEnd - rampTime;
    const double straight = std::clamp((cruiseEnd - cruiseStart) / 6.0, 5.0, 45.0);
    for (int k = 0;; ++k) {
        const double start = cruiseStart + straight + k * (straight + TURN_TIME);
        if (start + TURN_TIME > cruiseEnd) {
            break;
        }
        plannedTurns.push_back({start, start + TURN_TIME, (k / 2) % 2 == 0 ? 1 : -1});
    }
}

double SurveySimulator::speed(double t) const
{
    if (t <= standStart || t >= driveEnd) {
        return 0.0;
    }
    const double ramp = std::min(t - standStart, driveEnd - t);
    return ramp < rampTime ? cruiseSpeed * (1.0 - std::cos(pi * ramp / rampTime)) / 2.0 : cruiseSpeed;
}

double SurveySimulator::acceleration(double t) const
{
    if (t <= standStart || t >= driveEnd) {
        return 0.0;
    }
    const double rate = cruiseSpeed * pi / (2.0 * rampTime);
    if (t - standStart < rampTime) {
        return rate * std::sin(pi * (t - standStart) / rampTime);
    }
    if (driveEnd - t < rampTime) {
        return -rate * std::sin(pi * (driveEnd - t) / rampTime);
    }
    return 0.0;
}

double SurveySimulator::distance(double t) const
{
    // Closed-form integral of speed(): a raised-cosine ramp covers half the distance that
    // the cruise speed would in the same time.
    const double total = cruiseSpeed * (driveEnd - standStart - rampTime);
    const auto rampDistance = [this](double tau) {
        return cruiseSpeed * (tau / 2.0 - rampTime / (2.0 * pi) * std::sin(pi * tau / rampTime));
    };
    if (t <= standStart) {
        return 0.0;
    }
    if (t >= driveEnd) {
        return total;
    }
    if (t - standStart < rampTime) {
        return rampDistance(t - standStart);
    }
    if (driveEnd - t < rampTime) {
        return total - rampDistance(driveEnd - t);
    }
    return cruiseSpeed * (rampTime / 2.0 + t - standStart - rampTime);
}

double SurveySimulator::heading(double t) const
{
    double value = initialHeading;
    for (const Turn& turn : plannedTurns) {
        if (t >= turn.end) {
            value += turn.direction * pi / 2.0;
        } else if (t > turn.start) {
            const double x = (t - turn.start) / TURN_TIME;
            value += turn.direction * pi / 2.0 * (x - std::sin(2.0 * pi * x) / (2.0 * pi));
        }
    }
    return value;
}

double SurveySimulator::headingRate(double t) const
{
    for (const Turn& turn : plannedTurns) {
        if (t > turn.start && t < turn.end) {
            const double x = (t - turn.start) / TURN_TIME;
            return turn.direction * pi / 2.0 / TURN_TIME * (1.0 - std::cos(2.0 * pi * x));
        }
    }
    return 0.0;
}

double SurveySimulator::headingAcceleration(double t) const
{
    for (const Turn& turn : plannedTurns) {
        if (t > turn.start && t < turn.end) {
            const double x = (t - turn.start) / TURN_TIME;
            return turn.direction * pi / TURN_TIME / TURN_TIME * pi * std::sin(2.0 * pi * x);
        }
    }
    return 0.0;
}

std::pair<double, double> SurveySimulator::positionRates(double t, double atLatitude) const
{
    const auto [primeVertical, meridian] = Geodesy::CoordinateSystem::getRnRe(atLatitude);
    const double height = siteHeight + hill(distance(t));
    const double v = speed(t);
    const double psi = heading(t);
    return {v * std::cos(psi) / (meridian + height), v * std::sin(psi) / ((primeVertical + height) * std::cos(atLatitude))};
}

void SurveySimulator::integrateTo(double time)
{
    // Fourth-order Runge-Kutta on latitude and longitude; the rates depend on the latitude
    // and, through the closed-form profiles, on time alone.
    while (integratedTime < time) {
        const double h = std::min(MAX_STEP, time - integratedTime);
        const double t = integratedTime;
        const auto k1 = positionRates(t, latitude);
        const auto k2 = positionRates(t + h / 2, latitude + h / 2 * k1.first);
        const auto k3 = positionRates(t + h / 2, latitude + h / 2 * k2.first);
        const auto k4 = positionRates(t + h, latitude + h * k3.first);
        latitude += h / 6 * (k1.first + 2 * k2.first + 2 * k3.first + k4.first);
        longitude += h / 6 * (k1.second + 2 * k2.second + 2 * k3.second + k4.second);
        integratedTime = h == time - integratedTime ? time : integratedTime + h;
    }
}

VehicleState SurveySimulator::stateAt(double time)
{
    integrateTo(time);

    VehicleState state;
    state.time = time;
    state.distance = distance(time);
    const double s = state.distance;
    const double v = speed(time);
    const double dv = acceleration(time);
    const double psi = heading(time);
    const double dpsi = headingRate(time);
    const double ddpsi = headingAcceleration(time);
    const double slope = hillSlope(s);
    const double curvature = hillCurvature(s);

    state.position = Geodesy::LatLonHeight(Maths::Radian(latitude), Maths::Radian(longitude), siteHeight + hill(s));
    // "+ 0.0" turns the -0 of a vehicle at rest into 0, which reads better in a dump.
    state.velocity = {v * std::cos(psi) + 0.0, v * std::sin(psi) + 0.0, -v * slope + 0.0};
    const PositionVector3 accelerationNed{dv * std::cos(psi) - v * dpsi * std::sin(psi),
                                          dv * std::sin(psi) + v * dpsi * std::cos(psi),
                                          -(dv * slope + v * v * curvature)};

    // Attitude: nose along the road's slope, body leaning out of the turn.
    state.roll = -ROLL_PER_LATERAL * v * dpsi + 0.0;
    state.pitch = std::atan(slope);
    state.heading = std::remainder(psi, 2 * pi);
    const double droll = -ROLL_PER_LATERAL * (dv * dpsi + v * ddpsi);
    const double dpitch = curvature * v / (1.0 + slope * slope);

    // Specific force from the navigation equation in NED:
    // dv/dt = f - (2 w_ie + w_en) x v + g, with g pointing down.
    const auto [earthRate, transportRate] = Geodesy::CoordinateSystem::computeWnieWnen(state.position, state.velocity);
    const double gravity = Geodesy::CoordinateSystem::computeGravity(state.position);
    const PositionVector3 coriolis = cross(earthRate * 2.0 + transportRate, state.velocity);
    const PositionVector3 forceNed = accelerationNed + coriolis - PositionVector3(0.0, 0.0, gravity);

    const BodyToNed rotation(state.roll, state.pitch, psi);
    state.specificForce = rotation.toBody(forceNed);

    // Body rates: Euler-angle rates in body axes, plus Earth and transport rate.
    const double sr = std::sin(state.roll), cr = std::cos(state.roll);
    const double sp = std::sin(state.pitch), cp = std::cos(state.pitch);
    const PositionVector3 bodyRate{droll - dpsi * sp, dpitch * cr + dpsi * sr * cp, -dpitch * sr + dpsi * cr * cp};
    state.angularRate = bodyRate + rotation.toBody(earthRate + transportRate);
    return state;
}

} // namespace Kelvo::Tool
