// SPDX-License-Identifier: MIT
#include "Geodesy/CoordinateSystem/CoordinateSystem.h"

#include "Geodesy/CoordinateSystem/OutputCoordinateSystemNotSupportedException.h"

#include <gtest/gtest.h>

#include <string>

namespace Kelvo::Geodesy::CoordinateSystem {
namespace {

template <typename Call>
void expectNotSupported(Call call)
{
    try {
        call();
        ADD_FAILURE() << "no exception";
    } catch (const OutputCoordinateSystemNotSupportedException& exception) {
        EXPECT_STREQ(exception.what(), "");
    }
}

TEST(CoordinateSystemNames, ParseInAnyLetterCase)
{
    const std::pair<std::string, CoordinateSystem> names[] = {
        {"trf", CoordinateSystem::TRF}, {"NED", CoordinateSystem::NED},         {"llh", CoordinateSystem::LLH},
        {"Llh", CoordinateSystem::LLH}, {"proj", CoordinateSystem::PROJECTION}, {"pRoJ", CoordinateSystem::PROJECTION},
    };
    for (const auto& [name, system] : names) {
        EXPECT_EQ(fromString(name), system) << name;
    }
    for (const std::string name : {"", "unknown", "ecef", "projection", " llh", "llh ", "ll\xC4h"}) {
        expectNotSupported([&] { fromString(name); });
    }
}

TEST(CoordinateSystemNames, EveryNamedSystemRoundTripsAndOthersThrow)
{
    EXPECT_EQ(toString(CoordinateSystem::TRF), "trf");
    EXPECT_EQ(toString(CoordinateSystem::PROJECTION), "proj");
    for (const auto system : {CoordinateSystem::TRF, CoordinateSystem::NED, CoordinateSystem::LLH,
                              CoordinateSystem::PROJECTION}) {
        EXPECT_EQ(fromString(toString(system)), system);
    }
    for (const auto system : {CoordinateSystem::UNKNOWN, static_cast<CoordinateSystem>(-1),
                              static_cast<CoordinateSystem>(5)}) {
        expectNotSupported([&] { toString(system); });
    }
}

} // namespace
} // namespace Kelvo::Geodesy::CoordinateSystem
