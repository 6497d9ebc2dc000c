// SPDX-License-Identifier: MIT
#include "Geodesy/Batch/TrajectoryTable.h"

#include "ColumnChecks.h"
#include "EpochLocator.h"

#include "Geodesy/Batch/ArgumentError.h"
#include "Maths/EulerAngles.h"

#include <algorithm>
#include <atomic>
#include <utility>
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

void TrajectoryTable::poses(std::span<const double> times, const TimeSpec& timeSpec, const PoseColumns& out,
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

    const QueryClock clock(timeSpec, settings.week, columns.time.front());
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
        const auto visit = [&](std::size_t row, const double* keys, std::size_t n, const Bracket& b) {
            if (!b.valid) {
                constexpr double nan = std::numeric_limits<double>::quiet_NaN();
                for (std::size_t i = row; i < row + n; ++i) {
                    out.latitude[i] = out.longitude[i] = out.height[i] = nan;
                    out.roll[i] = out.pitch[i] = out.yaw[i] = nan;
                    if (velocities) {
                        writeIfWanted(out.velocityNorth, i, nan);
                        writeIfWanted(out.velocityEast, i, nan);
                        writeIfWanted(out.velocityDown, i, nan);
                    }
                    out.valid[i] = 0;
                }
                return;
            }
            // The providers' fraction, then their blend a + (b - a) k component by component,
            // a piece of the run at a time.
            constexpr std::size_t PIECE = 64;
            double k[PIECE];
            for (std::size_t start = 0; start < n; start += PIECE) {
                const std::size_t m = std::min(PIECE, n - start);
                for (std::size_t i = 0; i < m; ++i) {
                    k[i] = locator.fraction(b, keys[start + i]);
                }
                double* const rows[] = {&out.latitude[row + start], &out.longitude[row + start],
                                        &out.height[row + start]};
                const Column* const positions[] = {&c.latitude, &c.longitude, &c.height};
                for (std::size_t v = 0; v < 3; ++v) {
                    const double from = (*positions[v])[b.lower];
                    const double difference = (*positions[v])[b.upper] - from;
                    for (std::size_t i = 0; i < m; ++i) {
                        rows[v][i] = from + difference * k[i];
                    }
                }
                double* const angleRows[] = {&out.roll[row + start], &out.pitch[row + start], &out.yaw[row + start]};
                const Column* const angles[] = {&c.roll, &c.pitch, &c.yaw};
                for (std::size_t v = 0; v < 3; ++v) {
                    const double from = (*angles[v])[b.lower];
                    const double to = (*angles[v])[b.upper];
                    for (std::size_t i = 0; i < m; ++i) {
                        angleRows[v][i] = Maths::EulerAngles::interpolateAngle(from, to, k[i]);
                    }
                }
                if (velocities) {
                    for (const auto& [column, into] : {std::pair{&c.velocityNorth, out.velocityNorth},
                                                       std::pair{&c.velocityEast, out.velocityEast},
                                                       std::pair{&c.velocityDown, out.velocityDown}}) {
                        if (into.empty()) {
                            continue;
                        }
                        const double from = (*column)[b.lower];
                        const double difference = (*column)[b.upper] - from;
                        for (std::size_t i = 0; i < m; ++i) {
                            into[row + start + i] = from + difference * k[i];
                        }
                    }
                }
            }
            std::fill_n(out.valid.begin() + static_cast<std::ptrdiff_t>(row), n, std::uint8_t{1});
        };
        firstBad.note(locateQueries(locator, clock, times, begin, end, prefetch, visit), end);
    });
    firstBad.raise(times);
}

} // namespace Kelvo::Geodesy::Batch
