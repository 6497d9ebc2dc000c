// SPDX-License-Identifier: MIT
#pragma once

#include "Utils/CoreAssert.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Kelvo::Testing {

struct RecordedAssertion {
    std::string message;
    std::string file;
    std::size_t line;
};

/// Records every assertion report while it lives, then restores the previous handler.
/// Without one, the test main() turns any assertion report into a test failure.
class AssertionRecorder {
public:
    AssertionRecorder();
    ~AssertionRecorder();
    AssertionRecorder(const AssertionRecorder&) = delete;
    AssertionRecorder& operator=(const AssertionRecorder&) = delete;

    const std::vector<RecordedAssertion>& records() const { return recorded; }
    std::vector<std::string> messages() const;
    void clear() { recorded.clear(); }

private:
    std::vector<RecordedAssertion> recorded;
    CoreAssert::Handler previous;
};

/// "CORE_ASSERT failed: '<expression>'".
std::string assertText(const std::string& expression);
/// "CORE_NEVER_COME_HERE triggered: '\"<explanation>\"'".
std::string neverText(const std::string& explanation);

} // namespace Kelvo::Testing
