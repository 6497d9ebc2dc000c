// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Numbers.h"
#include "OutputFile.h"
#include "PosFile.h"
#include "TimeText.h"

#include "Core/FileInfo.h"
#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/CoordinateSystem/UTM.h"
#include "Geodesy/GNSS/GnssDataProviderFactory.h"
#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"

#include <set>
#include <sstream>

namespace Kelvo::Tool {
namespace {

using Geodesy::Trajectory::Record;

/// "  label           value": the lines of one file's report.
void field(std::ostream& out, const std::string& label, const std::string& value)
{
    out << "  " << label << std::string(label.size() < 16 ? 16 - label.size() : 1, ' ') << value << '\n';
}

void timeFields(std::ostream& out, double first, double last, std::optional<std::int64_t> week,
                std::optional<std::int64_t> lastWeek, std::uint64_t count)
{
    lastWeek = lastWeek ? lastWeek : week;
    std::string weekText = " (GPS week unknown; give --week)";
    if (week) {
        weekText = " (week " + std::to_string(*week) + (*lastWeek != *week ? " to " + std::to_string(*lastWeek) : "") + ")";
    }
    field(out, "GPS time", fixed(first, 3) + " .. " + fixed(last, 3) + " s of week" + weekText);
    // A file that runs over the end of a week counts its last seconds in the next week.
    const double lastOffset =
        week && lastWeek ? static_cast<double>(*lastWeek - *week) * Geodesy::SECONDS_IN_WEEK() : 0.0;
    if (week) {
        field(out, "UTC time", calendarText(gpsToUnix(*week, first)) + " .. " + calendarText(gpsToUnix(*week, last + lastOffset)));
    } else {
        const double leap = Geodesy::GPS_LEAP_SECONDS();
        field(out, "UTC time", weekdayText(first - leap) + " .. " + weekdayText(last - leap));
    }
    const double duration = last + lastOffset - first;
    field(out, "duration", fixed(duration, 3) + " s");
    if (duration > 0.0 && count > 1) {
        field(out, "mean rate", fixed(static_cast<double>(count - 1) / duration, 3) + " Hz");
    }
}

void positionFields(std::ostream& out, const Geodesy::LatLonHeight& position)
{
    const Maths::Degree latitude(position.latitude);
    const Maths::Degree longitude(position.longitude);
    field(out, "first position", fixed(latitude, 9) + " deg, " + fixed(longitude, 9) + " deg, " + fixed(position.height, 3) + " m");
    const int zone = Geodesy::CoordinateSystem::UTM::zone(position);
    field(out, "UTM zone", std::to_string(std::abs(zone)) + (zone < 0 ? "S" : "N") + " (EPSG:"
                               + std::to_string(Geodesy::CoordinateSystem::UTM::epsgWGS84(zone)) + ")");
}

/// The time of the first record that the reader grades VALID, and how many came before it.
std::optional<std::pair<double, std::uint64_t>> firstUsable(const Path& path, Alignment alignment)
{
    Geodesy::ApxRaw::Reader reader(Core::FileInfo(path), alignment);
    for (std::uint64_t index = 0;; ++index) {
        const Record record = reader.getNext();
        if (reader.endOfFile()) {
            return std::nullopt;
        }
        if (record.status == Record::Status::VALID) {
            return std::pair{record.time, index};
        }
    }
}

void trajectoryInfo(std::ostream& out, const Path& path, FileFormat format, const InfoOptions& options)
{
    const TrajectoryProbe probe = probeTrajectory(path, format, options.alignment);
    field(out, "format", formatName(format));
    field(out, "records", std::to_string(probe.count));
    timeFields(out, probe.interval.data.first, probe.interval.data.second, options.week, std::nullopt, probe.count);
    positionFields(out, Geodesy::LatLonHeight(Maths::Radian(probe.first.latitude), Maths::Radian(probe.first.longitude),
                                              probe.first.height));
    if (format == FileFormat::apxRaw) {
        const auto usable = firstUsable(path, options.alignment);
        field(out, "aligned from", usable ? fixed(usable->first, 3) + " s of week (" + std::to_string(usable->second)
                                                + " records before it are not aligned)"
                                          : std::string("never: no record reaches the required alignment"));
    }
}

void smrmsgInfo(std::ostream& out, const Path& path, const InfoOptions& options)
{
    const SmrmsgProbe probe = probeSmrmsg(path);
    field(out, "format", formatName(FileFormat::smrmsg));
    field(out, "records", std::to_string(probe.count));
    timeFields(out, probe.first.time, probe.last.time, options.week, std::nullopt, probe.count);
    const auto& first = probe.first;
    field(out, "first RMS", "position " + fixed(first.northPositionRms, 3) + " " + fixed(first.eastPositionRms, 3) + " "
                                + fixed(first.downPositionRms, 3) + " m, velocity " + fixed(first.northVelocityRms, 3) + " "
                                + fixed(first.eastVelocityRms, 3) + " " + fixed(first.downVelocityRms, 3)
                                + " m/s, attitude " + fixed(first.rollRms, 3) + " " + fixed(first.pitchRms, 3) + " "
                                + fixed(first.headingRms, 3) + " arcmin");
}

void posInfo(std::ostream& out, const Path& path, const InfoOptions& options)
{
    const PosSummary summary = scanPosFile(path, options.velocityThreshold);
    field(out, "format", formatName(FileFormat::rtklib));
    field(out, "records", std::to_string(summary.count)
                              + (summary.stoppedAtLine ? " (reading stops at line " + std::to_string(*summary.stoppedAtLine)
                                                             + ", which is not a data line)"
                                                       : ""));
    timeFields(out, summary.first.secondsOfWeek, summary.last.secondsOfWeek, summary.first.week, summary.last.week,
               summary.count);
    positionFields(out, Geodesy::LatLonHeight(Maths::Radian(Maths::Degree(summary.first.latitude)),
                                              Maths::Radian(Maths::Degree(summary.first.longitude)), summary.first.height));

    const std::string threshold = " at >= " + shortest(options.velocityThreshold) + " m/s";
    if (summary.moving < 2 || !(summary.firstMoving < summary.lastMoving)) {
        field(out, "used interval", "none: fewer than two records move" + threshold);
        return;
    }
    // The library decides the used interval; the scan above only makes sure it exists.
    auto provider = Geodesy::GNSS::GnssDataProviderFactory().create({Core::FileInfo(path)}, options.velocityThreshold);
    const auto* rtklib = dynamic_cast<const Geodesy::GNSS::RtkLibGnssDataProvider*>(provider.get());
    if (rtklib == nullptr) {
        throw InputError(path, "the library does not read it as an RTKLIB position file");
    }
    const auto used = rtklib->getTimeInterval();
    field(out, "used interval", fixed(used.data.first, 3) + " .. " + fixed(used.data.second, 3) + " s of week" + threshold
                                    + " (" + fixed(used.data.second - used.data.first, 3) + " s)");
}

} // namespace

void runInfo(const InfoOptions& options, Context& context)
{
    DataOutput output(context.out, options.output);
    bool first = true;
    for (const Path& path : options.files) {
        // A file's report is written once it is complete, so that an error stands alone.
        std::ostringstream out;
        out << (first ? "" : "\n") << path.string() << '\n';
        first = false;
        switch (const FileFormat format = detectFormat(path, options.format)) {
        case FileFormat::sbet:
        case FileFormat::apxRaw:
            trajectoryInfo(out, path, format, options);
            break;
        case FileFormat::smrmsg:
            smrmsgInfo(out, path, options);
            break;
        case FileFormat::rtklib:
            posInfo(out, path, options);
            break;
        }
        output.stream() << out.str();
    }
    output.commit();
}

} // namespace Kelvo::Tool
