// SPDX-License-Identifier: MIT
#include "Geodesy/Batch/Georeferencer.h"

#include "ColumnChecks.h"
#include "EpochLocator.h"

#include "Geodesy/Batch/TrajectoryTable.h"
#include "Geodesy/CoordinateSystem/Ellipsoid.h"
#include "Maths/EulerAngles.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace Kelvo::Geodesy::Batch {
namespace {

using Matrix = std::array<double, 9>; // row by row

/// R = Rz(yaw) Ry(pitch) Rx(roll) [rad]: body (x forward, y right, z down) to north-east-down.
Matrix rotationZyx(double roll, double pitch, double yaw)
{
    const double sr = std::sin(roll), cr = std::cos(roll);
    const double sp = std::sin(pitch), cp = std::cos(pitch);
    const double sy = std::sin(yaw), cy = std::cos(yaw);
    return {cp * cy, sr * sp * cy - cr * sy, cr * sp * cy + sr * sy, //
            cp * sy, sr * sp * sy + cr * cy, cr * sp * sy - sr * cy, //
            -sp,     sr * cp,                cr * cp};
}

/// Body to ECEF at one instant: the origin x, y, z [m], then the rotation row by row.
using Frame = std::array<double, 12>;

/// The exact frame of the pose that TrajectoryTable::poses gives at fraction k of the
/// bracket (lower, upper).
Frame exactFrame(const TrajectoryTable& table, std::size_t lower, std::size_t upper, double k)
{
    const auto blend = [&](std::span<const double> column) {
        return column[lower] + (column[upper] - column[lower]) * k;
    };
    const auto angle = [&](std::span<const double> column) {
        return Maths::EulerAngles::interpolateAngle(column[lower], column[upper], k);
    };
    const LatLonHeight position(Maths::Radian(blend(table.latitude())), Maths::Radian(blend(table.longitude())),
                                blend(table.height()));
    const ECEF origin = CoordinateSystem::llh2ecef(position);
    const Maths::Matrix3 nedToEcef = CoordinateSystem::ned2ecefTransformMatrix(position);
    const Matrix bodyToNed = rotationZyx(angle(table.roll()), angle(table.pitch()), angle(table.yaw()));
    Frame frame{origin.x, origin.y, origin.z};
    for (unsigned row = 0; row < 3; ++row) {
        for (unsigned column = 0; column < 3; ++column) {
            frame[3 + row * 3 + column] = nedToEcef.at(row, 0) * bodyToNed[column]
                                          + nedToEcef.at(row, 1) * bodyToNed[3 + column]
                                          + nedToEcef.at(row, 2) * bodyToNed[6 + column];
        }
    }
    return frame;
}

/// The frame over one bracket as a quadratic in the fraction k, through the exact frames at
/// k = 0, 1/2 and 1: frame(k) = c0 + k (c1 + k c2).
struct Segment {
    std::size_t lower = std::numeric_limits<std::size_t>::max();
    Frame c0{};
    Frame c1{};
    Frame c2{};

    void fit(const TrajectoryTable& table, const Bracket& bracket)
    {
        const Frame start = exactFrame(table, bracket.lower, bracket.upper, 0.0);
        const Frame middle = exactFrame(table, bracket.lower, bracket.upper, 0.5);
        const Frame end = exactFrame(table, bracket.lower, bracket.upper, 1.0);
        for (std::size_t e = 0; e < start.size(); ++e) {
            c0[e] = start[e];
            c1[e] = 4.0 * middle[e] - 3.0 * start[e] - end[e];
            c2[e] = 2.0 * (start[e] + end[e]) - 4.0 * middle[e];
        }
        lower = bracket.lower;
    }
};

/// Segments of recent brackets, by their lower epoch: points in time order fit each segment
/// once; points out of order fit it again only when another segment has taken its slot.
class SegmentCache {
public:
    explicit SegmentCache(const TrajectoryTable& table)
        : table(table)
        , slots(SLOTS)
    {
    }

