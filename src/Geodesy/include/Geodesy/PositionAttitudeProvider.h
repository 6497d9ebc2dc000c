// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Geodesy/TimedPositionAttitude.h"
#include "Maths/IntervalCounter.h"

#include <memory>

namespace Kelvo::Geodesy {

/// Answers where the platform was, and how it was oriented, at a UTC time. The answer is a
/// TimedPositionAttitude (latitude, longitude [rad], ellipsoidal height [m], roll, pitch,
/// yaw [rad]) interpolated between the trajectory records around the time; an empty pointer
/// means that the trajectory has no value for that time, which is not an error.
///
/// Every lookup counts in the caller's `counter` whether the time fell below, inside or
/// above the trajectory's time span. Lookups move the underlying readers, so one provider
/// serves one caller at a time. PositionAttitudeProviderFactory makes the providers.
class KELVO_GEODESY_EXPORT PositionAttitudeProvider {
public:
    PositionAttitudeProvider();
    PositionAttitudeProvider(const PositionAttitudeProvider&) = delete;
    PositionAttitudeProvider& operator=(const PositionAttitudeProvider&) = delete;
    virtual ~PositionAttitudeProvider();

    /// The value at `seconds`, UTC seconds since the Unix epoch [s].
    virtual std::unique_ptr<TimedPositionAttitude> getPositionAttitude(double seconds,
                                                                       Maths::IntervalCounter& counter) = 0;
    /// The value at `seconds`, UTC seconds of the day [s].
    virtual std::unique_ptr<TimedPositionAttitude> getPositionAttitudeOfDay(double seconds,
                                                                            Maths::IntervalCounter& counter) = 0;
    /// The record the provider stands on now (owned by the provider, valid until the next
    /// lookup).
    virtual const TimedPositionAttitude* getCurrent() = 0;
};

} // namespace Kelvo::Geodesy
