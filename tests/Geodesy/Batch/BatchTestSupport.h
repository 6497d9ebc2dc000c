// SPDX-License-Identifier: MIT
// What the batch engine tests share: files written for a test, output columns that own
// their storage, and exact comparison of columns.
#pragma once

#include "support/TemporaryDirectory.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/Batch/PoseColumns.h"
#include "Geodesy/Batch/TrajectoryTable.h"
#include "Geodesy/Trajectory/Record.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::BatchTesting {

/// Sunday 2024-06-23 00:00:00 UTC, the start of a UTC week [UTC s since the Unix epoch]; it
/// is GPS week 2320 (GPS time runs 18 s ahead).
constexpr double WEEK_START = 1719100800.0;
constexpr std::uint32_t GPS_WEEK = 2320;

/// The UTC request [s since the Unix epoch] for GPS second of week `gps` of that week.
inline double utcOf(double gps)
{
    return WEEK_START + (gps - 18.0);
}

/// Output columns of `poses` with storage, velocities included.
struct PoseBuffers {
    explicit PoseBuffers(std::size_t count)
        : values(9, std::vector<double>(count, -1.0))
        , valid(count, 7)
    {
    }

    Batch::PoseColumns columns()
    {
        return {values[0], values[1], values[2], values[3], values[4], values[5],
                values[6], values[7], values[8], valid};
    }

    /// latitude, longitude, height, roll, pitch, yaw, velocity north, east, down.
    std::vector<std::vector<double>> values;
    std::vector<std::uint8_t> valid;
};

inline PoseBuffers posesOf(const Batch::TrajectoryTable& table, const std::vector<double>& times,
                           const Batch::TimeSpec& timeSpec = {}, Batch::ThreadCount threads = Batch::ThreadCount(1))
{
    PoseBuffers buffers(times.size());
    table.poses(times, timeSpec, buffers.columns(), threads);
    return buffers;
}

inline std::uint64_t bits(double value)
{
    return std::bit_cast<std::uint64_t>(value);
}

/// A trajectory file written into `folder`.
inline std::filesystem::path writeSbet(const Testing::TemporaryDirectory& folder, const std::string& name,
                                       const std::vector<Trajectory::Record>& records)
{
    return folder.write(name, Testing::sbetBytes(records));
}

inline Batch::TrajectoryTable loadPaths(const std::vector<std::filesystem::path>& paths,
                                        const Batch::TrajectoryOptions& options = {})
{
    return Batch::TrajectoryTable::load(std::span<const std::filesystem::path>(paths), options);
}

} // namespace Kelvo::Geodesy::BatchTesting
