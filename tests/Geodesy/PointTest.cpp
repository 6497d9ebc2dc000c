// SPDX-License-Identifier: MIT
#include "support/AssertionRecorder.h"
#include "support/LogRecorder.h"

#include "Geodesy/Point.h"

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

Point reference()
{
    return {1.0, 2.0, 3.0, 4.0, 0.5, 6, 7.0, 8, 9, true, 10u};
}

TEST(Point, TakesTheFieldsInOrderAndComparesAllButFlagAndOptionalIndex)
{
    const Point p = reference();
    EXPECT_EQ(std::vector<double>({p.getX(), p.getY(), p.getZ(), p.measuredValue, p.intensity, *p.optionalValue}),
              std::vector<double>({1, 2, 3, 4, 0.5, 7}));
    EXPECT_EQ(std::vector<std::uint64_t>({p.byteAttribute, p.wideIndex, p.firstIndex, p.flag, *p.optionalIndex}),
              std::vector<std::uint64_t>({6, 8, 9, 1, 10}));

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
    EXPECT_FALSE(empty == Point(1.0, 2.0, 3.0, 4.0, 0.5, 6, 0.0, 8, 9, true, 10u));
}

TEST(Point, IntensityOutsideTheUnitRangeIsLoggedThenAsserted)
{
    const Core::Event::LoggingEventInfo error{Core::Event::ERROR_CATEGORY, 24, Point::INTENSITY_EVENT_CODE()};
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

        const std::size_t reports = intensity >= 0.0 && intensity <= 1.0 ? 0 : 1;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(point.intensity), std::bit_cast<std::uint64_t>(intensity));
        EXPECT_EQ(events.entries(), std::vector(reports, std::pair(error, std::string("package 24, error 0"))));
        const auto report = Testing::assertText("intensity >= 0.0 && intensity <= 1.0");
        EXPECT_EQ(recorder.messages(), std::vector(reports, report));
        EXPECT_EQ(eventsAtAssertion, std::vector<std::size_t>(reports, 1)) << "the event comes first";
        EXPECT_TRUE(!reports || recorder.records().at(0).file == "src/Geodesy/src/Geodesy/Point.cpp") << intensity;
    }
}

} // namespace
} // namespace Kelvo::Geodesy
