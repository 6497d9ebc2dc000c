// SPDX-License-Identifier: MIT
#pragma once

#include "Core/FileInfo.h"
#include "Geodesy/Batch/PoseColumns.h"
#include "Geodesy/Batch/ThreadCount.h"
#include "Geodesy/Batch/TimeScale.h"
#include "Geodesy/Batch/TrajectoryOptions.h"
#include "Geodesy/GeodesyExport.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace Kelvo::Geodesy::Batch {

/// A trajectory in memory, one column per quantity, and poses at arrays of times.
///
/// `load` reads one or more SBET or raw APX files through Sbet::Reader / ApxRaw::Reader and
/// keeps each VALID record as an epoch: time, latitude, longitude, height, roll, pitch, yaw
/// (true heading = platform heading - wander angle, as TimedPositionAttitude::fromSbet has
/// it) and the velocity north, east, down. Records that are not VALID are left out. Files
/// are merged by time whatever their order: they are taken by their first time, and an
/// epoch not after the last one kept (where files overlap) is dropped, so the earlier file
/// wins. Inside one file, a backward jump of more than half a week is a week rollover;
/// any other is a FileFormatError naming the file and the record. Epochs further apart
/// than `maxGap` bound a gap.
///
/// Times: `time()` counts GPS seconds from the start of the GPS week of the first epoch; it
/// passes 604800 when the data run into the next week. Files that start more than half a
/// week apart: those starting in the low half of the week belong to the next week.
///
/// `poses` answers N times of a caller's time scale (TimeSpec) into caller-owned columns.
/// A time outside the table or strictly inside a gap is not valid and its values are NaN:
/// nothing is extrapolated, no gap is bridged; a time exactly on an epoch is valid. Between
/// the two epochs that bracket a time the values are blended linearly, the angles along the
/// shorter arc (Maths::EulerAngles::interpolate). The arithmetic is that of
/// SbetPositionAttitudeProvider: for UTC times, wherever the provider over the same file
/// answers (outside gaps), the position and attitude are the same bits. The bracket of a
/// time exactly on epoch j > 0 is (j - 1, j), that of the first epoch (0, 1).
///
/// Cost: times in increasing order are answered by a forward walk, each run of times between
/// the same two epochs at once; times in any other order are put in table order a chunk at a
/// time (a counting sort), never searched at random. Nothing is allocated per time.
///
/// Threads: the table is immutable once loaded; every const member may be called from any
/// number of threads at once. `poses` starts threads only as its ThreadCount says and joins
/// them before it returns; its answers are the same bits for every thread count.
///
/// Memory: the ten columns (80 bytes per epoch), the gap list and one line per file.
class KELVO_GEODESY_EXPORT TrajectoryTable {
public:
    /// A stretch between two consecutive epochs longer than `maxGap`.
    struct Gap {
        /// The time of the epoch before the gap [s, as time()].
        double start;
        /// To the next epoch [s].
        double length;
    };

    /// What the load took from one file, in the order the files were merged.
    struct SourceFile {
        std::filesystem::path path;
        /// Records read from the file.
        std::size_t records = 0;
        /// Records kept as epochs.
        std::size_t used = 0;
        /// Records left out as not VALID (raw APX before alignment or without a solution).
        std::size_t notValid = 0;
        /// VALID records dropped because an earlier file already covered their time.
        std::size_t overlap = 0;
        /// Time of the first and last record kept [s, as time()]; NaN when none was.
        double firstTime = 0.0;
        double lastTime = 0.0;
    };

    /// First and last epoch [s, as time()].
    struct TimeSpan {
        double first;
        double last;
    };

    /// Reads `files` as `options` say (see the class comment).
    ///
    /// Throws ArgumentError for an empty set, files of two formats (automatic format), or a
    /// `maxGap` that is not positive; FileFormatError (naming the file) for a file that is not
    /// a whole number of records, a time that is not finite or goes back, or a file without
    /// one VALID record. A file that is missing or cannot be opened throws the readers'
    /// std::system_error.
    static TrajectoryTable load(std::span<const Core::FileInfo> files, const TrajectoryOptions& options = {});
    /// The same for local paths.
    static TrajectoryTable load(std::span<const std::filesystem::path> files, const TrajectoryOptions& options = {});

