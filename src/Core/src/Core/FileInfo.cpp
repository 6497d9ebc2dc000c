// SPDX-License-Identifier: MIT
#include "Core/FileInfo.h"

#include "SocketStream.h"

#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

namespace Kelvo::Core {

FileInfo::FileInfo(std::filesystem::path path)
    : path(std::move(path))
{
}

FileInfo FileInfo::remote(std::filesystem::path path, std::string host, std::uint16_t port, int timeoutMilliseconds)
{
    FileInfo info(std::move(path));
    info.remoteSource = Remote{std::move(host), port, timeoutMilliseconds};
    return info;
}

std::string FileInfo::getHost() const
{
    return remoteSource ? remoteSource->host : std::string();
}

std::uint16_t FileInfo::getPort() const
{
    return remoteSource ? remoteSource->port : std::uint16_t{0};
}

int FileInfo::getTimeoutMilliseconds() const
{
    return remoteSource ? remoteSource->timeoutMilliseconds : 0;
}

std::unique_ptr<std::istream> FileInfo::makeStream(std::optional<int> openMode) const
{
    if (remoteSource) {
        return std::make_unique<SocketStream>(remoteSource->host, remoteSource->port,
                                              remoteSource->timeoutMilliseconds);
    }
    const auto mode = openMode ? static_cast<std::ios::openmode>(*openMode) : std::ios::in;
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        // A directory opens as a file on POSIX systems and then reads as garbage: refuse it.
        auto closed = std::make_unique<std::ifstream>();
        errno = EISDIR;
        return closed;
    }
    return std::make_unique<std::ifstream>(path, mode);
}

std::string FileInfo::toString() const
{
    std::string text = path.string();
    if (remoteSource) {
        text += "@" + remoteSource->host + ":" + std::to_string(remoteSource->port);
        if (remoteSource->timeoutMilliseconds > 0) {
            text += "&timeout=" + std::to_string(remoteSource->timeoutMilliseconds);
        }
    }
    return text;
}

} // namespace Kelvo::Core
