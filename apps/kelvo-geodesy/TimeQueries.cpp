// SPDX-License-Identifier: MIT
#include "TimeQueries.h"

#include "Context.h"
#include "InputFiles.h"
#include "Numbers.h"

#include <cmath>
#include <fstream>

namespace Kelvo::Tool {
namespace {

std::string trimmed(const std::string& text)
{
    const auto begin = text.find_first_not_of(" \t\r");
    if (begin == std::string::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

} // namespace

std::vector<double> readTimesFile(const std::filesystem::path& path)
{
    checkReadableFile(path);
    std::ifstream file(path);
    std::vector<double> times;
    std::string line;
    for (std::uint64_t number = 1; std::getline(file, line); ++number) {
        const std::string text = trimmed(line);
        if (text.empty() || text.front() == '#') {
            continue;
        }
        const auto value = parseDouble(text);
        if (!value || !std::isfinite(*value)) {
            throw InputError(path, "line " + std::to_string(number) + ": not a time: '" + text + "'");
        }
        times.push_back(*value);
    }
    if (times.empty()) {
        throw InputError(path, "holds no time");
    }
    return times;
}

void MissingTimes::report(std::ostream& err, const std::string& command, std::uint64_t requested,
                          const std::string& span) const
{
    if (total() == 0) {
        return;
    }
    err << command << ": " << total() << " of " << requested << " times without a value: " << counts[0] << " below, "
        << counts[1] << " inside, " << counts[2] << " above " << span << '\n';
}

std::string situationName(Maths::Situation situation)
{
    switch (situation) {
    case Maths::Situation::lower:
        return "below";
    case Maths::Situation::inside:
        return "inside";
    case Maths::Situation::upper:
        return "above";
    }
    return "unknown";
}

} // namespace Kelvo::Tool
