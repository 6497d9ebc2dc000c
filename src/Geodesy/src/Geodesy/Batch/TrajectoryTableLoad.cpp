// SPDX-License-Identifier: MIT
// Loading a trajectory table: each file through its reader into columns of its own, then the
// files merged by time.
#include "Geodesy/Batch/TrajectoryTable.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/Batch/ArgumentError.h"
#include "Geodesy/Batch/FileFormatError.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/Sbet/Reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace Kelvo::Geodesy::Batch {
namespace {

/// Half a week [s]: a backward jump larger than this is the week rolling over.
constexpr double HALF_WEEK = SECONDS_IN_WEEK() / 2.0;

/// `seconds` in its shortest form that reads back as the same double.
std::string formatSeconds(double seconds)
{
    char text[32];
    const auto result = std::to_chars(text, text + sizeof(text), seconds);
    return std::string(text, result.ptr);
}

bool isRawApx(const Core::FileInfo& file)
{
    return file.getPath().extension() == ApxRaw::Reader::FILE_EXTENSION();
}

/// The format of the whole set: the option, or the one extension rule for every file.
TrajectoryFormat formatOf(std::span<const Core::FileInfo> files, TrajectoryFormat format)
{
    if (format != TrajectoryFormat::automatic) {
        return format;
    }
    const bool firstIsApx = isRawApx(files.front());
    for (std::size_t i = 1; i < files.size(); ++i) {
        if (isRawApx(files[i]) != firstIsApx) {
            const auto& apx = firstIsApx ? files.front() : files[i];
            const auto& sbet = firstIsApx ? files[i] : files.front();
            throw ArgumentError("files mix raw APX (\"" + apx.getPath().string() + "\") and SBET (\""
                                + sbet.getPath().string() + "\"); give them one format");
        }
    }
    return firstIsApx ? TrajectoryFormat::apx : TrajectoryFormat::sbet;
}

} // namespace

/// Builds tables; a friend of TrajectoryTable, so that the columns are filled in place.
class TableBuilder {
public:
    static TrajectoryTable build(std::span<const Core::FileInfo> files, const TrajectoryOptions& options)
    {
        if (files.empty()) {
            throw ArgumentError("files is empty: a trajectory needs at least one file");
        }
        if (!(options.maxGap > 0.0)) {
            throw ArgumentError("maxGap is " + formatSeconds(options.maxGap) + " s: it must be positive");
        }
        const TrajectoryFormat format = formatOf(files, options.format);
        std::vector<FileEpochs> loaded;
        loaded.reserve(files.size());
        for (const auto& file : files) {
            loaded.push_back(format == TrajectoryFormat::apx ? read<ApxRaw::Reader>(file, options, true)
                                                             : read<Sbet::Reader>(file, options, false));
        }
        placeInWeeks(loaded);

        TrajectoryTable table;
        table.settings = options;
        merge(loaded, table);
        findGaps(table);
        return table;
    }

private:
    using Columns = TrajectoryTable::Columns;

    struct FileEpochs {
        TrajectoryTable::SourceFile source;
        Columns columns;
    };

    static void reserve(Columns& columns, std::size_t count)
    {
        for (auto* column : all(columns)) {
            column->reserve(count);
        }
    }

    static std::array<std::vector<double>*, 10> all(Columns& c)
    {
        return {&c.time, &c.latitude, &c.longitude,    &c.height,       &c.roll,
                &c.pitch, &c.yaw,     &c.velocityNorth, &c.velocityEast, &c.velocityDown};
    }

    /// Every VALID record of one file, its times made continuous across a week rollover.
    template <typename Reader>
    static FileEpochs read(const Core::FileInfo& file, const TrajectoryOptions& options, bool rawApx)
    {
        FileEpochs epochs;
        epochs.source.path = file.getPath();
        auto reader = open<Reader>(file, options);
        Columns& c = epochs.columns;
        reserve(c, static_cast<std::size_t>(reader->getCount()));

        double weekShift = 0.0;
        double previous = -std::numeric_limits<double>::infinity();
        for (std::size_t index = 0;; ++index) {
            const Trajectory::Record record = reader->getNext();
            if (reader->endOfFile()) {
                break;
            }
            ++epochs.source.records;
            if (record.status != Trajectory::Record::VALID) {
                ++epochs.source.notValid;
                continue;
            }
            if (!std::isfinite(record.time)) {
                throw FileFormatError(file.getPath(), "record " + std::to_string(index) + ": time is "
                                                          + formatSeconds(record.time));
            }
            double time = record.time + weekShift;
            if (time < previous) {
                if (previous - time <= HALF_WEEK) {
                    throw FileFormatError(file.getPath(), "record " + std::to_string(index) + ": time goes back from "
                                                              + formatSeconds(previous) + " to " + formatSeconds(time)
                                                              + " s");
                }
                weekShift += SECONDS_IN_WEEK();
                time = record.time + weekShift;
            }
            previous = time;

            c.time.push_back(time);
            c.latitude.push_back(record.latitude);
            c.longitude.push_back(record.longitude);
            c.height.push_back(record.height);
            c.roll.push_back(record.roll);
            c.pitch.push_back(record.pitch);
            // The true heading, as TimedPositionAttitude::fromSbet has it (unwrapped).
            c.yaw.push_back(record.heading - record.wanderAngle);
            if (rawApx) {
                // Raw APX velocities are north, east, down already.
                c.velocityNorth.push_back(record.velocityX);
                c.velocityEast.push_back(record.velocityY);
                c.velocityDown.push_back(record.velocityZ);
            } else {
                // SBET velocities: x and y turned by the wander angle from north and west, z up.
                const double cosWander = std::cos(record.wanderAngle);
                const double sinWander = std::sin(record.wanderAngle);
                c.velocityNorth.push_back(record.velocityX * cosWander - record.velocityY * sinWander);
                c.velocityEast.push_back(-record.velocityX * sinWander - record.velocityY * cosWander);
                c.velocityDown.push_back(-record.velocityZ);
            }
        }
        epochs.source.used = c.time.size();
        if (c.time.empty()) {
            throw FileFormatError(file.getPath(), "no VALID record among its " + std::to_string(epochs.source.records)
                                                      + " records");
        }
        epochs.source.firstTime = c.time.front();
        epochs.source.lastTime = c.time.back();
        return epochs;
    }

