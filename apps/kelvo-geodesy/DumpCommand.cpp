// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "OutputFile.h"
#include "Progress.h"
#include "Table.h"

#include "Core/FileInfo.h"
#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/Sbet/Reader.h"
#include "Geodesy/Smrmsg/Reader.h"

#include <limits>
#include <numbers>

namespace Kelvo::Tool {
namespace {

using Geodesy::Trajectory::Record;

std::string statusName(Record::Status status)
{
    switch (status) {
    case Record::Status::INVALID:
        return "invalid";
    case Record::Status::NOT_ALIGNED:
        return "not_aligned";
    case Record::Status::VALID:
        return "valid";
    }
    return "unknown";
}

/// Column names and the factor that turns the stored value into the printed one.
struct Layout {
    std::vector<std::string> columns;
    double angle; // radians or arc-minutes to the printed angle unit
};

Layout trajectoryLayout(bool radians)
{
    const std::string a = radians ? "_rad" : "_deg";
    return {{"gps_seconds_of_week", "latitude" + a,       "longitude" + a,      "height_m",           "velocity_x_m_s",
             "velocity_y_m_s",      "velocity_z_m_s",     "roll" + a,           "pitch" + a,          "heading" + a,
             "wander_angle" + a,    "force_x_m_s2",       "force_y_m_s2",       "force_z_m_s2",       "angular_rate_x" + a + "_s",
             "angular_rate_y" + a + "_s", "angular_rate_z" + a + "_s", "status"},
            radians ? 1.0 : 180.0 / std::numbers::pi};
}

std::vector<Cell> trajectoryRow(const Record& r, double angle)
{
    return {r.time,          r.latitude * angle,     r.longitude * angle,    r.height,
            r.velocityX,     r.velocityY,            r.velocityZ,            r.roll * angle,
            r.pitch * angle, r.heading * angle,      r.wanderAngle * angle,  r.forceX,
            r.forceY,        r.forceZ,               r.angularRateX * angle, r.angularRateY * angle,
            r.angularRateZ * angle, statusName(r.status)};
}

Layout smrmsgLayout(bool radians)
{
    const std::string a = radians ? "_rad" : "_deg";
    return {{"gps_seconds_of_week", "north_position_rms_m", "east_position_rms_m", "down_position_rms_m",
             "north_velocity_rms_m_s", "east_velocity_rms_m_s", "down_velocity_rms_m_s", "roll_rms" + a,
             "pitch_rms" + a, "heading_rms" + a},
            (radians ? std::numbers::pi / 180.0 : 1.0) / 60.0};
}

std::vector<Cell> smrmsgRow(const Geodesy::Smrmsg::Record& r, double angle)
{
    return {r.time,
            r.northPositionRms,
            r.eastPositionRms,
            r.downPositionRms,
            r.northVelocityRms,
            r.eastVelocityRms,
            r.downVelocityRms,
            r.rollRms * angle,
            r.pitchRms * angle,
            r.headingRms * angle};
}

/// Writes the records of `reader` until its end or `limit` records.
template <typename Reader, typename ToRow>
void dumpRecords(Reader& reader, TableWriter& table, std::uint64_t limit, std::uint64_t total, Context& context,
                 ToRow toRow)
{
    Progress progress(context, "dump", std::min(limit, total));
    for (std::uint64_t count = 0; count < limit; ++count) {
        const auto record = reader.getNext();
        if (reader.endOfFile()) {
            break;
        }
        table.row(toRow(record));
        progress.update(count);
    }
}

} // namespace

void runDump(const DumpOptions& options, Context& context)
{
    const FileFormat format = detectFormat(options.file, options.format);
    if (format == FileFormat::rtklib) {
        throw InputError(options.file, "dump reads the binary SBET, raw APX and SMRMSG files; an RTKLIB position "
                                       "file is text already (give --format to read it as another format)");
    }
    const std::uint64_t limit = options.limit.value_or(std::numeric_limits<std::uint64_t>::max());

    DataOutput output(context.out, options.output);
    try {
        if (format == FileFormat::smrmsg) {
            const SmrmsgProbe probe = probeSmrmsg(options.file);
            const Layout layout = smrmsgLayout(options.radians);
            TableWriter table(output.stream(), layout.columns);
            Geodesy::Smrmsg::Reader reader{Core::FileInfo(options.file)};
            dumpRecords(reader, table, limit, probe.count, context,
                        [&](const Geodesy::Smrmsg::Record& record) { return smrmsgRow(record, layout.angle); });
        } else {
            const TrajectoryProbe probe = probeTrajectory(options.file, format, options.alignment);
            const Layout layout = trajectoryLayout(options.radians);
            TableWriter table(output.stream(), layout.columns);
            const Core::FileInfo file(options.file);
            const auto toRow = [&](const Record& record) { return trajectoryRow(record, layout.angle); };
            if (format == FileFormat::apxRaw) {
                Geodesy::ApxRaw::Reader reader(file, options.alignment);
                dumpRecords(reader, table, limit, probe.count, context, toRow);
            } else {
                Geodesy::Sbet::Reader reader(file, options.alignment);
                dumpRecords(reader, table, limit, probe.count, context, toRow);
            }
        }
    } catch (const InputError&) {
        throw;
    } catch (const std::exception& exception) {
        throw InputError(options.file, exception.what());
    }
    output.commit();
}

} // namespace Kelvo::Tool
