// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"

#include <utility>

namespace Kelvo::Testing {

AssertionRecorder::AssertionRecorder()
    : previous(CoreAssert::setHandler([this](const std::string& message, const char* file, std::size_t line) {
        recorded.push_back({message, file != nullptr ? file : "", line});
    }))
{
}

AssertionRecorder::~AssertionRecorder()
{
    CoreAssert::setHandler(std::move(previous));
}

std::vector<std::string> AssertionRecorder::messages() const
{
    std::vector<std::string> result;
    result.reserve(recorded.size());
    for (const auto& record : recorded) {
        result.push_back(record.message);
    }
    return result;
}

std::string assertText(const std::string& expression)
{
    return "CORE_ASSERT failed: '" + expression + "'";
}

std::string neverText(const std::string& explanation)
{
    return "CORE_NEVER_COME_HERE triggered: '\"" + explanation + "\"'";
}

} // namespace Kelvo::Testing
