// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GeodesyExport.h"
#include "Geodesy/Trajectory/Reader.h"

#include <cstdint>

namespace Kelvo::Geodesy::ApxRaw {

/// Reads raw APX navigation files (extension ".stream"): real-time GNSS/inertial solutions
/// logged as 115-byte big-endian records, without a file header. Each record becomes a
/// Trajectory::Record: time [GPS s of week] from milliseconds, latitude, longitude, roll,
/// pitch and heading from degrees to radians, height [m] and velocity [m/s] as stored,
/// wander angle 0; the [deg/s] triple goes, in [rad/s], to the force slots and the other
/// triple, unconverted, to the angular-rate slots.
///
/// Grading: a record is NOT_ALIGNED while no record so far has reached the required IMU
/// alignment state, or when its solution flag is 0; otherwise VALID. Once the required state
/// has been reached, later records are graded by their flag alone. A read that finds no byte
/// at all gives an INVALID record of signalling NaNs and sets `endOfFile()`, also when a
/// failed seek left the stream unable to deliver (a rewind after the end, a file shorter than
/// one record); a record cut short by the end of the file is converted from what was read
/// over NaNs (and is dropped by callers, since `endOfFile()` is then set).
///
/// A local file's interval is that of its first and last 115 bytes; a trailing partial
/// record only lowers `getCount()`. Reading after the end throws std::runtime_error ("Raw
/// APX file has unexpectedly reached EOF."). The other failures are those of
/// Trajectory::Reader.
class KELVO_GEODESY_EXPORT Reader final : public Trajectory::Reader {
public:
    /// The extension of raw APX files; every other extension is read as SBET.
    static constexpr const char* FILE_EXTENSION() { return ".stream"; }

    /// `imuAlignmentStatus` is the alignment state from which records count as usable.
    Reader(const Core::FileInfo& fileInfo, Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus);

    std::uint64_t getCount() const override { return static_cast<std::uint64_t>(std::streamoff(size)) / 115u; }
    Trajectory::Record getNext() override;

private:
    Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus;
    /// The highest alignment state met so far.
    std::uint8_t bestImuAlignmentStatus = 0;
};

} // namespace Kelvo::Geodesy::ApxRaw
