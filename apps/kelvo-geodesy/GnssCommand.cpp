// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Numbers.h"
#include "OutputFile.h"
#include "PosFile.h"
#include "Progress.h"
#include "RequestedTimes.h"
#include "Table.h"
#include "TimeQueries.h"

#include "Core/FileInfo.h"
#include "Geodesy/GNSS/GnssDataProviderFactory.h"
#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"
#include "Maths/Degree.h"

#include <cmath>

namespace Kelvo::Tool {
namespace {

std::vector<std::string> columns()
{
    return {"gps_week",          "gps_seconds_of_week", "latitude_deg",      "longitude_deg",     "height_m",
            "velocity_north_m_s", "velocity_east_m_s",  "velocity_down_m_s", "position_cov_xx",   "position_cov_xy",
            "position_cov_xz",   "position_cov_yy",     "position_cov_yz",   "position_cov_zz",   "velocity_cov_xx",
            "velocity_cov_xy",   "velocity_cov_xz",     "velocity_cov_yy",   "velocity_cov_yz",   "velocity_cov_zz",
            "status"};
}

std::vector<Cell> row(const Geodesy::GNSS::GnssData& data)
{
    const auto& p = data.positionCovariance;
    const auto& v = data.velocityCovariance;
    // The library keeps the negated height of the file; the table gives the height itself.
    return {static_cast<double>(data.gpsTime.weekNumber),
            data.gpsTime.secondsInWeek,
            static_cast<double>(Maths::Degree(data.position.latitude)),
            static_cast<double>(Maths::Degree(data.position.longitude)),
            -data.position.height,
            data.velocity.x,
            data.velocity.y,
            data.velocity.z,
            p.xx, p.xy, p.xz, p.yy, p.yz, p.zz,
            v.xx, v.xy, v.xz, v.yy, v.yz, v.zz,
            std::string("valid")};
}

std::vector<Cell> missingRow(double secondsOfWeek, Maths::Situation situation)
{
    std::vector<Cell> cells(columns().size());
    cells[1] = secondsOfWeek;
    cells.back() = "missing " + situationName(situation);
    return cells;
}

} // namespace

void runGnss(const GnssOptions& options, Context& context)
{
    if (options.every && !options.secondsOfWeek.empty()) {
        throw UsageError("give either --sow or --every, not both");
    }
    if (!options.every && options.secondsOfWeek.empty()) {
        throw UsageError("give the times with --sow or --every");
    }
    for (const double time : options.secondsOfWeek) {
        if (!(time == 0.0 || (std::isnormal(time) && time > 0.0 && time < Geodesy::SECONDS_IN_WEEK()))) {
            throw UsageError("--sow " + shortest(time) + " is not a GPS second of the week (0 to 604800)");
        }
    }

    const PosSummary summary = scanPosFile(options.file, options.velocityThreshold);
    if (summary.moving < 2 || !(summary.firstMoving < summary.lastMoving)) {
        throw InputError(options.file, "no used time interval: fewer than two records move at >= "
                                           + shortest(options.velocityThreshold) + " m/s (try a lower --velocity-threshold)");
    }

    DataOutput output(context.out, options.output);
    MissingTimes missing;
    std::uint64_t requested = 0;
    try {
        auto provider = Geodesy::GNSS::GnssDataProviderFactory().create({Core::FileInfo(options.file)},
                                                                        options.velocityThreshold);
        const auto* rtklib = dynamic_cast<const Geodesy::GNSS::RtkLibGnssDataProvider*>(provider.get());
        if (rtklib == nullptr) {
            throw InputError(options.file, "the library does not read it as an RTKLIB position file");
        }
        const auto used = rtklib->getTimeInterval();
        // The library answers up to the line before the last without reaching the end of the
        // file; --every stays within that.
        const double last = std::min(used.data.second, summary.secondToLast);
        const RequestedTimes times = options.every ? RequestedTimes::grid(used.data.first, last, *options.every)
                                                   : RequestedTimes(options.secondsOfWeek);

        TableWriter table(output.stream(), columns(), options.json ? TableWriter::Style::json : TableWriter::Style::csv);
        Progress progress(context, "gnss", times.size());
        // Each answer is written as soon as it is known.
        for (std::uint64_t index = 0; index < times.size(); ++index) {
            const double time = times[index];
            ++requested;
            progress.update(requested);
            if (auto data = provider->getGnssData(time)) {
                table.row(row(*data));
                continue;
            }
            const auto situation = time < used.data.first ? Maths::Situation::lower : Maths::Situation::upper;
            missing.add(situation);
            if (options.keepMissing) {
                table.row(missingRow(time, situation));
            }
        }
        table.finish();
    } catch (const InputError&) {
        throw;
    } catch (const UsageError&) {
        throw;
    } catch (const std::exception& exception) {
        throw InputError(options.file, exception.what());
    }
    output.commit();
    missing.report(context.err, "gnss", requested, "the used time interval");
}

} // namespace Kelvo::Tool
