// SPDX-License-Identifier: MIT
#pragma once

#include <proj.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Kelvo::Projection {

/// Destroys a PJ.
struct PjDeleter {
    void operator()(PJ* pj) const { proj_destroy(pj); }
};
using PjPointer = std::unique_ptr<PJ, PjDeleter>;

/// A PROJ context of its own: no network, errors only, and PROJ's messages kept here instead
/// of on stderr. A context serves one thread at a time; the messages are handed to the
/// library's logging by whoever owns it, on the caller's thread (`forwardMessages`), because a
/// logging sink need not be safe to call from several threads.
class ProjContext {
public:
    /// One distinct message and how often PROJ sent it (per point, for failed points).
    struct Message {
        std::string text;
        std::size_t count;
    };

    ProjContext();
    ~ProjContext();
    ProjContext(const ProjContext&) = delete;
    ProjContext& operator=(const ProjContext&) = delete;

    PJ_CONTEXT* get() const { return context; }

    /// The last message PROJ sent, without PROJ's "function: " prefix; empty if none.
    const std::string& lastMessage() const { return last; }

    /// Hands over the messages kept since the last call and forgets the last one.
    std::vector<Message> takeMessages();

    /// Logs `messages` at debug level, "PROJ: <text>" plus " (<n> times)" for repeats.
    static void forwardMessages(const std::vector<Message>& messages);

private:
    static void receive(void* self, int level, const char* text) noexcept;

    PJ_CONTEXT* context;
    std::vector<Message> messages;
    std::string last;
};

} // namespace Kelvo::Projection
