// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"

#include "Geodesy/Point.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using ::testing::ElementsAre;

Point reference()
{
    return {1.0, 2.0, 3.0, 4.0, 0.5, 6, 7.0, 8, 9, true, 10u};
}

TEST(Point, ConstructorStoresTheArgumentsInOrder)
{
    const Point p = reference();
    EXPECT_EQ(std::vector<double>({p.getX(), p.getY(), p.getZ(), p.measuredValue, p.intensity, *p.optionalValue}),
              std::vector<double>({1, 2, 3, 4, 0.5, 7}));
    EXPECT_EQ(std::vector<std::uint64_t>({p.byteAttribute, p.wideIndex, p.firstIndex, p.flag, *p.optionalIndex}),
              std::vector<std::uint64_t>({6, 8, 9, 1, 10}));
}

TEST(Point, EqualityComparesEveryFieldButFlagAndOptionalIndex)
{
    struct Case {
        const char* change;
        std::function<void(Point&)> apply;
        bool stillEqual;
    };
    const Case cases[] = {
        {"x", [](Point& p) { p.setX(1.5); }, false},
        {"y", [](Point& p) { p.setY(-2.0); }, false},
        {"z", [](Point& p) { p.setZ(0.0); }, false},
        {"measuredValue", [](Point& p) { p.measuredValue = 4.25; }, false},
        {"measuredValue NaN", [](Point& p) { p.measuredValue = std::nan(""); }, false},
        {"intensity", [](Point& p) { p.intensity = 0.75; }, false},
        {"byteAttribute", [](Point& p) { p.byteAttribute = 7; }, false},
        {"optionalValue", [](Point& p) { p.optionalValue = 7.5; }, false},
        {"optionalValue empty", [](Point& p) { p.optionalValue.reset(); }, false},
        {"wideIndex", [](Point& p) { p.wideIndex = 1ULL << 40; }, false},
        {"firstIndex", [](Point& p) { p.firstIndex = 0; }, false},
        {"flag", [](Point& p) { p.flag = false; }, true},
        {"optionalIndex", [](Point& p) { p.optionalIndex = 11u; }, true},
        {"optionalIndex empty", [](Point& p) { p.optionalIndex.reset(); }, true},
    };
    for (const auto& c : cases) {
        Point changed = reference();
        c.apply(changed);
        EXPECT_EQ(changed == reference(), c.stillEqual) << c.change;
        EXPECT_EQ(reference() == changed, c.stillEqual) << c.change;
    }

    // An empty optional value is not a zero one.
    Point empty = reference();
    empty.optionalValue.reset();
    Point zero = reference();
    zero.optionalValue = 0.0;
    EXPECT_FALSE(empty == zero);
}

TEST(Point, IntensityOutsideTheUnitRangeIsLoggedThenAsserted)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double intensity : {0.0, -0.0, 1.0, -0.0001, 1.0001, std::nan(""), infinity}) {
        Testing::EventRecorder events;
        Testing::AssertionRecorder recorder;
        // Notes how many events were logged when the assertion came.
        std::vector<std::size_t> eventsAtAssertion;
        const auto recording = CoreAssert::setHandler({});
        CoreAssert::setHandler([&](const std::string& message, const char* file, std::size_t line) {
            eventsAtAssertion.push_back(events.entries().size());
            recording(message, file, line);
        });
        const Point point(0, 0, 0, 0, intensity, 0, std::nullopt, 0, 0, false, std::nullopt);
        CoreAssert::setHandler(recording);

        if (intensity >= 0.0 && intensity <= 1.0) {
            EXPECT_TRUE(events.entries().empty() && recorder.records().empty()) << intensity;
            continue;
        }
        EXPECT_EQ(std::bit_cast<std::uint64_t>(point.intensity), std::bit_cast<std::uint64_t>(intensity));
        const Core::Event::LoggingEventInfo error{Core::Event::ERROR_CATEGORY, 24, Point::INTENSITY_EVENT_CODE()};
        EXPECT_THAT(events.entries(), ElementsAre(std::pair(error, std::string("package 24, error 0")))) << intensity;
        EXPECT_THAT(recorder.messages(), ElementsAre(Testing::assertText("intensity >= 0.0 && intensity <= 1.0")));
        EXPECT_EQ(recorder.records().at(0).file, "src/Geodesy/src/Geodesy/Point.cpp");
        EXPECT_THAT(eventsAtAssertion, ElementsAre(1u));
    }
}

} // namespace
} // namespace Kelvo::Geodesy
