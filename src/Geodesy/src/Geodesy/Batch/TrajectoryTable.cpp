// SPDX-License-Identifier: MIT
#include "Geodesy/Batch/TrajectoryTable.h"

#include "ColumnChecks.h"
#include "EpochLocator.h"

#include "Geodesy/Batch/ArgumentError.h"
#include "Maths/EulerAngles.h"

#include <atomic>
#include <limits>
#include <numeric>

namespace Kelvo::Geodesy::Batch {

std::size_t TrajectoryTable::droppedOverlap() const
{
    return std::accumulate(sourceList.begin(), sourceList.end(), std::size_t{0},
                           [](std::size_t sum, const SourceFile& file) { return sum + file.overlap; });
}

std::size_t TrajectoryTable::droppedNotValid() const
{
    return std::accumulate(sourceList.begin(), sourceList.end(), std::size_t{0},
                           [](std::size_t sum, const SourceFile& file) { return sum + file.notValid; });
}

void TrajectoryTable::poses(std::span<const double> times, const TimeSpec& spec, const PoseColumns& out,
                            ThreadCount threads) const
{
    const std::size_t count = times.size();
    requireLength("latitude", out.latitude.size(), count, false);
    requireLength("longitude", out.longitude.size(), count, false);
    requireLength("height", out.height.size(), count, false);
    requireLength("roll", out.roll.size(), count, false);
    requireLength("pitch", out.pitch.size(), count, false);
    requireLength("yaw", out.yaw.size(), count, false);
    requireLength("velocityNorth", out.velocityNorth.size(), count, true);
    requireLength("velocityEast", out.velocityEast.size(), count, true);
    requireLength("velocityDown", out.velocityDown.size(), count, true);
    requireLength("valid", out.valid.size(), count, false);

    const QueryClock clock(spec, settings.week, columns.time.front());
    const EpochLocator locator(columns.time, clock.keyOffset(), settings.maxGap);
    const bool velocities = !out.velocityNorth.empty() || !out.velocityEast.empty() || !out.velocityDown.empty();
    const Columns& c = columns;
    FirstBadTime firstBad(count);

    threads.forEachRange(count, [&](std::size_t begin, std::size_t end) {
        const double* const values[] = {c.latitude.data(), c.longitude.data(), c.height.data(),
                                        c.roll.data(),     c.pitch.data(),     c.yaw.data()};
        const auto prefetch = [&](std::size_t epoch) {
            for (const double* column : values) {
                __builtin_prefetch(column + epoch);
            }
        };
        const auto blend = [](const Column& column, const Bracket& b) {
            // The providers' blend a + (b - a) k, component by component.
            const double a = column[b.lower];
            return a + (column[b.upper] - a) * b.k;
        };
        const auto angle = [](const Column& column, const Bracket& b) {
            return Maths::EulerAngles::interpolateAngle(column[b.lower], column[b.upper], b.k);
        };
        const auto visit = [&](std::size_t i, const Bracket& b) {
            if (!b.valid) {
                constexpr double nan = std::numeric_limits<double>::quiet_NaN();
                out.latitude[i] = out.longitude[i] = out.height[i] = nan;
                out.roll[i] = out.pitch[i] = out.yaw[i] = nan;
                if (velocities) {
                    writeIfWanted(out.velocityNorth, i, nan);
                    writeIfWanted(out.velocityEast, i, nan);
                    writeIfWanted(out.velocityDown, i, nan);
                }
                out.valid[i] = 0;
                return;
            }
            out.latitude[i] = blend(c.latitude, b);
            out.longitude[i] = blend(c.longitude, b);
            out.height[i] = blend(c.height, b);
            out.roll[i] = angle(c.roll, b);
            out.pitch[i] = angle(c.pitch, b);
            out.yaw[i] = angle(c.yaw, b);
            if (velocities) {
                writeIfWanted(out.velocityNorth, i, blend(c.velocityNorth, b));
                writeIfWanted(out.velocityEast, i, blend(c.velocityEast, b));
                writeIfWanted(out.velocityDown, i, blend(c.velocityDown, b));
            }
            out.valid[i] = 1;
        };
        firstBad.note(locateQueries(locator, clock, times, begin, end, prefetch, visit), end);
    });
    firstBad.raise(times);
}

} // namespace Kelvo::Geodesy::Batch
