// SPDX-License-Identifier: MIT
// main() of every test program: an assertion report that no AssertionRecorder expects fails
// the running test, so that silent precondition failures cannot pass unnoticed.
#include "Utils/CoreAssert.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    Kelvo::CoreAssert::setHandler([](const std::string& message, const char* file, std::size_t line) {
        ADD_FAILURE_AT(file, static_cast<int>(line)) << "unexpected assertion: " << message;
    });
    return RUN_ALL_TESTS();
}
