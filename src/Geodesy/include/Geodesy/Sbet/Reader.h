// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Geodesy/Trajectory/Reader.h"

#include <cstdint>

namespace Kelvo::Geodesy::Sbet {

/// Reads SBET files, the smoothed best-estimate trajectory of a GNSS/inertial
/// post-processor: no header, 136-byte records of seventeen little-endian doubles (time
/// [GPS s of week], latitude, longitude [rad], height [m], velocity x, y, z [m/s], roll,
/// pitch, platform heading, wander angle [rad], body specific forces [m/s^2], body angular
/// rates [rad/s]). Every record is returned as VALID, the values unconverted; the read that
/// hits the end gives an INVALID record of signalling NaNs.
///
/// A local file must be a whole number of records in increasing time order: its interval is
/// taken from its first and last records. A file whose size is not a multiple of 136 throws
/// std::runtime_error ("SBET file '<path>is truncated."); a single-record file or one whose
/// last time is not after its first fails the assertion on the interval. Reading after the
/// end throws std::runtime_error ("SBET file has unexpectedly reached EOF."). The other
/// failures are those of Trajectory::Reader.
class KELVO_GEODESY_EXPORT Reader final : public Trajectory::Reader {
public:
    /// `imuAlignmentStatus` is ignored: SBET records are processed, aligned solutions.
    Reader(const Core::FileInfo& fileInfo, Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus);

    std::uint64_t getCount() const override { return static_cast<std::uint64_t>(std::streamoff(size)) / 136u; }
    Trajectory::Record getNext() override;
};

} // namespace Kelvo::Geodesy::Sbet
