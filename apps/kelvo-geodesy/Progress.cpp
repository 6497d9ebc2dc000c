// SPDX-License-Identifier: MIT
#include "Progress.h"

#include <algorithm>

namespace Kelvo::Tool {
namespace {

constexpr int BAR_WIDTH = 30;

} // namespace

Progress::Progress(Context& context, std::string label, std::uint64_t total)
    : context(context)
    , label(std::move(label))
    , total(total)
    , enabled(context.progress && total > 0)
    , start(std::chrono::steady_clock::now())
{
}

Progress::~Progress()
{
    if (drawn) {
        context.err << '\r' << std::string(label.size() + BAR_WIDTH + 10, ' ') << '\r' << std::flush;
    }
}

void Progress::draw(std::uint64_t done)
{
    using namespace std::chrono_literals;
    const auto now = std::chrono::steady_clock::now();
    if (now - start < 1s || (drawn && now - lastDraw < 100ms)) {
        return;
    }
    lastDraw = now;
    drawn = true;
    const double fraction = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    const auto filled = static_cast<int>(fraction * BAR_WIDTH);
    context.err << '\r' << label << " [" << std::string(static_cast<std::size_t>(filled), '#')
                << std::string(static_cast<std::size_t>(BAR_WIDTH - filled), ' ') << "] "
                << static_cast<int>(fraction * 100.0) << '%' << std::flush;
}

} // namespace Kelvo::Tool
