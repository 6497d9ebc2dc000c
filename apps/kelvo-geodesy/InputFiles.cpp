// SPDX-License-Identifier: MIT
#include "InputFiles.h"

#include "Context.h"
#include "Diagnostics.h"
#include "Numbers.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/Sbet/Reader.h"
#include "Geodesy/Smrmsg/Reader.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <memory>
#include <numbers>

namespace Kelvo::Tool {
namespace {

using Geodesy::Trajectory::Reader;

/// Faster than any trajectory system records; a file whose records are packed closer in
/// time holds something else.
constexpr double MAX_RECORD_RATE = 10000.0; // [Hz]

std::uint64_t recordSize(FileFormat format)
{
    switch (format) {
    case FileFormat::sbet:
        return 136;
    case FileFormat::apxRaw:
        return 115;
    case FileFormat::smrmsg:
        return 80;
    case FileFormat::rtklib:
        break;
    }
    return 1;
}

bool isSecondOfWeek(double time)
{
    return std::isfinite(time) && time >= 0.0 && time <= Geodesy::SECONDS_IN_WEEK();
}

/// Why `first` cannot be a record of a trajectory, or nothing when it can.
std::optional<std::string> implausibleRecord(const Geodesy::Trajectory::Record& record)
{
    if (!isSecondOfWeek(record.time)) {
        return "its first time (" + shortest(record.time) + ") is not a GPS second of the week";
    }
    if (!(std::abs(record.latitude) <= std::numbers::pi / 2)) {
        return "its first latitude (" + shortest(record.latitude) + " rad) is not a latitude";
    }
    if (!(std::abs(record.longitude) <= 2 * std::numbers::pi)) {
        return "its first longitude (" + shortest(record.longitude) + " rad) is not a longitude";
    }
    if (!(std::abs(record.height) <= 1.0e6)) {
        return "its first height (" + shortest(record.height) + " m) is not a height";
    }
    return std::nullopt;
}

std::string wrongFormat(const std::filesystem::path& path, FileFormat format, const std::string& detail)
{
    std::string text = "not " + std::string(format == FileFormat::apxRaw ? "a " : "an ") + formatName(format)
                       + " file: " + detail;
    if (path.extension() == ".pos") {
        text += " (RTKLIB position files are read by the gnss subcommand)";
    }
    return text;
}

std::unique_ptr<Reader> openReader(const std::filesystem::path& path, FileFormat format,
                                   Reader::ImuAlignmentStatus alignment)
{
    if (format == FileFormat::apxRaw) {
        return std::make_unique<Geodesy::ApxRaw::Reader>(Core::FileInfo(path), alignment);
    }
    return std::make_unique<Geodesy::Sbet::Reader>(Core::FileInfo(path), alignment);
}

} // namespace

std::string formatName(FileFormat format)
{
    switch (format) {
    case FileFormat::sbet:
        return "SBET";
    case FileFormat::apxRaw:
        return "raw APX";
    case FileFormat::smrmsg:
        return "SMRMSG";
    case FileFormat::rtklib:
        return "RTKLIB position file";
    }
    return "unknown";
}

FileFormat detectFormat(const std::filesystem::path& path, std::optional<FileFormat> forced)
{
    if (forced) {
        return *forced;
    }
    const auto extension = path.extension();
    if (extension == Geodesy::ApxRaw::Reader::FILE_EXTENSION()) {
        return FileFormat::apxRaw;
    }
    if (extension == ".pos") {
        return FileFormat::rtklib;
    }
    return FileFormat::sbet;
}

void checkReadableFile(const std::filesystem::path& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        throw InputError(path, "no such file");
    }
    if (std::filesystem::is_directory(status)) {
        throw InputError(path, "is a directory, not a file");
    }
    if (!std::filesystem::is_regular_file(status)) {
        // A pipe or a terminal would make the tool wait for bytes that may never come.
        throw InputError(path, "not a regular file");
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) {
        throw InputError(path, std::string("cannot be read: ") + (errno != 0 ? std::strerror(errno) : "unknown reason"));
    }
    if (file.peek() == std::ifstream::traits_type::eof()) {
        throw InputError(path, "the file is empty");
    }
}

std::uint64_t checkRecordSize(const std::filesystem::path& path, FileFormat format)
{
    checkReadableFile(path);
    const std::uint64_t size = std::filesystem::file_size(path);
    const std::uint64_t record = recordSize(format);
    if (size % record != 0) {
        std::string problem = "truncated: " + std::to_string(size) + " bytes are not a whole number of "
                              + std::to_string(record) + "-byte " + formatName(format) + " records";
        if (format != FileFormat::smrmsg && size % recordSize(FileFormat::smrmsg) == 0) {
            problem += " (an SMRMSG file? give --format smrmsg)";
        }
        throw InputError(path, problem);
    }
    return size / record;
}

TrajectoryProbe probeTrajectory(const std::filesystem::path& path, FileFormat format, Reader::ImuAlignmentStatus alignment)
{
    if (checkRecordSize(path, format) < 2) {
        throw InputError(path, "holds a single record; a trajectory needs at least two");
    }

    TrajectoryProbe probe;
    AssertionCapture capture;
    try {
        auto reader = openReader(path, format, alignment);
        probe.count = reader->getCount();
        probe.interval = reader->getTimeInterval(Geodesy::TimeReference::week);
        probe.first = reader->getNext();
    } catch (const std::exception& exception) {
        throw InputError(path, exception.what());
    }

    if (auto detail = implausibleRecord(probe.first)) {
        throw InputError(path, wrongFormat(path, format, *detail));
    }
    const auto [start, end] = probe.interval.data;
    if (!isSecondOfWeek(end)) {
        throw InputError(path, wrongFormat(path, format, "its last time (" + shortest(end) + ") is not a GPS second of the week"));
    }
    if (!(start < end)) {
        throw InputError(path, "record times do not increase: the first (" + shortest(start)
                                   + " s of week) is not before the last (" + shortest(end) + ")");
    }
    if (static_cast<double>(probe.count - 1) / (end - start) > MAX_RECORD_RATE) {
        throw InputError(path, wrongFormat(path, format, std::to_string(probe.count) + " records in "
                                                             + shortest(end - start) + " s"));
    }
    capture.release();
    return probe;
}

SmrmsgProbe probeSmrmsg(const std::filesystem::path& path)
{
    checkRecordSize(path, FileFormat::smrmsg);

    SmrmsgProbe probe;
    try {
        Geodesy::Smrmsg::Reader reader{Core::FileInfo(path)};
        for (;;) {
            const auto record = reader.getNext();
            if (reader.endOfFile()) {
                break;
            }
            if (probe.count == 0) {
                probe.first = record;
            }
            probe.last = record;
            ++probe.count;
        }
    } catch (const std::exception& exception) {
        throw InputError(path, exception.what());
    }

    const auto& first = probe.first;
    if (!isSecondOfWeek(first.time) || !isSecondOfWeek(probe.last.time)) {
        throw InputError(path, wrongFormat(path, FileFormat::smrmsg, "its times are not GPS seconds of the week"));
    }
    for (const double rms : {first.northPositionRms, first.eastPositionRms, first.downPositionRms, first.northVelocityRms,
                             first.eastVelocityRms, first.downVelocityRms, first.rollRms, first.pitchRms,
                             first.headingRms}) {
        if (!(rms >= 0.0 && rms < 1.0e6)) {
            throw InputError(path, wrongFormat(path, FileFormat::smrmsg, "its first record holds an RMS of " + shortest(rms)));
        }
    }
    return probe;
}

} // namespace Kelvo::Tool
