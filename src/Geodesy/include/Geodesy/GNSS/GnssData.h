// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GNSS/CovarianceElements.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/LatLonHeight.h"
#include "Maths/PositionVector3.h"
#include "Utils/CoreAssert.h"

#include <cmath>
#include <cstdint>

namespace Kelvo::Geodesy::GNSS {

/// One GNSS position/velocity solution: GPS time, antenna position (latitude, longitude
/// [rad]; the third component as the reader stores it), velocity north/east/down [m/s] and
/// the covariances of both. The default record has NaN seconds: it holds no time yet.
struct GnssData {
    GPSTime gpsTime{std::nan(""), std::uint64_t{0}};
    LatLonHeight position;
    Maths::PositionVector3 velocity;
    CovarianceElements positionCovariance;
    CovarianceElements velocityCovariance;

    /// The solution at seconds of week `gpsTime` between `data1` and `data2` (earlier first,
    /// same GPS week). Position, velocity and all twelve covariance elements are blended
    /// linearly; the week number comes from `data1`. Equal record times take data1's values.
    static GnssData interpolate(double gpsTime, const GnssData& data1, const GnssData& data2)
    {
        const double time1 = data1.gpsTime.secondsInWeek;
        const double time2 = data2.gpsTime.secondsInWeek;
        CORE_ASSERT(data1.gpsTime.weekNumber == data2.gpsTime.weekNumber);
        CORE_ASSERT(time1 <= time2);
        CORE_ASSERT(gpsTime >= time1);
        CORE_ASSERT(gpsTime <= time2);

        double k = 0.0;
        if (time2 != time1) {
            k = (gpsTime - time1) / (time2 - time1);
            CORE_ASSERT(k >= 0.0);
            CORE_ASSERT(k <= 1.0);
        }

        GnssData result;
        result.gpsTime = GPSTime(gpsTime, data1.gpsTime.weekNumber);
        result.position = data1.position + (data2.position - data1.position) * k;
        result.velocity = data1.velocity + (data2.velocity - data1.velocity) * k;
        result.positionCovariance = blend(data1.positionCovariance, data2.positionCovariance, k);
        result.velocityCovariance = blend(data1.velocityCovariance, data2.velocityCovariance, k);
        return result;
    }

private:
    static double blend(double a, double b, double k) { return (b - a) * k + a; }

    static CovarianceElements blend(const CovarianceElements& a, const CovarianceElements& b, double k)
    {
        return {blend(a.xx, b.xx, k), blend(a.xy, b.xy, k), blend(a.xz, b.xz, k),
                blend(a.yy, b.yy, k), blend(a.yz, b.yz, k), blend(a.zz, b.zz, k)};
    }
};

} // namespace Kelvo::Geodesy::GNSS
