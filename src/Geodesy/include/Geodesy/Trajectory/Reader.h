// SPDX-License-Identifier: MIT
#pragma once

#include "Core/FileInfo.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/GeodesyExport.h"
#include "Geodesy/LatLonHeight.h"
#include "Geodesy/Trajectory/Record.h"
#include "Maths/Interval.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <ios>
#include <istream>
#include <memory>
#include <utility>

namespace Kelvo::Geodesy::Trajectory {

class ReadBuffer;

/// Base of the readers of binary trajectory files (SBET, raw APX). It opens the file that a
/// `Core::FileInfo` describes, keeps its size [bytes] and the time interval it covers
/// [GPS s of week], and hands out one `Record` per `getNext()`.
///
/// A local file is positioned at its first record once constructed; its interval is that of
/// its first and last records. A remote source (a TCP stream) is read once, forward only:
/// its size, record count and interval grow with every record read.
///
/// Failures: a local file that cannot be opened throws std::system_error ("<errno text>:
/// \"<path>\""); an empty local file throws std::system_error ("Trajectory file \"<path>\"is
/// empty") after logging it as an error; a stream failure (a stalled or broken TCP peer)
/// throws std::ios_base::failure. The concrete readers throw std::runtime_error when asked
/// for a record after the end of the file. Preconditions are CoreAssert reports.
///
/// End of file: `endOfFile()` is checked before each read, so the `getNext()` whose read
/// hits the end returns a record that must not be used (callers test `endOfFile()` after
/// every `getNext()` and drop that record), and the call after it throws. A read that got no
/// byte returns an INVALID record of signalling NaNs. A read that can deliver nothing
/// because the stream has failed (see `returnToBegin()`) counts as one that hits the end, so
/// reading until `endOfFile()` always ends.
class KELVO_GEODESY_EXPORT Reader {
public:
    /// The minimum IMU alignment state from which raw records count as usable, coarse to
    /// fine: a larger value is a better alignment. Raw APX records carry one of these values
    /// (or any other byte, compared as a number).
    enum class ImuAlignmentStatus : std::uint8_t {
        NO_SOLUTION = 0,
        INITIAL_SOLUTION = 1,
        COARSE_LEVELING = 2,
        COARSE_ALIGNMENT = 3,
        FINE_ALIGNMENT = 4,
        FULL_NAVIGATION = 5,
    };

    virtual ~Reader();
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    /// Number of whole records of a local file; for a remote source, the records read so far.
    virtual std::uint64_t getCount() const = 0;
    /// The next record (see the class comment for the end of the file).
    virtual Record getNext() = 0;

    bool isRemote() const { return fileInfo.isRemote(); }
    /// Whether a read has run into the end of the stream (the stream's end-of-file flag). A
    /// read that stops exactly at the end does not set it: the next one does.
    bool endOfFile() const { return inStream->eof(); }
    /// Bytes of a local file; for a remote source, the bytes delivered so far.
    std::streampos getSize() const { return size; }
    /// Moves a local file back to its first record; does nothing for a remote source, which
    /// cannot be rewound. Stream flags are left as they are: after the end of the file has
    /// been reached the stream stays failed, the seek clears only the end-of-file flag, and
    /// the next `getNext()` reads nothing and sets it again (open a new reader to read the
    /// file once more).
    void returnToBegin();

    /// First and last record times, as GPS seconds of the week (`week`) or of the day
    /// (`day`, no leap-second correction). A remote source covers the records read so far
    /// and starts as the empty interval {+inf, -inf}.
    Maths::Interval<double> getTimeInterval(TimeReference tref) const;

    /// The next record's time [GPS s of week] and position, whatever its status.
    std::pair<double, LatLonHeight> getNextLLH();

protected:
    /// Opens the file (see the class comment for the failures).
    explicit Reader(const Core::FileInfo& fileInfo);

    /// Reads up to `size` bytes into `buffer` as std::istream::read does; returns the number
    /// of bytes read, fewer at the end of the file (the failure is logged as verbose).
    std::int64_t safeRead(char* const buffer, std::size_t size);

    /// Widens the interval so that it holds `time` [GPS s of week].
    void updateTimeInterval(double time);

    Core::FileInfo fileInfo;
    std::unique_ptr<std::istream> inStream;
    Maths::Interval<double> timeInterval;
    std::streampos size;
    /// Read-ahead over `inStream`: records are handed out from large chunks.
    std::unique_ptr<ReadBuffer> readBuffer;

private:
    void guardAgainstEmptyFile(const std::filesystem::path& path);
};

} // namespace Kelvo::Geodesy::Trajectory
