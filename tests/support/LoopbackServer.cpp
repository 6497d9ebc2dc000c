// SPDX-License-Identifier: MIT
#include "support/LoopbackServer.h"

#include <stdexcept>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Kelvo::Testing {

LoopbackServer::LoopbackServer(Session session)
{
    listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    socklen_t length = sizeof(address);
    if (listener < 0 || ::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0
        || ::listen(listener, 1) != 0 || ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        if (listener >= 0) {
            ::close(listener);
        }
        throw std::runtime_error("cannot listen on 127.0.0.1");
    }
    listeningPort = ntohs(address.sin_port);

    worker = std::thread([this, session = std::move(session)] {
        pollfd request{listener, POLLIN, 0};
        if (::poll(&request, 1, 10000) <= 0) {
            return;
        }
        const int client = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0) {
            return;
        }
        session(client);
        ::close(client);
    });
}

LoopbackServer::~LoopbackServer()
{
    if (worker.joinable()) {
        worker.join();
    }
    ::close(listener);
}

bool LoopbackServer::send(int socket, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

} // namespace Kelvo::Testing
