// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Numbers.h"
#include "OutputFile.h"
#include "Progress.h"
#include "RequestedTimes.h"
#include "Table.h"
#include "TimeQueries.h"
#include "TimeText.h"

#include "Core/FileInfo.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/PositionAttitudeProviderFactory.h"
#include "Maths/IntervalCounter.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace Kelvo::Tool {
namespace {

using Maths::Situation;

std::vector<std::string> columns(bool day)
{
    return {day ? "utc_seconds_of_day" : "utc_time", "latitude_deg", "longitude_deg", "height_m", "roll_deg",
            "pitch_deg", "yaw_deg", "status"};
}

double degrees(Maths::Radian angle) { return Maths::Degree(angle); }

std::vector<Cell> row(double time, const Geodesy::TimedPositionAttitude& value)
{
    return {time,
            degrees(value.position.latitude),
            degrees(value.position.longitude),
            value.position.height,
            degrees(value.attitude.getRoll()),
            degrees(value.attitude.getPitch()),
            degrees(value.attitude.getYaw()),
            std::string("valid")};
}

/// Where the last lookup fell, read from the counts the provider keeps.
Situation counted(const Maths::IntervalCounter& before, const Maths::IntervalCounter& after)
{
    for (const Situation situation : {Situation::lower, Situation::upper}) {
        if (after[situation] > before[situation]) {
            return situation;
        }
    }
    return Situation::inside;
}

/// Checks a time as the library needs it: UTC seconds since 1970 from the GPS epoch on, or
/// UTC seconds of the day.
std::optional<std::string> badTime(double time, bool day)
{
    if (!std::isfinite(time)) {
        return "is not a time";
    }
    if (day && !(time >= 0.0 && time < Geodesy::SECONDS_IN_DAY())) {
        return "is not a second of the day (0 to 86400)";
    }
    if (!day && !(time >= Geodesy::GPS_EPOCH_IN_UNIX_SECONDS)) {
        return "lies before the GPS epoch (1980-01-06 = 315964800 s since 1970)";
    }
    return std::nullopt;
}

/// The times to answer, from whichever of --time, --times and --every was given.
RequestedTimes requestedTimes(const AtOptions& options, const Maths::Interval<double>& span)
{
    if (options.timesFile) {
        auto times = readTimesFile(*options.timesFile);
        for (const double time : times) {
            if (const auto problem = badTime(time, options.day)) {
                throw InputError(*options.timesFile, shortest(time) + " " + *problem);
            }
        }
        return RequestedTimes(std::move(times));
    }
    if (!options.every) {
        return RequestedTimes(options.times);
    }
    const auto [first, last] = span.data;
    if (options.day) {
        // GPS seconds of the week to UTC seconds of the day, on one UTC day.
        const double utcFirst = first - Geodesy::GPS_LEAP_SECONDS();
        const double utcLast = last - Geodesy::GPS_LEAP_SECONDS();
        const double day = std::floor(utcFirst / Geodesy::SECONDS_IN_DAY());
        if (std::floor(utcLast / Geodesy::SECONDS_IN_DAY()) != day) {
            throw UsageError("the files run over a UTC midnight, which seconds of the day cannot express: give --week "
                             "instead of --day");
        }
        const double offset = day * Geodesy::SECONDS_IN_DAY();
        return RequestedTimes::grid(utcFirst - offset, utcLast - offset, *options.every);
    }
    return RequestedTimes::grid(gpsToUnix(*options.week, first), gpsToUnix(*options.week, last), *options.every);
}

void checkUsage(const AtOptions& options)
{
    const int sources = (options.times.empty() ? 0 : 1) + (options.timesFile ? 1 : 0) + (options.every ? 1 : 0);
    if (sources != 1) {
        throw UsageError("give the times with one of --time, --times or --every");
    }
    if (options.every && !options.day && !options.week) {
        throw UsageError("--every needs --week N, the GPS week of the files (they hold seconds of week only), or --day");
    }
    if (options.week && *options.week < 0) {
        throw UsageError("--week must not be negative");
    }
    for (const double time : options.times) {
        if (const auto problem = badTime(time, options.day)) {
            throw UsageError("--time " + shortest(time) + " " + *problem);
        }
    }
    std::set<Path> extensions;
    for (const Path& file : options.files) {
        extensions.insert(file.extension());
    }
    if (extensions.size() > 1) {
        throw UsageError("give trajectory files of one format: the files have different extensions");
    }
}

} // namespace

void runAt(const AtOptions& options, Context& context)
{
    checkUsage(options);

    // Check every file first, so that a bad one is reported by name before any lookup.
    Maths::Interval<double> span;
    std::set<Core::FileInfo> files;
    for (const Path& path : options.files) {
        const FileFormat format = detectFormat(path);
        if (format == FileFormat::rtklib) {
            throw InputError(path, "an RTKLIB position file: at reads SBET and raw APX trajectories (see the gnss "
                                   "subcommand)");
        }
        const TrajectoryProbe probe = probeTrajectory(path, format, options.alignment);
        span.data.first = std::min(span.data.first, probe.interval.data.first);
        span.data.second = std::max(span.data.second, probe.interval.data.second);
        files.insert(Core::FileInfo(path));
    }
    const RequestedTimes times = requestedTimes(options, span);

    DataOutput output(context.out, options.output);
    MissingTimes missing;
    try {
        auto provider = Geodesy::PositionAttitudeProviderFactory().create(files, nullptr, options.alignment);
        if (!provider) {
            throw InputError(options.files.front(), "the library gives no position/attitude provider for it");
        }
        TableWriter table(output.stream(), columns(options.day),
                          options.json ? TableWriter::Style::json : TableWriter::Style::csv);
        Progress progress(context, "at", times.size());
        Maths::IntervalCounter counter;
        // Each answer is written as soon as it is known.
        for (std::uint64_t index = 0; index < times.size(); ++index) {
            progress.update(index + 1);
            const double time = times[index];
            const Maths::IntervalCounter before = counter;
            auto value = options.day ? provider->getPositionAttitudeOfDay(time, counter)
                                     : provider->getPositionAttitude(time, counter);
            if (value) {
                table.row(row(time, *value));
                continue;
            }
            const Situation situation = counted(before, counter);
            missing.add(situation);
            if (options.keepMissing) {
                table.row({time, std::monostate{}, std::monostate{}, std::monostate{}, std::monostate{},
                           std::monostate{}, std::monostate{}, "missing " + situationName(situation)});
            }
        }
        table.finish();
    } catch (const InputError&) {
        throw;
    } catch (const std::exception& exception) {
        throw InputError(options.files.front(), exception.what());
    }
    output.commit();
    missing.report(context.err, "at", times.size(), "the trajectory");
}

} // namespace Kelvo::Tool
