// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/LatLonHeight.h"
#include "Maths/PositionVector3.h"

#include <vector>

namespace Kelvo::Tool {

/// The vehicle at one instant, in the units of an SBET record: position (latitude,
/// longitude [rad], ellipsoidal height [m]), velocity north/east/down [m/s], attitude [rad]
/// (heading from north in (-pi, pi]), and what an IMU strapped to the body measures: the
/// specific force (acceleration minus gravity) [m/s^2] and the angular rate with respect to
/// inertial space [rad/s], both in body axes (x forward, y right, z down).
struct VehicleState {
    double time = 0.0; ///< seconds since the start of the survey
    Geodesy::LatLonHeight position;
    Maths::PositionVector3 velocity;
    double roll = 0.0;
    double pitch = 0.0;
    double heading = 0.0;
    Maths::PositionVector3 specificForce;
    Maths::PositionVector3 angularRate;
    /// Distance driven since the start [m].
    double distance = 0.0;
};

/// A survey drive: the vehicle stands while its IMU aligns, speeds up smoothly to 10 m/s,
/// drives straight runs joined by 90-degree turns (right, right, left, left: a lawn-mower
/// pattern), then slows down and stands again. The road rises and falls gently, so the
/// vehicle pitches and climbs; it rolls slightly outwards in turns. Speed, heading, roll and
/// pitch are smooth functions of time with closed-form derivatives, so the velocity, the
/// specific force and the body rates are exactly those of the motion, Earth rotation,
/// transport rate and normal gravity included. A short survey has fewer or no turns.
class SurveySimulator {
public:
    /// A drive of `duration` [s] from `site`, first heading `initialHeading` [rad].
    SurveySimulator(double duration, const Geodesy::LatLonHeight& site, double initialHeading);

    /// The state at `time` [s since the start], 0 <= time <= duration. Times must not go
    /// backwards from one call to the next: the horizontal position is integrated forward.
    VehicleState stateAt(double time);

    /// Start and end [s] of the turns, for tests and reports.
    struct Turn {
        double start;
        double end;
        int direction; ///< +1 right, -1 left
    };
    const std::vector<Turn>& turns() const { return plannedTurns; }

    /// When the vehicle starts and stops moving [s].
    double departure() const { return standStart; }
    double arrival() const { return driveEnd; }

private:
    double speed(double t) const;
    double acceleration(double t) const;
    double distance(double t) const;
    double heading(double t) const;
    double headingRate(double t) const;
    double headingAcceleration(double t) const;
    /// Latitude and longitude rates [rad/s] at time `t` and latitude `latitude` [rad].
    std::pair<double, double> positionRates(double t, double latitude) const;
    void integrateTo(double time);

    double duration;
    double standStart; // end of the initial stand
    double rampTime;   // speeding up and slowing down
    double driveEnd;   // start of the final stand
    double cruiseSpeed;
    double initialHeading;
    double siteHeight;
    std::vector<Turn> plannedTurns;

    double integratedTime = 0.0;
    double latitude;
    double longitude;
};

} // namespace Kelvo::Tool
