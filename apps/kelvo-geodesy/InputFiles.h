// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Smrmsg/Record.h"
#include "Geodesy/Trajectory/Reader.h"
#include "Geodesy/Trajectory/Record.h"
#include "Maths/Interval.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace Kelvo::Tool {

/// The file formats the tool reads.
enum class FileFormat {
    sbet,   ///< SBET, 136-byte little-endian records
    apxRaw, ///< raw APX navigation stream, 115-byte big-endian records
    smrmsg, ///< SMRMSG accuracies, 80-byte little-endian records
    rtklib, ///< RTKLIB position file (text)
};

/// "SBET", "raw APX", "SMRMSG", "RTKLIB position file".
std::string formatName(FileFormat format);

/// The format of `path` by the library's extension rules: exactly ".stream" is raw APX,
/// exactly ".pos" an RTKLIB position file, anything else SBET. `forced` (--format) wins;
/// SMRMSG files are only ever read when forced.
FileFormat detectFormat(const std::filesystem::path& path, std::optional<FileFormat> forced = std::nullopt);

/// Checks that `path` names a readable, non-empty regular file. Throws InputError: "no such
/// file", "is a directory, not a file", "not a regular file" (a pipe or a device, which could
/// block), "cannot be read: <reason>", "the file is empty".
void checkReadableFile(const std::filesystem::path& path);

/// What a probe of a binary trajectory file (SBET or raw APX) found.
struct TrajectoryProbe {
    std::uint64_t count = 0;
    /// First and last record times [GPS s of week].
    Maths::Interval<double> interval;
    /// The first record, as the library's reader returns it.
    Geodesy::Trajectory::Record first{};
};

/// Opens an SBET or raw APX file with the library's reader after checking what the reader
/// leaves to its caller, so that a bad file is one clear InputError: missing or empty, not
/// a whole number of records, a single record, or values no trajectory holds (a file of
/// another format). Assertion reports of the reader are held back while it probes and
/// reported once the file proves to be of the right format.
TrajectoryProbe probeTrajectory(const std::filesystem::path& path, FileFormat format,
                                Geodesy::Trajectory::Reader::ImuAlignmentStatus alignment);

/// What a scan of an SMRMSG file found.
struct SmrmsgProbe {
    std::uint64_t count = 0;
    Geodesy::Smrmsg::Record first{};
    Geodesy::Smrmsg::Record last{};
};

/// Reads an SMRMSG file through, with the same kind of checks as probeTrajectory.
SmrmsgProbe probeSmrmsg(const std::filesystem::path& path);

/// The number of records of a binary file of `format` (SBET, raw APX or SMRMSG), after
/// checkReadableFile. A size that is not a whole number of records is an InputError
/// ("truncated: ..."), with a hint when the size would fit SMRMSG records.
std::uint64_t checkRecordSize(const std::filesystem::path& path, FileFormat format);

} // namespace Kelvo::Tool
