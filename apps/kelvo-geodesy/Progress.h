// SPDX-License-Identifier: MIT
#pragma once

#include "Context.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace Kelvo::Tool {

/// A progress bar on the error stream for work that runs longer than about a second. It is
/// drawn only when the context allows it (the error stream is a terminal), first after one
/// second, then at most ten times a second; it is wiped when the object dies, so the
/// terminal is left as the work found it.
class Progress {
public:
    Progress(Context& context, std::string label, std::uint64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Reports that `done` of the `total` steps are finished. Cheap enough to call per record.
    void update(std::uint64_t done)
    {
        if (enabled && ++calls % 256 == 0) {
            draw(done);
        }
    }

private:
    void draw(std::uint64_t done);

    Context& context;
    std::string label;
    std::uint64_t total;
    bool enabled;
    bool drawn = false;
    std::uint64_t calls = 0;
    std::chrono::steady_clock::time_point start;
    std::chrono::steady_clock::time_point lastDraw;
};

} // namespace Kelvo::Tool
