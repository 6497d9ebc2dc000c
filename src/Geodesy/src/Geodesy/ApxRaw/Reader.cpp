// SPDX-License-Identifier: MIT
#include "Geodesy/ApxRaw/Reader.h"

#include "Layout.h"

#include "../Trajectory/ByteOrder.h"
#include "../Trajectory/ReadBuffer.h"

#include "Maths/Degree.h"
#include "Utils/CoreAssert.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace Kelvo::Geodesy::ApxRaw {
namespace {

// Reads one raw record; returns the number of bytes read (Layout::RECORD_SIZE for a whole
// record). A record cut short stops at the failed piece, before the byte swap, so the bytes
// that were read keep the file's byte order over the NaN prefill.
std::size_t parse(std::istream& ifs, Trajectory::ReadBuffer& buffer, RawRecord& raw)
{
    CORE_ASSERT(ifs.good());
    if (const char* bytes = buffer.take(Layout::RECORD_SIZE)) {
        raw = Layout::decode(bytes, std::endian::big);
        return Layout::RECORD_SIZE;
    }
    auto image = Layout::prefilledImage();
    std::size_t count = 0;
    for (const auto piece : Layout::PIECES) {
        count += buffer.read(ifs, image.data() + count, piece);
        if (ifs.fail()) {
            raw = Layout::decode(image.data(), std::endian::native);
            return count;
        }
    }
    raw = Layout::decode(image.data(), std::endian::big);
    return count;
}

double seconds(const RawRecord& raw)
{
    return raw.timeOfWeek / 1000.0;
}

// The interval from the first record to the last 115 bytes of the file, without scanning
// the records in between. Leaves the stream at the first record.
Maths::Interval<double> readTimeInterval(std::istream& ifs)
{
    Maths::Interval<double> timeInterval(std::numeric_limits<double>::infinity(),
                                         -std::numeric_limits<double>::infinity());
    // Exactly the bytes of one record each time: the stream is moved right after.
    Trajectory::ReadBuffer direct(false);
    RawRecord raw;
    CORE_ASSERT(ifs.tellg() == 0);
    parse(ifs, direct, raw);
    timeInterval.data.first = seconds(raw);
    CORE_ASSERT(!ifs.eof());
    ifs.seekg(-static_cast<std::streamoff>(Layout::RECORD_SIZE), std::ios::end);
    parse(ifs, direct, raw);
    timeInterval.data.second = seconds(raw);
    CORE_ASSERT(timeInterval.data.first < timeInterval.data.second);
    ifs.seekg(0, std::ios::beg);
    return timeInterval;
}

double toRadian(double degrees)
{
    return Maths::Degree(degrees).toRadian();
}

} // namespace

Reader::Reader(const Core::FileInfo& fileInfo, Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus)
    : Trajectory::Reader(fileInfo)
    , imuAlignmentStatus(imuAlignmentStatus)
{
    if (fileInfo.isRemote()) {
        // The interval grows as records arrive.
        return;
    }
    timeInterval = readTimeInterval(*inStream);
}

Trajectory::Record Reader::getNext()
{
    // Tested before the read, as for SBET: the call whose read hits the end returns a
    // record that the caller drops after seeing endOfFile().
    if (endOfFile()) {
        throw std::runtime_error("Raw APX file has unexpectedly reached EOF.");
    }
    CORE_ASSERT(inStream);

    RawRecord raw;
    const auto count = parse(*inStream, *readBuffer, raw);
    if (count == 0) {
        // Also the read of a stream that a failed seek left unable to deliver (a rewind after
        // the end, a file shorter than one record): the read has set the end of the file.
        return Trajectory::Record::invalid();
    }
    if (isRemote()) {
        size += static_cast<std::streamoff>(count);
    }

    // The best state only rises: once the required alignment was met, later records are
    // graded by their solution flag alone.
    bestImuAlignmentStatus = std::max(bestImuAlignmentStatus, raw.alignmentStatus);
    const bool aligned = bestImuAlignmentStatus >= static_cast<std::uint8_t>(imuAlignmentStatus);
    const auto status = aligned && raw.solutionFlag != 0 ? Trajectory::Record::Status::VALID
                                                         : Trajectory::Record::Status::NOT_ALIGNED;

    // Filled field by field, straight into the returned record. The converted [deg/s]
    // triple goes to the force slots and the unconverted one to the angular-rate slots:
    // consumers of this reader expect exactly this assignment.
    Trajectory::Record record;
    record.status = status;
    record.time = seconds(raw);
    record.latitude = toRadian(raw.latitude);
    record.longitude = toRadian(raw.longitude);
    record.height = raw.height;
    record.velocityX = raw.velocity[0];
    record.velocityY = raw.velocity[1];
    record.velocityZ = raw.velocity[2];
    record.roll = toRadian(raw.roll);
    record.pitch = toRadian(raw.pitch);
    record.heading = toRadian(raw.heading);
    record.wanderAngle = 0.0;
    record.forceX = toRadian(raw.firstTriple[0]);
    record.forceY = toRadian(raw.firstTriple[1]);
    record.forceZ = toRadian(raw.firstTriple[2]);
    record.angularRateX = raw.secondTriple[0];
    record.angularRateY = raw.secondTriple[1];
    record.angularRateZ = raw.secondTriple[2];
    if (isRemote()) {
        updateTimeInterval(record.time);
    }
    return record;
}

} // namespace Kelvo::Geodesy::ApxRaw
