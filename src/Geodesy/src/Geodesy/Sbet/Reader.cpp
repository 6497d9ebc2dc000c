// SPDX-License-Identifier: MIT
#include "Geodesy/Sbet/Reader.h"

#include "Layout.h"

#include "../Trajectory/ByteOrder.h"
#include "../Trajectory/ReadBuffer.h"

#include "Utils/CoreAssert.h"

#include <array>
#include <bit>
#include <limits>
#include <stdexcept>

namespace Kelvo::Geodesy::Sbet {
namespace {

double readTime(std::istream& ifs)
{
    std::array<char, sizeof(double)> bytes{};
    ifs.read(bytes.data(), bytes.size());
    return Trajectory::ByteOrder::load<double>(bytes.data(), std::endian::little);
}

// The interval of a file in increasing time order: from its first to its last record,
// without scanning the records in between. Leaves the stream at the first record.
Maths::Interval<double> readTimeInterval(std::istream& ifs)
{
    Maths::Interval<double> timeInterval(std::numeric_limits<double>::infinity(),
                                         -std::numeric_limits<double>::infinity());
    CORE_ASSERT(ifs.tellg()==0);
    timeInterval.data.first = readTime(ifs);
    CORE_ASSERT(!ifs.eof());
    ifs.seekg(-static_cast<std::streamoff>(Layout::RECORD_SIZE), std::ios::end);
    timeInterval.data.second = readTime(ifs);
    CORE_ASSERT(!ifs.eof());
    CORE_ASSERT(timeInterval.data.first < timeInterval.data.second);
    ifs.seekg(0, std::ios::beg);
    return timeInterval;
}

} // namespace

Reader::Reader(const Core::FileInfo& fileInfo, Trajectory::Reader::ImuAlignmentStatus)
    : Trajectory::Reader(fileInfo)
{
    if (fileInfo.isRemote()) {
        // The interval grows as records arrive.
        return;
    }
    if (std::streamoff(size) % static_cast<std::streamoff>(Layout::RECORD_SIZE) != 0) {
        // The message has no closing quote and no blank before "is truncated.", as callers
        // of the family expect it.
        throw std::runtime_error("SBET file '" + fileInfo.getPath().string() + "is truncated.");
    }
    timeInterval = readTimeInterval(*inStream);
}

Trajectory::Record Reader::getNext()
{
    // Tested before the read: the call whose read hits the end returns a record without
    // file data, which the caller drops after seeing endOfFile().
    if (endOfFile()) {
        throw std::runtime_error("SBET file has unexpectedly reached EOF.");
    }
    Trajectory::Record record;
    record.status = Trajectory::Record::Status::VALID;
    if (!Trajectory::readLittleEndianDoubles(*inStream, *readBuffer, record, Layout::FIELDS)) {
        // The read that hits the end (of the file, of a live stream, or of a stream that a
        // rewind after the end left failed) holds no record: never VALID.
        record = Trajectory::Record::invalid();
    }
    if (isRemote()) {
        size += static_cast<std::streamoff>(Layout::RECORD_SIZE);
        updateTimeInterval(record.time);
    }
    return record;
}

} // namespace Kelvo::Geodesy::Sbet