    std::size_t size() const { return columns.time.size(); }

    /// GPS seconds from the start of the GPS week of the first epoch [s].
    std::span<const double> time() const { return columns.time; }
    /// Latitude, longitude [rad].
    std::span<const double> latitude() const { return columns.latitude; }
    std::span<const double> longitude() const { return columns.longitude; }
    /// Ellipsoidal height [m].
    std::span<const double> height() const { return columns.height; }
    /// Roll, pitch, yaw [rad] as stored (yaw = heading - wander angle, not wrapped).
    std::span<const double> roll() const { return columns.roll; }
    std::span<const double> pitch() const { return columns.pitch; }
    std::span<const double> yaw() const { return columns.yaw; }
    /// Velocity north, east, down [m/s].
    std::span<const double> velocityNorth() const { return columns.velocityNorth; }
    std::span<const double> velocityEast() const { return columns.velocityEast; }
    std::span<const double> velocityDown() const { return columns.velocityDown; }

    /// The gaps, in time order.
    std::span<const Gap> gaps() const { return gapList; }
    /// The files, in the order they were merged (by first time).
    std::span<const SourceFile> sources() const { return sourceList; }
    /// Epochs dropped where files overlap, and records left out as not VALID, over all files.
    std::size_t droppedOverlap() const;
    std::size_t droppedNotValid() const;

    TimeSpan timeSpan() const { return {columns.time.front(), columns.time.back()}; }
    const TrajectoryOptions& options() const { return settings; }

    /// Poses at `times`, read as `timeSpec` says, into `out` (see the class comment and
    /// PoseColumns). Without a known week (TrajectoryOptions::week) a time is matched by
    /// its seconds of week: it is taken in the week-long window that starts at the first
    /// epoch (a UTC time's week and TimeSpec::week are not used). With it, a time is placed
    /// in absolute GPS time; for TimeScale::gpsWeek that needs TimeSpec::week, without which
    /// the time is matched by seconds of week. UTC times use the library's fixed 18 leap
    /// seconds; a UTC time before 1970 is not valid.
    ///
    /// Throws ArgumentError naming the column of a length other than that of `times`, or the
    /// first time that is NaN or infinite ("times[17] is NaN"); the columns may then be partly
    /// written.
    void poses(std::span<const double> times, const TimeSpec& timeSpec, const PoseColumns& out,
               ThreadCount threads = ThreadCount(1)) const;

private:
    friend class TableBuilder;

    /// Leaves the elements a column grows by uninitialised: loading writes them right away.
    template <typename T>
    struct UninitializedAllocator : std::allocator<T> {
        template <typename U>
        struct rebind {
            using other = UninitializedAllocator<U>;
        };
        UninitializedAllocator() = default;
        template <typename U>
        UninitializedAllocator(const UninitializedAllocator<U>&) noexcept
        {
        }
        template <typename U>
        void construct(U* element) noexcept
        {
            ::new (static_cast<void*>(element)) U;
        }
        template <typename U, typename... Arguments>
        void construct(U* element, Arguments&&... arguments)
        {
            ::new (static_cast<void*>(element)) U(std::forward<Arguments>(arguments)...);
        }
    };
    using Column = std::vector<double, UninitializedAllocator<double>>;

    /// The epochs, one vector per quantity, all of one length.
    struct Columns {
        Column time;
        Column latitude;
        Column longitude;
        Column height;
        Column roll;
        Column pitch;
        Column yaw;
        Column velocityNorth;
        Column velocityEast;
        Column velocityDown;
    };

    TrajectoryTable() = default;

    Columns columns;
    std::vector<Gap> gapList;
    std::vector<SourceFile> sourceList;
    TrajectoryOptions settings;
};

} // namespace Kelvo::Geodesy::Batch
