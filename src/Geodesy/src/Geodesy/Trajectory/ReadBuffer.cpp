// SPDX-License-Identifier: MIT
#include "ReadBuffer.h"

#include <algorithm>
#include <ios>
#include <streambuf>

namespace Kelvo::Geodesy::Trajectory {
namespace {

std::size_t fromStreamBuffer(std::streambuf& source, char* destination, std::size_t count)
{
    return static_cast<std::size_t>(source.sgetn(destination, static_cast<std::streamsize>(count)));
}

} // namespace

ReadBuffer::ReadBuffer(bool readAhead, std::size_t capacity)
    : readAhead(readAhead)
    , capacity(capacity)
{
}

std::size_t ReadBuffer::readThroughStream(std::istream& stream, char* destination, std::size_t count)
{
    if (!stream.good()) {
        // The sentry of std::istream::read sets failbit alone. A stream left failed by a seek
        // (a rewind after the end of the file) can deliver nothing more, and the readers
        // tell the end of the file by eofbit alone: it is set too, so that they see the end.
        stream.setstate(std::ios::eofbit | std::ios::failbit);
        return 0;
    }
    std::size_t copied = 0;
    try {
        std::streambuf& source = *stream.rdbuf();
        for (;;) {
            const auto buffered = std::min(count - copied, static_cast<std::size_t>(end - next));
            if (buffered > 0) {
                std::memcpy(destination + copied, next, buffered);
                next += buffered;
                copied += buffered;
            }
            if (copied == count) {
                return count;
            }
            if (!readAhead) {
                copied += fromStreamBuffer(source, destination + copied, count - copied);
                break;
            }
            if (!storage) {
                // Not zeroed: a byte is only ever handed out after a read has filled it.
                storage = std::make_unique_for_overwrite<char[]>(capacity);
            }
            const auto received = fromStreamBuffer(source, storage.get(), capacity);
            next = storage.get();
            end = next + received;
            if (received == 0) {
                break;
            }
        }
    } catch (...) {
        // std::istream::read marks the stream bad, then rethrows only when asked to.
        discard();
        try {
            stream.setstate(std::ios::badbit);
        } catch (const std::ios_base::failure&) {
        }
        if ((stream.exceptions() & std::ios::badbit) != 0) {
            throw;
        }
        return copied;
    }
    if (copied < count) {
        stream.setstate(std::ios::eofbit | std::ios::failbit);
    }
    return copied;
}

} // namespace Kelvo::Geodesy::Trajectory