    /// The reader of `file`. A file that is not a whole number of records is a FileFormatError;
    /// one that cannot be opened keeps the reader's std::system_error.
    template <typename Reader>
    static std::unique_ptr<Reader> open(const Core::FileInfo& file, const TrajectoryOptions& options)
    {
        try {
            return std::make_unique<Reader>(file, options.alignment);
        } catch (const std::system_error&) {
            throw;
        } catch (const std::runtime_error& error) {
            throw FileFormatError(file.getPath(), error.what());
        }
    }

    /// Files that start more than half a week after the earliest belong to the week before:
    /// the others, starting early in the week, are moved to the next week.
    static void placeInWeeks(std::vector<FileEpochs>& files)
    {
        double latestStart = -std::numeric_limits<double>::infinity();
        for (const auto& file : files) {
            latestStart = std::max(latestStart, file.columns.time.front());
        }
        for (auto& file : files) {
            if (latestStart - file.columns.time.front() > HALF_WEEK) {
                for (double& time : file.columns.time) {
                    time += SECONDS_IN_WEEK();
                }
                file.source.firstTime = file.columns.time.front();
                file.source.lastTime = file.columns.time.back();
            }
        }
    }

    /// The files by first time (ties in the given order); an epoch not after the last kept one
    /// is dropped, so the earlier file wins where files overlap.
    static void merge(std::vector<FileEpochs>& files, TrajectoryTable& table)
    {
        std::stable_sort(files.begin(), files.end(), [](const FileEpochs& a, const FileEpochs& b) {
            return a.columns.time.front() < b.columns.time.front();
        });
        table.sourceList.reserve(files.size());
        if (files.size() == 1) {
            table.columns = std::move(files.front().columns);
            table.sourceList.push_back(std::move(files.front().source));
            return;
        }
        std::size_t total = 0;
        for (const auto& file : files) {
            total += file.columns.time.size();
        }
        Columns& out = table.columns;
        reserve(out, total);
        for (auto& file : files) {
            auto& source = file.source;
            Columns& in = file.columns;
            const auto from = all(in);
            const auto to = all(out);
            source.used = 0;
            source.firstTime = source.lastTime = std::numeric_limits<double>::quiet_NaN();
            for (std::size_t i = 0; i < in.time.size(); ++i) {
                if (!out.time.empty() && !(in.time[i] > out.time.back())) {
                    ++source.overlap;
                    continue;
                }
                for (std::size_t column = 0; column < from.size(); ++column) {
                    to[column]->push_back((*from[column])[i]);
                }
                if (source.used++ == 0) {
                    source.firstTime = in.time[i];
                }
                source.lastTime = in.time[i];
            }
            in = Columns{};
            table.sourceList.push_back(std::move(source));
        }
    }

    static void findGaps(TrajectoryTable& table)
    {
        const auto& time = table.columns.time;
        for (std::size_t i = 1; i < time.size(); ++i) {
            const double length = time[i] - time[i - 1];
            if (length > table.settings.maxGap) {
                table.gapList.push_back({time[i - 1], length});
            }
        }
    }
};

TrajectoryTable TrajectoryTable::load(std::span<const Core::FileInfo> files, const TrajectoryOptions& options)
{
    return TableBuilder::build(files, options);
}

TrajectoryTable TrajectoryTable::load(std::span<const std::filesystem::path> files, const TrajectoryOptions& options)
{
    const std::vector<Core::FileInfo> fileInfos(files.begin(), files.end());
    return TableBuilder::build(fileInfos, options);
}

} // namespace Kelvo::Geodesy::Batch
