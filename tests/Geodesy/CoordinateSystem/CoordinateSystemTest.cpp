// SPDX-License-Identifier: MIT
#include "Geodesy/CoordinateSystem/CoordinateSystem.h"

#include "Geodesy/CoordinateSystem/OutputCoordinateSystemNotSupportedException.h"

#include <gtest/gtest.h>

#include <string>

namespace Kelvo::Geodesy::CoordinateSystem {
namespace {

using enum CoordinateSystem;

TEST(CoordinateSystemNames, ParseInAnyLetterCaseAndRoundTrip)
{
    const std::pair<std::string, CoordinateSystem> names[] = {{"trf", TRF}, {"NED", NED},         {"llh", LLH},
                                                              {"Llh", LLH}, {"proj", PROJECTION}, {"pRoJ", PROJECTION}};
    for (const auto& [name, system] : names) {
        EXPECT_EQ(fromString(name), system) << name;
        EXPECT_EQ(fromString(toString(system)), system) << name;
    }
    EXPECT_EQ(toString(TRF), "trf");
    EXPECT_EQ(toString(PROJECTION), "proj");
}

TEST(CoordinateSystemNames, UnknownNamesAndSystemsThrowWithAnEmptyMessage)
{
    const auto expectNotSupported = [](const auto& call) {
        try {
            call();
            ADD_FAILURE() << "no exception";
        } catch (const OutputCoordinateSystemNotSupportedException& exception) {
            EXPECT_STREQ(exception.what(), "");
        }
    };
    for (const std::string name : {"", "unknown", "ecef", "projection", " llh", "llh ", "ll\xC4h"}) {
        expectNotSupported([&] { fromString(name); });
    }
    for (const auto system : {UNKNOWN, static_cast<CoordinateSystem>(-1), static_cast<CoordinateSystem>(5)}) {
        expectNotSupported([&] { toString(system); });
    }
}

} // namespace
} // namespace Kelvo::Geodesy::CoordinateSystem
