// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Trajectory/Reader.h"

#include <cstdint>
#include <optional>

namespace Kelvo::Geodesy::Batch {

/// The file format of a trajectory file set.
enum class TrajectoryFormat : std::uint8_t {
    /// By extension, as PositionAttitudeProviderFactory decides: ".stream" (exactly, case
    /// sensitive) is raw APX, every other extension SBET. A set mixing both is refused.
    automatic,
    sbet,
    apx,
};

/// How TrajectoryTable::load reads a set of trajectory files.
struct TrajectoryOptions {
    TrajectoryFormat format = TrajectoryFormat::automatic;
    /// The IMU alignment from which raw APX records count as VALID (ignored for SBET), graded
    /// as ApxRaw::Reader grades it.
    Trajectory::Reader::ImuAlignmentStatus alignment = Trajectory::Reader::ImuAlignmentStatus::FULL_NAVIGATION;
    /// Two consecutive epochs further apart than this [s] bound a gap: no pose is given
    /// strictly between them. Must be positive (infinity: no gaps).
    double maxGap = 1.0;
    /// The GPS week of the first epoch, when known. Files hold GPS seconds of week only: with
    /// the week, queries of any time scale are placed in absolute time and times of other
    /// weeks are not valid; without it, they are matched by their seconds of week.
    std::optional<std::uint32_t> week;
};

} // namespace Kelvo::Geodesy::Batch
