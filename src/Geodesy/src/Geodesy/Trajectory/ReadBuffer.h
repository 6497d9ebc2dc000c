// SPDX-License-Identifier: MIT
#pragma once

#include "ByteOrder.h"

#include "Geodesy/SignallingNaN.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <istream>
#include <memory>

namespace Kelvo::Geodesy::Trajectory {

/// Read-ahead for the record readers. A local file is read in large chunks and handed out
/// a record at a time, which costs a fraction of one std::istream::read per record.
///
/// Every read behaves as std::istream::read(destination, count) on the owner's stream would
/// at the same logical position, with one exception: a stream that is not good() reads
/// nothing and gains eofbit as well as failbit (it can deliver nothing more, and the readers
/// tell the end of the file by eofbit alone). A short read sets eofbit and failbit; an
/// exception of the stream buffer sets badbit and is rethrown when the stream's exception
/// mask holds badbit. Flags change only when the bytes asked for are consumed, so end of file
/// shows exactly where a record-sized read would have shown it. The invariant that makes
/// this hold: while bytes are buffered the stream is good.
///
/// Without read-ahead every read goes straight to the stream buffer for exactly the bytes
/// asked for. Remote sources are read that way: a live peer may be slow to send the next
/// record, and a chunk read would wait for bytes that no record needs yet.
class ReadBuffer {
public:
    /// 256 KiB: large enough to make the read calls cheap, small enough to stay in cache.
    static constexpr std::size_t DEFAULT_CAPACITY = 256 * 1024;

    explicit ReadBuffer(bool readAhead, std::size_t capacity = DEFAULT_CAPACITY);

    /// The next `count` bytes, consumed, when they are all buffered; nullptr (and nothing
    /// consumed) when they are not, in which case read() must be used.
    const char* take(std::size_t count)
    {
        if (static_cast<std::size_t>(end - next) < count) {
            return nullptr;
        }
        const char* bytes = next;
        next += count;
        return bytes;
    }

    /// Reads `count` bytes into `destination` as std::istream::read would; returns the number
    /// of bytes read.
    std::size_t read(std::istream& stream, char* destination, std::size_t count)
    {
        if (count > 0) {
            if (const char* bytes = take(count)) {
                std::memcpy(destination, bytes, count);
                return count;
            }
        }
        return readThroughStream(stream, destination, count);
    }

    /// Forgets the buffered bytes; called whenever the owner moves the stream itself.
    void discard() { next = end = nullptr; }

private:
    std::size_t readThroughStream(std::istream& stream, char* destination, std::size_t count);

    bool readAhead;
    std::size_t capacity;
    std::unique_ptr<char[]> storage;
    const char* next = nullptr;
    const char* end = nullptr;
};

/// Reads a record of `Count` little-endian doubles into the members `fields` of `record`, as
/// one read of Count * 8 bytes. Doubles that the stream could not provide (at its end) are
/// signalling NaNs. Returns whether the whole record was read.
template <typename Record, std::size_t Count>
bool readLittleEndianDoubles(std::istream& stream, ReadBuffer& buffer, Record& record,
                             const std::array<double Record::*, Count>& fields)
{
    constexpr std::size_t size = Count * sizeof(double);
    if (const char* bytes = buffer.take(size)) {
        ByteOrder::loadLittleEndianDoubles(bytes, record, fields);
        return true;
    }
    std::array<char, size> bytes;
    for (std::size_t offset = 0; offset < size; offset += sizeof(double)) {
        ByteOrder::store(bytes.data() + offset, SIGNALLING_NAN(), std::endian::little);
    }
    const bool whole = buffer.read(stream, bytes.data(), size) == size;
    ByteOrder::loadLittleEndianDoubles(bytes.data(), record, fields);
    return whole;
}

} // namespace Kelvo::Geodesy::Trajectory
