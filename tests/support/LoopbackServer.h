// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <thread>

namespace Kelvo::Testing {

/// A TCP server on 127.0.0.1 and an ephemeral port, for testing live sources. It accepts one
/// connection (waiting at most 10 s), runs `session` on the connected socket in its own
/// thread, then closes the connection. The destructor waits for the session to end.
class LoopbackServer {
public:
    using Session = std::function<void(int socket)>;

    explicit LoopbackServer(Session session);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    std::uint16_t port() const { return listeningPort; }

    /// Sends all of `bytes`; false when the peer went away.
    static bool send(int socket, std::string_view bytes);

private:
    int listener = -1;
    std::uint16_t listeningPort = 0;
    std::thread worker;
};

} // namespace Kelvo::Testing
