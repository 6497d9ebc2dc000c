// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <istream>
#include <streambuf>
#include <string>

namespace Kelvo::Core {

/// Stream buffer over a connected TCP socket (internal to Core). Reads block until bytes
/// arrive; the peer closing is end of file; with a positive timeout a wait that runs past it
/// throws std::ios_base::failure, which the owning istream turns into badbit. Only the
/// current position can be asked for: it is the number of bytes consumed.
class SocketStreamBuffer : public std::streambuf {
public:
    SocketStreamBuffer(const std::string& host, std::uint16_t port, int timeoutMilliseconds);
    ~SocketStreamBuffer() override;
    SocketStreamBuffer(const SocketStreamBuffer&) = delete;
    SocketStreamBuffer& operator=(const SocketStreamBuffer&) = delete;

protected:
    int_type underflow() override;
    pos_type seekoff(off_type offset, std::ios_base::seekdir direction, std::ios_base::openmode mode) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode mode) override;

private:
    void waitForBytes();

    int socket = -1;
    int timeoutMilliseconds = 0;
    std::string peer;
    std::uint64_t bytesBeforeBuffer = 0;
    std::array<char, 64 * 1024> buffer{};
};

/// An istream that owns its SocketStreamBuffer.
class SocketStream : public std::istream {
public:
    SocketStream(const std::string& host, std::uint16_t port, int timeoutMilliseconds);

private:
    SocketStreamBuffer socketBuffer;
};

} // namespace Kelvo::Core