    const Segment& at(const Bracket& bracket)
    {
        Segment& segment = slots[bracket.lower % SLOTS];
        if (segment.lower != bracket.lower) {
            segment.fit(table, bracket);
        }
        return segment;
    }

private:
    static constexpr std::size_t SLOTS = 256;
    const TrajectoryTable& table;
    std::vector<Segment> slots;
};

} // namespace

Georeferencer::Georeferencer(const TrajectoryTable& table, const SensorMount& mount)
    : table(table)
    , sensorMount(mount)
    , boresight(rotationZyx(mount.boresight.roll, mount.boresight.pitch, mount.boresight.yaw))
{
}

void Georeferencer::georeference(std::span<const double> times, const TimeSpec& timeSpec, std::span<const double> x,
                                 std::span<const double> y, std::span<const double> z, GeoreferenceFrame frame,
                                 const GeoreferenceColumns& out, ThreadCount threads) const
{
    const std::size_t count = times.size();
    requireLength("x", x.size(), count, false);
    requireLength("y", y.size(), count, false);
    requireLength("z", z.size(), count, false);
    requireLength("first", out.first.size(), count, false);
    requireLength("second", out.second.size(), count, false);
    requireLength("third", out.third.size(), count, false);
    requireLength("valid", out.valid.size(), count, false);

    const QueryClock clock(timeSpec, table.options().week, table.time().front(), sensorMount.timeOffset);
    const EpochLocator locator(table.time(), clock.keyOffset(), table.options().maxGap);
    const auto& lever = sensorMount.leverArm;
    const Matrix& b = boresight;
    FirstBadTime firstBad(count);

    threads.forEachRange(count, [&](std::size_t begin, std::size_t end) {
        SegmentCache segments(table);
        const auto prefetch = [](std::size_t) {};
        const auto georeferencePoint = [&](std::size_t i, double key, const Bracket& bracket) {
            if (!bracket.valid) {
                constexpr double nan = std::numeric_limits<double>::quiet_NaN();
                out.first[i] = out.second[i] = out.third[i] = nan;
                out.valid[i] = 0;
                return;
            }
            const Segment& segment = segments.at(bracket);
            const double k = locator.fraction(bracket, key);
            Frame f;
            for (std::size_t e = 0; e < f.size(); ++e) {
                f[e] = segment.c0[e] + k * (segment.c1[e] + k * segment.c2[e]);
            }
            // Scanner to body: boresight rotation, then the lever arm.
            const double px = x[i], py = y[i], pz = z[i];
            const double bx = b[0] * px + b[1] * py + b[2] * pz + lever.x;
            const double by = b[3] * px + b[4] * py + b[5] * pz + lever.y;
            const double bz = b[6] * px + b[7] * py + b[8] * pz + lever.z;
            const double ex = f[0] + (f[3] * bx + f[4] * by + f[5] * bz);
            const double ey = f[1] + (f[6] * bx + f[7] * by + f[8] * bz);
            const double ez = f[2] + (f[9] * bx + f[10] * by + f[11] * bz);
            if (frame == GeoreferenceFrame::ecef) {
                out.first[i] = ex;
                out.second[i] = ey;
                out.third[i] = ez;
            } else {
                const LatLonHeight geodetic = CoordinateSystem::ecef2llh(ECEF(ex, ey, ez));
                out.first[i] = geodetic.latitude;
                out.second[i] = geodetic.longitude;
                out.third[i] = geodetic.height;
            }
            out.valid[i] = 1;
        };
        const auto visit = [&](std::size_t row, const double* keys, std::size_t n, const Bracket& bracket) {
            for (std::size_t i = row; i < row + n; ++i) {
                georeferencePoint(i, keys[i - row], bracket);
            }
        };
        firstBad.note(locateQueries(locator, clock, times, begin, end, prefetch, visit), end);
    });
    firstBad.raise(times);
}

} // namespace Kelvo::Geodesy::Batch
