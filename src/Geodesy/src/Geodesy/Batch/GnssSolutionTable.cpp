// SPDX-License-Identifier: MIT
#include "Geodesy/Batch/GnssSolutionTable.h"

#include "Geodesy/Batch/ArgumentError.h"
#include "Geodesy/Batch/FileFormatError.h"
#include "Geodesy/GPSTime.h"
#include "RtklibPosReader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Kelvo::Geodesy::Batch {
namespace {

constexpr std::size_t NO_ROW = std::numeric_limits<std::size_t>::max();
constexpr double NOT_VALID = std::numeric_limits<double>::quiet_NaN();

/// The column `offset` places after `first` in `GnssColumn`'s order.
GnssColumn after(GnssColumn first, std::size_t offset)
{
    return static_cast<GnssColumn>(columnIndex(first) + offset);
}

/// The most common step between neighbouring times, counted to the millisecond (the
/// times' last bits differ from step to step); the smaller one on a tie, 0 for one time.
double mostCommonStep(std::span<const double> times)
{
    std::vector<std::pair<std::int64_t, std::size_t>> counts;
    std::int64_t runStep = 0;
    std::size_t runLength = 0;
    const auto flush = [&counts](std::int64_t step, std::size_t length) {
        const auto found = std::ranges::find(counts, step, &std::pair<std::int64_t, std::size_t>::first);
        if (found == counts.end()) {
            counts.emplace_back(step, length);
        } else {
            found->second += length;
        }
    };
    // Steps come in long runs of one value: count runs, not steps.
    for (std::size_t i = 1; i < times.size(); ++i) {
        const std::int64_t step = std::llround((times[i] - times[i - 1]) * 1000.0);
        if (runLength != 0 && step != runStep) {
            flush(runStep, runLength);
            runLength = 0;
        }
        runStep = step;
        ++runLength;
    }
    if (runLength == 0) {
        return 0.0;
    }
    flush(runStep, runLength);
    const auto best = std::ranges::min_element(counts, [](const auto& a, const auto& b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    return static_cast<double>(best->first) / 1000.0;
}

/// Files of one table must give the same columns with the same meaning.
void checkSameForms(const GnssFileDescription& file, const GnssFileDescription& first)
{
    const auto columnsOf = [](GnssPositionForm form) {
        return form == GnssPositionForm::geodeticDms ? GnssPositionForm::geodeticDegrees : form;
    };
    std::string problem;
    if (columnsOf(file.positionForm) != columnsOf(first.positionForm)) {
        problem = "its positions are of another form than those of ";
    } else if (file.velocityForm != first.velocityForm) {
        problem = "its velocity columns differ from those of ";
    } else if (file.positionForm == GnssPositionForm::enuBaseline
               && !(file.referencePosition == first.referencePosition)) {
        problem = "its baselines start from another reference position than those of ";
    }
    if (!problem.empty()) {
        throw FileFormatError(file.path, problem + first.path.string());
    }
}

/// "GPS week 2244 36000.000000 s", for error messages.
std::string weekText(double gpsSeconds)
{
    const double week = std::floor(gpsSeconds / SECONDS_IN_WEEK());
    return "GPS week " + std::to_string(static_cast<std::int64_t>(week)) + " "
         + std::to_string(gpsSeconds - week * SECONDS_IN_WEEK()) + " s";
}

/// The last row at or before `time`, NO_ROW when `time` comes before the first row. From a
/// row `hint` at or before `time` it gallops forward (steps 1, 2, 4, ...), so sorted query
/// times cost a step or two each and no time costs more than about two binary searches.
std::size_t rowAtOrBefore(std::span<const double> times, double time, std::size_t hint)
{
    if (hint == NO_ROW || times[hint] > time) {
        const auto above = std::ranges::upper_bound(times, time);
        return above == times.begin() ? NO_ROW : static_cast<std::size_t>(above - times.begin()) - 1;
    }
    std::size_t low = hint;
    std::size_t step = 1;
    while (low + step < times.size() && times[low + step] <= time) {
        low += step;
        step *= 2;
    }
    const auto above = std::upper_bound(times.begin() + static_cast<std::ptrdiff_t>(low) + 1,
                                        times.begin() + static_cast<std::ptrdiff_t>(std::min(low + step, times.size())),
                                        time);
    return static_cast<std::size_t>(above - times.begin()) - 1;
}

/// What a `TimeSpec` adds to its times to make GPS seconds since the GPS epoch.
double gpsOffset(const TimeSpec& timeScale)
{
    switch (timeScale.scale) {
    case TimeScale::utc:
        return GPS_LEAP_SECONDS() - GPS_EPOCH_IN_UNIX_SECONDS;
    case TimeScale::gpsWeek:
        if (!timeScale.week) {
            throw ArgumentError("timeScale.week is missing: TimeScale::gpsWeek needs the GPS week of the times");
        }
        return static_cast<double>(*timeScale.week) * SECONDS_IN_WEEK();
    case TimeScale::gpsAdjusted:
        return GPS_ADJUSTED_TIME_OFFSET;
    }
    throw ArgumentError("timeScale.scale is not a TimeScale value");
}

} // namespace

GnssSolutionTable GnssSolutionTable::load(const std::filesystem::path& path, const GnssLoadOptions& options)
{
    return load(std::span(&path, 1), options);
}

GnssSolutionTable GnssSolutionTable::load(std::span<const std::filesystem::path> paths, const GnssLoadOptions& options)
{
    if (paths.empty()) {
        throw ArgumentError("paths is empty: no RTKLIB position file to load");
    }
    if (options.maxGap && !(std::isfinite(*options.maxGap) && *options.maxGap >= 0.0)) {
        throw ArgumentError("options.maxGap is " + std::to_string(*options.maxGap)
                            + ": it must be a finite number of seconds, not negative");
    }
    std::vector<RtklibPosSolutions> files;
    files.reserve(paths.size());
    for (const auto& path : paths) {
        files.push_back(readRtklibPos(path));
    }
    std::ranges::stable_sort(files, {}, [](const RtklibPosSolutions& file) { return file.times.front(); });

    GnssSolutionTable table;
    for (std::size_t i = 0; i < files.size(); ++i) {
        RtklibPosSolutions& file = files[i];
        if (i != 0) {
            // The files before this one have handed their rows and descriptions to the table.
            checkSameForms(file.description, table.descriptions.front());
            if (!(file.times.front() > table.times.back())) {
                throw FileFormatError(file.description.path,
                                      "overlaps " + table.descriptions.back().path.string()
                                          + ": its first solution, at " + weekText(file.times.front())
                                          + ", is not after that file's last, at " + weekText(table.times.back()));
            }
        }
        file.description.firstRow = table.times.size();
        if (files.size() == 1) {
            table.times = std::move(file.times);
            table.columns = std::move(file.columns);
            table.qualities = std::move(file.qualities);
            table.satelliteCounts = std::move(file.satellites);
        } else {
            table.times.insert(table.times.end(), file.times.begin(), file.times.end());
            for (std::size_t c = 0; c < GNSS_COLUMN_COUNT(); ++c) {
                table.columns[c].insert(table.columns[c].end(), file.columns[c].begin(), file.columns[c].end());
            }
            table.qualities.insert(table.qualities.end(), file.qualities.begin(), file.qualities.end());
            table.satelliteCounts.insert(table.satelliteCounts.end(), file.satellites.begin(), file.satellites.end());
        }
        table.descriptions.push_back(std::move(file.description));
    }
    table.gapLimit = options.maxGap ? *options.maxGap : 1.5 * mostCommonStep(table.times);
    return table;
}

std::uint32_t GnssSolutionTable::week(std::size_t row) const
{
    return static_cast<std::uint32_t>(std::floor(times[row] / SECONDS_IN_WEEK()));
}

double GnssSolutionTable::secondsOfWeek(std::size_t row) const
{
    return times[row] - static_cast<double>(week(row)) * SECONDS_IN_WEEK();
}

GNSS::CovarianceElements GnssSolutionTable::covarianceFromSignedRoots(double sd1, double sd2, double sd3, double sd12,
                                                                      double sd23, double sd31)
{
    // sign(r) * r^2, with the sign of -0 kept.
    const auto signedSquare = [](double root) { return root * std::fabs(root); };
    GNSS::CovarianceElements covariance;
    covariance.xx = sd1 * sd1;
    covariance.yy = sd2 * sd2;
    covariance.zz = sd3 * sd3;
    covariance.xy = signedSquare(sd12);
    covariance.yz = signedSquare(sd23);
    covariance.xz = signedSquare(sd31);
    return covariance;
}

GNSS::CovarianceElements GnssSolutionTable::positionCovariance(std::size_t row) const
{
    const GnssColumn first = positionForm() == GnssPositionForm::ecef ? GnssColumn::sdx : GnssColumn::sdn;
    const auto value = [&](std::size_t offset) { return column(after(first, offset))[row]; };
    return covarianceFromSignedRoots(value(0), value(1), value(2), value(3), value(4), value(5));
}

GNSS::CovarianceElements GnssSolutionTable::velocityCovariance(std::size_t row) const
{
    if (velocityForm() == GnssVelocityForm::none) {
        return covarianceFromSignedRoots(NOT_VALID, NOT_VALID, NOT_VALID, NOT_VALID, NOT_VALID, NOT_VALID);
    }
    const GnssColumn first = velocityForm() == GnssVelocityForm::ecef ? GnssColumn::sdvx : GnssColumn::sdvn;
    const auto value = [&](std::size_t offset) { return column(after(first, offset))[row]; };
    return covarianceFromSignedRoots(value(0), value(1), value(2), value(3), value(4), value(5));
}

void GnssSolutionTable::at(std::span<const double> queryTimes, const TimeSpec& timeScale, const GnssColumns& out,
                           ThreadCount threads) const
{
    const double offset = gpsOffset(timeScale);
    const std::size_t count = queryTimes.size();
    const auto checkLength = [count](std::size_t length, std::string_view name) {
        if (length != 0 && length != count) {
            throw ArgumentError("out." + std::string(name) + " holds " + std::to_string(length) + " values for "
                                + std::to_string(count) + " times");
        }
    };
    for (std::size_t c = 0; c < GNSS_COLUMN_COUNT(); ++c) {
        checkLength(out.values[c].size(), columnName(static_cast<GnssColumn>(c)));
    }
    checkLength(out.quality.size(), "quality");
    checkLength(out.satellites.size(), "satellites");
    checkLength(out.valid.size(), "valid");
    for (std::size_t i = 0; i < count; ++i) {
        if (!std::isfinite(queryTimes[i])) {
            const char* what = std::isnan(queryTimes[i]) ? "NaN" : "infinite";
            throw ArgumentError("times[" + std::to_string(i) + "] is " + what);
        }
    }
    threads.forEachRange(count, [&](std::size_t begin, std::size_t end) {
        answerRange(queryTimes, offset, out, begin, end);
    });
}

void GnssSolutionTable::answerRange(std::span<const double> queryTimes, double gpsOffset, const GnssColumns& out,
                                    std::size_t begin, std::size_t end) const
{
    // Times go in blocks: first where each one falls, then column after column, so that
    // every output array is written in one sequential sweep per block.
    constexpr std::size_t BLOCK = 512;
    std::array<std::size_t, BLOCK> lower{};
    std::array<std::size_t, BLOCK> upper{};
    std::array<double, BLOCK> weight{};
    std::size_t hint = NO_ROW;
    for (std::size_t first = begin; first < end; first += BLOCK) {
        const std::size_t n = std::min(BLOCK, end - first);
        for (std::size_t j = 0; j < n; ++j) {
            const double time = queryTimes[first + j] + gpsOffset;
            const std::size_t row = rowAtOrBefore(times, time, hint);
            lower[j] = NO_ROW;
            if (row == NO_ROW) {
                continue;
            }
            hint = row;
            if (times[row] == time) {
                lower[j] = row;
                upper[j] = row;
                weight[j] = 0.0;
            } else if (row + 1 < times.size() && times[row + 1] - times[row] <= gapLimit) {
                lower[j] = row;
                upper[j] = row + 1;
                weight[j] = (time - times[row]) / (times[row + 1] - times[row]);
            }
        }

        for (std::size_t c = 0; c < GNSS_COLUMN_COUNT(); ++c) {
            if (out.values[c].empty()) {
                continue;
            }
            double* target = out.values[c].data() + first;
            const std::vector<double>& source = columns[c];
            if (source.empty()) {
                std::fill_n(target, n, NOT_VALID);
                continue;
            }
            for (std::size_t j = 0; j < n; ++j) {
                if (lower[j] == NO_ROW) {
                    target[j] = NOT_VALID;
                } else {
                    const double a = source[lower[j]];
                    // A time on a solution takes its value as is (-0 stays -0).
                    target[j] = weight[j] == 0.0 ? a : a + (source[upper[j]] - a) * weight[j];
                }
            }
        }
        for (std::size_t j = 0; j < n && !out.quality.empty(); ++j) {
            out.quality[first + j] = lower[j] == NO_ROW ? 0 : std::max(qualities[lower[j]], qualities[upper[j]]);
        }
        for (std::size_t j = 0; j < n && !out.satellites.empty(); ++j) {
            out.satellites[first + j] =
                lower[j] == NO_ROW ? 0 : std::min(satelliteCounts[lower[j]], satelliteCounts[upper[j]]);
        }
        for (std::size_t j = 0; j < n && !out.valid.empty(); ++j) {
            out.valid[first + j] = lower[j] == NO_ROW ? 0 : 1;
        }
    }
}

} // namespace Kelvo::Geodesy::Batch
