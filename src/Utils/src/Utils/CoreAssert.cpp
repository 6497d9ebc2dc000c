// SPDX-License-Identifier: MIT
#include "Utils/CoreAssert.h"

#include <iostream>
#include <utility>

namespace Kelvo {
namespace {

CoreAssert::Handler& installedHandler()
{
    static CoreAssert::Handler handler;
    return handler;
}

} // namespace

void CoreAssert::assertFailed(const std::string& message, const char* file, std::size_t line)
{
    if (const auto& handler = installedHandler()) {
        handler(message, file, line);
        return;
    }
    std::cerr << (file != nullptr ? file : "?") << ':' << line << ": " << message << '\n';
}

CoreAssert::Handler CoreAssert::setHandler(Handler handler)
{
    return std::exchange(installedHandler(), std::move(handler));
}

} // namespace Kelvo
