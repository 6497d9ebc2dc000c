// SPDX-License-Identifier: MIT
#include "ProjContext.h"

#include "Core/Logging.h"

#include <algorithm>
#include <new>
#include <string_view>

namespace Kelvo::Projection {
namespace {

/// Distinct messages kept per context: failed points repeat one message per point.
constexpr std::size_t MAXIMUM_DISTINCT_MESSAGES = 16;

} // namespace

ProjContext::ProjContext()
    : context(proj_context_create())
{
    if (context == nullptr) {
        throw std::bad_alloc();
    }
    proj_log_func(context, this, &ProjContext::receive);
    // Set explicitly: a new context takes its level from the PROJ_DEBUG environment variable.
    proj_log_level(context, PJ_LOG_ERROR);
    proj_context_set_enable_network(context, 0);
}

ProjContext::~ProjContext()
{
    proj_context_destroy(context);
}

std::vector<ProjContext::Message> ProjContext::takeMessages()
{
    last.clear();
    return std::exchange(messages, {});
}

void ProjContext::forwardMessages(const std::vector<Message>& messages)
{
    for (const auto& message : messages) {
        Core::Logging::logDebug("PROJ: " + message.text +
                                (message.count > 1 ? " (" + std::to_string(message.count) + " times)" : ""));
    }
}

void ProjContext::receive(void* self, int /*level*/, const char* text) noexcept
try {
    auto& owner = *static_cast<ProjContext*>(self);
    std::string_view view(text);
    // "proj_create: crs not found": the reason without the function that reports it.
    if (const auto colon = view.find(": "); colon != std::string_view::npos &&
        view.substr(0, colon).find_first_of(" \t") == std::string_view::npos) {
        view.remove_prefix(colon + 2);
    }
    owner.last.assign(view);
    const auto same = std::find_if(owner.messages.begin(), owner.messages.end(),
                                   [&](const Message& message) { return message.text == view; });
    if (same != owner.messages.end()) {
        ++same->count;
    } else if (owner.messages.size() < MAXIMUM_DISTINCT_MESSAGES) {
        owner.messages.push_back({owner.last, 1});
    }
} catch (...) {
    // Out of memory: nothing may leave a callback that PROJ's C code calls; the message is lost.
}

} // namespace Kelvo::Projection
