// SPDX-License-Identifier: MIT
#include "SocketStream.h"

#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Kelvo::Core {
namespace {

// -1 waits without limit, as poll() understands it.
int pollTimeout(int timeoutMilliseconds)
{
    return timeoutMilliseconds > 0 ? timeoutMilliseconds : -1;
}

// Waits until `socket` is ready for `events`; false when the timeout ran out.
bool waitFor(int socket, short events, int timeoutMilliseconds)
{
    pollfd request{socket, events, 0};
    for (;;) {
        const int ready = ::poll(&request, 1, pollTimeout(timeoutMilliseconds));
        if (ready >= 0) {
            return ready > 0;
        }
        if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "poll");
        }
    }
}

// Connects within the timeout; returns the connected socket or throws.
int connectTo(const std::string& host, std::uint16_t port, int timeoutMilliseconds, const std::string& peer)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* addresses = nullptr;
    const std::string service = std::to_string(port);
    if (const int status = ::getaddrinfo(host.c_str(), service.c_str(), &hints, &addresses); status != 0) {
        throw std::system_error(std::make_error_code(std::errc::host_unreachable),
                                "cannot resolve " + peer + ": " + ::gai_strerror(status));
    }
    int lastError = ECONNREFUSED;
    for (const addrinfo* address = addresses; address != nullptr; address = address->ai_next) {
        const int candidate =
            ::socket(address->ai_family, address->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, address->ai_protocol);
        if (candidate < 0) {
            lastError = errno;
            continue;
        }
        int status = ::connect(candidate, address->ai_addr, address->ai_addrlen);
        if (status < 0 && errno == EINPROGRESS) {
            if (waitFor(candidate, POLLOUT, timeoutMilliseconds)) {
                socklen_t length = sizeof(lastError);
                ::getsockopt(candidate, SOL_SOCKET, SO_ERROR, &lastError, &length);
                status = lastError == 0 ? 0 : -1;
            } else {
                lastError = ETIMEDOUT;
            }
        } else if (status < 0) {
            lastError = errno;
        }
        if (status == 0) {
            ::fcntl(candidate, F_SETFL, ::fcntl(candidate, F_GETFL) & ~O_NONBLOCK);
            ::freeaddrinfo(addresses);
            return candidate;
        }
        ::close(candidate);
    }
    ::freeaddrinfo(addresses);
    throw std::system_error(lastError, std::generic_category(), "cannot connect to " + peer);
}

} // namespace

SocketStreamBuffer::SocketStreamBuffer(const std::string& host, std::uint16_t port, int timeoutMilliseconds)
    : timeoutMilliseconds(timeoutMilliseconds)
    , peer(host + ":" + std::to_string(port))
{
    socket = connectTo(host, port, timeoutMilliseconds, peer);
    setg(buffer.data(), buffer.data(), buffer.data());
}

SocketStreamBuffer::~SocketStreamBuffer()
{
    if (socket >= 0) {
        ::close(socket);
    }
}

void SocketStreamBuffer::waitForBytes()
{
    if (!waitFor(socket, POLLIN, timeoutMilliseconds)) {
        throw std::ios_base::failure("no data from " + peer + " within " + std::to_string(timeoutMilliseconds)
                                     + " ms");
    }
}

SocketStreamBuffer::int_type SocketStreamBuffer::underflow()
{
    if (gptr() < egptr()) {
        return traits_type::to_int_type(*gptr());
    }
    bytesBeforeBuffer += static_cast<std::uint64_t>(egptr() - eback());
    setg(buffer.data(), buffer.data(), buffer.data());
    for (;;) {
        waitForBytes();
        const ssize_t received = ::recv(socket, buffer.data(), buffer.size(), 0);
        if (received > 0) {
            setg(buffer.data(), buffer.data(), buffer.data() + received);
            return traits_type::to_int_type(*gptr());
        }
        if (received == 0) {
            return traits_type::eof();
        }
        if (errno != EINTR && errno != EAGAIN) {
            throw std::ios_base::failure("reading from " + peer + ": " + std::strerror(errno));
        }
    }
}

SocketStreamBuffer::pos_type SocketStreamBuffer::seekoff(off_type offset, std::ios_base::seekdir direction,
                                                         std::ios_base::openmode)
{
    if (offset != 0 || direction != std::ios_base::cur) {
        return pos_type(off_type(-1));
    }
    return pos_type(static_cast<off_type>(bytesBeforeBuffer + static_cast<std::uint64_t>(gptr() - eback())));
}

SocketStreamBuffer::pos_type SocketStreamBuffer::seekpos(pos_type, std::ios_base::openmode)
{
    return pos_type(off_type(-1));
}

SocketStream::SocketStream(const std::string& host, std::uint16_t port, int timeoutMilliseconds)
    : std::istream(nullptr)
    , socketBuffer(host, port, timeoutMilliseconds)
{
    rdbuf(&socketBuffer);
}

} // namespace Kelvo::Core
