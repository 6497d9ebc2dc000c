// SPDX-License-Identifier: MIT
#pragma once

#include "Core/CoreExport.h"

#include <compare>
#include <cstdint>
#include <filesystem>
#include <istream>
#include <memory>
#include <optional>
#include <string>

namespace Kelvo::Core {

/// Describes an input: a local file, or a live source read over TCP. A remote source keeps a
/// path too, whose file name (and extension) says what the bytes are.
///
/// A remote FileInfo makes a stream over a TCP connection to host:port: reads block until
/// bytes arrive; the peer closing the connection is end of file; a timeout > 0 bounds the
/// connect and each wait for bytes, and running past it fails the stream (badbit) instead of
/// hanging. The stream cannot seek; tellg() reports the bytes consumed so far.
class KELVO_CORE_EXPORT FileInfo {
public:
    /// A local file.
    FileInfo(std::filesystem::path path);

    /// A TCP source at host:port; `timeoutMilliseconds` <= 0 waits without limit.
    static FileInfo remote(std::filesystem::path path, std::string host, std::uint16_t port,
                           int timeoutMilliseconds = 0);

    const std::filesystem::path& getPath() const { return path; }
    bool isRemote() const { return remoteSource.has_value(); }
    /// Host, port and timeout of a remote source; empty, 0 and 0 for a local file.
    std::string getHost() const;
    std::uint16_t getPort() const;
    int getTimeoutMilliseconds() const;

    /// Opens the bytes for reading. A local file is opened as a std::ifstream with `openMode`
    /// (std::ios::in when empty); when it cannot be opened the stream is returned closed and
    /// errno says why (a directory gives EISDIR). A remote source is connected here; a failed
    /// connection throws std::system_error.
    std::unique_ptr<std::istream> makeStream(std::optional<int> openMode) const;

    /// The path; for a remote source followed by "@host:port" and, when the timeout is
    /// positive, "&timeout=<milliseconds>".
    std::string toString() const;

    auto operator<=>(const FileInfo&) const = default;
    bool operator==(const FileInfo&) const = default;

private:
    struct Remote {
        std::string host;
        std::uint16_t port = 0;
        int timeoutMilliseconds = 0;
        auto operator<=>(const Remote&) const = default;
        bool operator==(const Remote&) const = default;
    };

    std::filesystem::path path;
    std::optional<Remote> remoteSource;
};

} // namespace Kelvo::Core
