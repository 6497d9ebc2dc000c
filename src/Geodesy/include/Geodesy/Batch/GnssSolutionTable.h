// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Batch/GnssColumn.h"
#include "Geodesy/Batch/GnssColumns.h"
#include "Geodesy/Batch/GnssFileDescription.h"
#include "Geodesy/Batch/GnssLoadOptions.h"
#include "Geodesy/Batch/ThreadCount.h"
#include "Geodesy/Batch/TimeScale.h"
#include "Geodesy/GNSS/CovarianceElements.h"
#include "Geodesy/GeodesyExport.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace Kelvo::Geodesy::Batch {

/// Every solution of one or more RTKLIB position files as columns, answered for whole arrays
/// of times. It reads every form RTKLIB writes: time as GPS week and seconds or as calendar
/// date and time, in GPST, UTC or JST; positions as latitude/longitude in degrees or
/// degrees-minutes-seconds, as ECEF x/y/z, or as an east/north/up baseline; with or without
/// velocities. Every column is kept: Q, ns, the standard deviations and covariance roots, age,
/// ratio, velocities (`GnssColumn` lists them with their units).
///
/// Time: rows are ordered by GPS time, held as seconds since the GPS epoch 1980-01-06T00:00:00
/// (`gpsTime()`), a double that resolves 2^-22 s (0.24 us) for dates from 2014 to 2048. UTC
/// and JST files are converted with the leap-second count of each line's own date
/// (`GnssTimeSystem`). Query times on `TimeScale::utc` are converted, like everywhere else in
/// the library, with the fixed 18 s: a UTC query of a date before 2017 therefore lands up to
/// 18 s away from the UTC time the file itself wrote.
///
/// Positions: every table gives geodetic latitude, longitude [rad] and the file's height [m],
/// positive up, as written; ECEF files through `CoordinateSystem::ecef2llh`, ENU baselines as
/// the reference position plus the baseline rotated to ECEF (without a `ref pos` header line
/// they have no geodetic columns). The file's own ECEF or ENU columns are kept beside them.
///
/// The table is immutable once loaded (it has only const member functions), so one table can
/// be shared by any number of threads without locking.
///
/// Failures of `load`: a file that cannot be opened throws std::system_error naming the path;
/// a malformed line (wrong field count, a field that is not a number, time going back, data
/// before the column-name header line), a file without any solution, or files of one set
/// that differ in form or overlap in time throw `FileFormatError` naming the file and line;
/// an empty set of paths or a bad `maxGap` throw `ArgumentError`.
class KELVO_GEODESY_EXPORT GnssSolutionTable {
public:
    /// Reads one RTKLIB position file.
    static GnssSolutionTable load(const std::filesystem::path& path, const GnssLoadOptions& options = {});

    /// Reads several position files of one campaign into one table ordered by time. The files
    /// may come in any order but must share their position and velocity forms (and, for ENU
    /// baselines, their reference position) and must not overlap in time.
    static GnssSolutionTable load(std::span<const std::filesystem::path> paths, const GnssLoadOptions& options = {});

    /// Number of solutions (rows).
    std::size_t size() const { return times.size(); }

    /// Time of each solution: GPS seconds since the GPS epoch, strictly increasing.
    std::span<const double> gpsTime() const { return times; }
    /// GPS week of a row's time.
    std::uint32_t week(std::size_t row) const;
    /// GPS seconds of the week of a row's time, in [0, 604800).
    double secondsOfWeek(std::size_t row) const;

    /// Whether the table carries `column`.
    bool has(GnssColumn column) const { return !columns[columnIndex(column)].empty(); }
    /// One value per row, or empty when the table does not carry `column`.
    std::span<const double> column(GnssColumn column) const { return columns[columnIndex(column)]; }
    std::span<const double> latitude() const { return column(GnssColumn::latitude); }
    std::span<const double> longitude() const { return column(GnssColumn::longitude); }
    std::span<const double> height() const { return column(GnssColumn::height); }
    /// Q per row: 1 fix, 2 float, 3 sbas, 4 dgps, 5 single, 6 ppp.
    std::span<const std::uint8_t> quality() const { return qualities; }
    /// Number of satellites (ns) per row.
    std::span<const std::uint16_t> satellites() const { return satelliteCounts; }

    /// The position covariance of a row [m^2] from its standard-deviation columns, in their
    /// frame: north/east/up (x = north) for geodetic and ENU files, ECEF x/y/z for ECEF files.
    GNSS::CovarianceElements positionCovariance(std::size_t row) const;
    /// The velocity covariance of a row [(m/s)^2] in the frame of its standard-deviation
    /// columns: north/east/UP for north/east/up velocities (the file's frame, not the table's
    /// down velocity), ECEF x/y/z for ECEF velocities; every element NaN without velocities.
    GNSS::CovarianceElements velocityCovariance(std::size_t row) const;
    /// RTKLIB's standard deviations and signed covariance roots to a covariance: sd^2 on the
    /// diagonal, sign(r) * r^2 off it; `sd12` is the root of element (1,2), `sd23` of (2,3),
    /// `sd31` of (3,1). Works as well on interpolated columns written by `at`.
    static GNSS::CovarianceElements covarianceFromSignedRoots(double sd1, double sd2, double sd3, double sd12,
                                                              double sd23, double sd31);

    /// The files' headers, ordered by time as their rows are.
    std::span<const GnssFileDescription> files() const { return descriptions; }
    /// The position form all files share.
    GnssPositionForm positionForm() const { return descriptions.front().positionForm; }
    /// The velocity form all files share; `none` means the velocity columns are absent.
    GnssVelocityForm velocityForm() const { return descriptions.front().velocityForm; }

    /// The longest step `at` interpolates across [s] (see `GnssLoadOptions::maxGap`).
    double maxGap() const { return gapLimit; }

    /// The solutions at `times`, read on `timeScale`, written into `out` (see
    /// `GnssColumns`). A time exactly on a solution gets that solution. A time between two
    /// solutions at most `maxGap()` apart gets every real column interpolated linearly in time
    /// (latitude and longitude too), the worse Q and the smaller ns of the two. Any other time
    /// (before the first or after the last solution, inside a gap) is not valid: NaN, Q 0,
    /// ns 0. Nothing is extrapolated.
    ///
    /// Sorted times are found by walking forward; unsorted ones cost at most a binary search
    /// each. `threads` splits the times into ranges (see `ThreadCount`); the answers are the
    /// same, bit for bit, for every thread count.
    ///
    /// Throws `ArgumentError` naming the argument for a time that is NaN or infinite, a
    /// `gpsWeek` scale without a week, or an output column whose length differs from the
    /// number of times; nothing is written then.
    void at(std::span<const double> times, const TimeSpec& timeScale, const GnssColumns& out,
            ThreadCount threads = ThreadCount{1}) const;

private:
    GnssSolutionTable() = default;

    /// The answers for times [begin, end), `gpsOffset` turning them into GPS seconds since
    /// the GPS epoch: one thread's share of `at`.
    void answerRange(std::span<const double> queryTimes, double gpsOffset, const GnssColumns& out, std::size_t begin,
                     std::size_t end) const;

    std::vector<double> times;
    std::array<std::vector<double>, GNSS_COLUMN_COUNT()> columns;
    std::vector<std::uint8_t> qualities;
    std::vector<std::uint16_t> satelliteCounts;
    std::vector<GnssFileDescription> descriptions;
    double gapLimit = 0.0;
};

} // namespace Kelvo::Geodesy::Batch
