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
#include <numbers>
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

/// sin and cos of `x` [rad] to within an ulp or two, written without branches so that loops
/// over arrays of angles vectorise: the nearest multiple of pi/2 is taken out (Cody-Waite,
/// exact for the angles allowed), Taylor series to the 17th power cover what is left (|r| <= pi/4,
/// truncation below 1e-17), and the quadrant swaps and signs the two. For |x| < 1e5 only.
inline void sinCos(double x, double& sine, double& cosine)
{
    constexpr double roundingShift = 0x1.8p52;
    constexpr double pio2High = 1.57079632673412561417e+00; // the first 33 bits of pi/2
    constexpr double pio2Low = 6.07710050650619224932e-11; // pi/2 - pio2High
    const double quadrant = (x * (2.0 / std::numbers::pi) + roundingShift) - roundingShift;
    const double r = (x - quadrant * pio2High) - quadrant * pio2Low;
    const double r2 = r * r;
    const double s = r + r * r2 * (-1.0 / 6 + r2 * (1.0 / 120 + r2 * (-1.0 / 5040 + r2 * (1.0 / 362880 + r2 * (-1.0 / 39916800
                     + r2 * (1.0 / 6227020800 + r2 * (-1.0 / 1307674368000 + r2 * (1.0 / 355687428096000))))))));
    const double c = 1.0 - 0.5 * r2 + r2 * r2 * (1.0 / 24 + r2 * (-1.0 / 720 + r2 * (1.0 / 40320 + r2 * (-1.0 / 3628800
                     + r2 * (1.0 / 479001600 + r2 * (-1.0 / 87178291200 + r2 * (1.0 / 20922789888000)))))));
    // The quadrant modulo 4 as -1, 0, 1 or 2 (or -2): odd ones swap sine and cosine.
    const double n = quadrant - 4.0 * ((quadrant * 0.25 + roundingShift) - roundingShift);
    const bool odd = n * n == 1.0;
    const double evenSign = 1.0 - 0.5 * n * n; // 1 for 0, -1 for +-2
    sine = odd ? n * c : evenSign * s;
    cosine = odd ? -n * s : evenSign * c;
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

    static std::array<TrajectoryTable::Column*, 10> all(Columns& c)
    {
        return {&c.time, &c.latitude, &c.longitude,    &c.height,       &c.roll,
                &c.pitch, &c.yaw,     &c.velocityNorth, &c.velocityEast, &c.velocityDown};
    }

    /// Every VALID record of one file, its times made continuous across a week rollover.
    /// Records are taken a block at a time, then written column by column.
    template <typename Reader>
    static FileEpochs read(const Core::FileInfo& file, const TrajectoryOptions& options, bool rawApx)
    {
        FileEpochs epochs;
        auto& source = epochs.source;
        source.path = file.getPath();
        auto reader = open<Reader>(file, options);
        Columns& c = epochs.columns;
        std::size_t capacity = static_cast<std::size_t>(reader->getCount());
        resize(c, capacity);

        // SBET velocities are turned a chunk at a time, from the chunk's wander angles.
        constexpr std::size_t CHUNK = 256;
        std::array<double, CHUNK> wander;
        std::size_t chunkStart = 0;
        double weekShift = 0.0;
        double previous = -std::numeric_limits<double>::infinity();
        std::size_t used = 0;
        for (;;) {
            const Trajectory::Record record = reader->getNext();
            if (reader->endOfFile()) {
                break;
            }
            const std::size_t index = source.records++;
            if (record.status != Trajectory::Record::VALID) {
                ++source.notValid;
                continue;
            }
            double time = record.time + weekShift;
            if (!(time >= previous && std::isfinite(time))) {
                time = checkedBackwardJump(file, index, record.time, previous, weekShift);
            }
            previous = time;
            if (used == capacity) [[unlikely]] {
                // A remote source, whose size is not known beforehand.
                capacity = std::max(2 * capacity, used + CHUNK);
                resize(c, capacity);
            }
            c.time[used] = time;
            c.latitude[used] = record.latitude;
            c.longitude[used] = record.longitude;
            c.height[used] = record.height;
            c.roll[used] = record.roll;
            c.pitch[used] = record.pitch;
            // The true heading, as TimedPositionAttitude::fromSbet has it (unwrapped).
            c.yaw[used] = record.heading - record.wanderAngle;
            c.velocityNorth[used] = record.velocityX;
            c.velocityEast[used] = record.velocityY;
            c.velocityDown[used] = record.velocityZ;
            wander[used - chunkStart] = record.wanderAngle;
            if (++used - chunkStart == CHUNK) {
                finishChunk(c, chunkStart, used, wander.data(), rawApx);
                chunkStart = used;
            }
        }
        finishChunk(c, chunkStart, used, wander.data(), rawApx);
        resize(c, used);
        source.used = used;
        if (used == 0) {
            throw FileFormatError(file.getPath(), "no VALID record among its " + std::to_string(source.records)
                                                      + " records");
        }
        source.firstTime = c.time.front();
        source.lastTime = c.time.back();
        return epochs;
    }

    /// The time of record `index` read as `recordTime` after `previous`, with `weekShift`
    /// raised when the week rolled over; throws FileFormatError for any other backward jump
    /// and for a time that is not finite.
    static double checkedBackwardJump(const Core::FileInfo& file, std::size_t index, double recordTime,
                                      double previous, double& weekShift)
    {
        const std::string record = "record " + std::to_string(index) + ": ";
        if (!std::isfinite(recordTime)) {
            throw FileFormatError(file.getPath(), record + "time is " + formatSeconds(recordTime));
        }
        const double time = recordTime + weekShift;
        if (!(previous - time > HALF_WEEK)) {
            throw FileFormatError(file.getPath(), record + "time goes back from " + formatSeconds(previous) + " to "
                                                      + formatSeconds(time) + " s");
        }
        weekShift += SECONDS_IN_WEEK();
        return recordTime + weekShift;
    }

    /// Raw APX velocities are north, east, down already; SBET ones are turned.
    static void finishChunk(Columns& c, std::size_t first, std::size_t end, const double* wander, bool rawApx)
    {
        if (!rawApx) {
            turnSbetVelocities(c, first, end - first, wander);
        }
    }

    /// SBET velocities x, y, z in the wander-azimuth frame (x north and y west when the wander
    /// angle is 0, z up) to north, east, down, as fromSbet turns the angular rates.
    static void turnSbetVelocities(Columns& c, std::size_t first, std::size_t count, const double* wander)
    {
        double* north = c.velocityNorth.data() + first;
        double* east = c.velocityEast.data() + first;
        double* down = c.velocityDown.data() + first;
        const bool usual = std::all_of(wander, wander + count, [](double angle) { return std::abs(angle) < 1e5; });
        for (std::size_t i = 0; i < count; ++i) {
            double sinWander, cosWander;
            if (usual) {
                sinCos(wander[i], sinWander, cosWander);
            } else {
                sinWander = std::sin(wander[i]);
                cosWander = std::cos(wander[i]);
            }
            const double x = north[i];
            const double y = east[i];
            north[i] = x * cosWander - y * sinWander;
            east[i] = -x * sinWander - y * cosWander;
            down[i] = -down[i];
        }
    }

    static void resize(Columns& columns, std::size_t count)
    {
        for (auto* column : all(columns)) {
            column->resize(count);
        }
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
