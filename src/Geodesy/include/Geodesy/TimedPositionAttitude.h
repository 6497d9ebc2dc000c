// SPDX-License-Identifier: MIT
#pragma once

#include "CRS/Transform.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/GeodesyExport.h"
#include "Geodesy/LatLonHeight.h"
#include "Geodesy/Trajectory/Record.h"
#include "Maths/EulerAngles.h"
#include "Maths/PositionVector3.h"

#include <memory>
#include <new>
#include <utility>

namespace Kelvo::Geodesy {

/// One instant of a trajectory, as the position/attitude providers return it: the time [GPS
/// s of week, week number 0], the geodetic position (latitude, longitude [rad], ellipsoidal
/// height [m]), the attitude (roll, pitch and true heading as yaw [rad]), the body angular
/// rates in north-east-down axes [rad/s] and the status of the record it comes from.
///
/// `fromSbet` builds one from a trajectory record, `interpolate` blends two linearly. Both
/// return an empty pointer when the allocation fails; `interpolate` also returns one unless
/// both inputs are VALID (an INVALID input is reported as an assertion first).
class TimedPositionAttitude {
public:
    /// Angular rate zero.
    TimedPositionAttitude(const GPSTime& time, const LatLonHeight& position, const Maths::EulerAngles& attitude,
                          Trajectory::Record::Status status)
        : time(time)
        , position(position)
        , attitude(attitude)
        , status(status)
    {
    }

    TimedPositionAttitude(GPSTime time, LatLonHeight position, Maths::EulerAngles attitude,
                          Maths::PositionVector3 angularRate, Trajectory::Record::Status status)
        : time(time)
        , position(position)
        , attitude(attitude)
        , angularRate(angularRate)
        , status(status)
    {
    }

    /// The value of a trajectory record: the angular rates turned from the wander-azimuth
    /// frame into north-east-down with the record's wander angle, yaw = heading - wander
    /// angle (not wrapped), auxiliary seconds 0. With a transform of kind 1 the position goes
    /// through it in degrees and metres (ConvertStep 1); otherwise it is the record's.
    /// Validates nothing; the transform's exceptions pass through.
    KELVO_GEODESY_EXPORT static std::unique_ptr<TimedPositionAttitude>
    fromSbet(const Trajectory::Record& record, const std::unique_ptr<CRS::Transform>& transform);

    /// The linear blend at fraction `k` from `a` (0) to `b` (1) of time, position and angular
    /// rate, the attitude blended by EulerAngles::interpolate; `auxiliarySeconds` becomes the
    /// result's time.auxiliarySeconds. Asserts "a.status != Trajectory::Record::INVALID" and
    /// "b.status != Trajectory::Record::INVALID"; gives an empty pointer unless both are
    /// VALID. `k` is not checked.
    KELVO_GEODESY_EXPORT static std::unique_ptr<TimedPositionAttitude>
    interpolate(const TimedPositionAttitude& a, const TimedPositionAttitude& b, double k, double auxiliarySeconds);

    /// interpolate() for two VALID values, which it checks and reports nothing about: the
    /// blend itself, inline for callers that blend millions of values.
    static std::unique_ptr<TimedPositionAttitude> blendValid(const TimedPositionAttitude& a,
                                                             const TimedPositionAttitude& b, double k,
                                                             double auxiliarySeconds)
    {
        return allocate(Blend{}, a, b, k, auxiliarySeconds);
    }

    GPSTime time;
    LatLonHeight position;
    Maths::EulerAngles attitude;
    Maths::PositionVector3 angularRate;
    Trajectory::Record::Status status;

private:
    struct Blend {};

    // A new value, or an empty pointer when the allocation fails. (A throwing new caught here
    // is cheaper than the nothrow form, which wraps the same call in its own handler.)
    template <typename... Arguments>
    static std::unique_ptr<TimedPositionAttitude> allocate(Arguments&&... arguments)
    {
        try {
            return std::unique_ptr<TimedPositionAttitude>(
                new TimedPositionAttitude(std::forward<Arguments>(arguments)...));
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }

    // Every member is built in place, the attitude straight from EulerAngles::interpolate:
    // no temporary is copied into the new value.
    TimedPositionAttitude(Blend, const TimedPositionAttitude& a, const TimedPositionAttitude& b, double k,
                          double auxiliarySeconds)
        : time((b.time.secondsInWeek - a.time.secondsInWeek) * k + a.time.secondsInWeek, auxiliarySeconds)
        , position(a.position + (b.position - a.position) * k)
        , attitude(a.attitude.interpolate(b.attitude, k))
        , angularRate(a.angularRate + (b.angularRate - a.angularRate) * k)
        , status(Trajectory::Record::Status::VALID)
    {
    }
};

} // namespace Kelvo::Geodesy
