// SPDX-License-Identifier: MIT
#include "ProviderTestSupport.h"

#include "support/AssertionRecorder.h"
#include "support/TrajectoryFiles.h"

#include "Geodesy/TimedPositionAttitude.h"

#include <gtest/gtest.h>

#include <array>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using ProviderTesting::expectedOf;
using ProviderTesting::expectValue;
using Testing::AssertionRecorder;
using Testing::assertText;
using Status = Trajectory::Record::Status;

constexpr double pi = std::numbers::pi;

TimedPositionAttitude valueAt(double seconds, double latitude, double longitude, double height, double yaw,
                              Maths::PositionVector3 rate, Status status = Status::VALID)
{
    return {GPSTime(seconds, 0.0), LatLonHeight(Maths::Radian(latitude), Maths::Radian(longitude), height),
            Maths::EulerAngles(Maths::Radian(0.01), Maths::Radian(-0.02), Maths::Radian(yaw)), rate, status};
}

TEST(TimedPositionAttitude, FromSbetTurnsTheRatesIntoNedAndTheHeadingIntoTheTrueHeading)
{
    auto record = Testing::syntheticRecord(1000.0);
    record.status = Status::NOT_ALIGNED;
    record.wanderAngle = pi / 6.0;
    record.angularRateX = 0.2;
    record.angularRateY = 0.1;
    record.angularRateZ = 0.05;

    const auto value = TimedPositionAttitude::fromSbet(record, nullptr);
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->time.secondsInWeek, 1000.0);
    EXPECT_EQ(value->time.auxiliarySeconds, 0.0);
    EXPECT_EQ(value->time.weekNumber, 0u);
    EXPECT_EQ(value->status, Status::NOT_ALIGNED);
    EXPECT_EQ(value->position, LatLonHeight(Maths::Radian(record.latitude), Maths::Radian(record.longitude), record.height));
    EXPECT_EQ(value->attitude.getRoll(), record.roll);
    EXPECT_EQ(value->attitude.getPitch(), record.pitch);
    EXPECT_DOUBLE_EQ(value->attitude.getYaw(), record.heading - pi / 6.0);
    // cos 30 deg = sqrt(3)/2, sin 30 deg = 1/2.
    const double c = std::sqrt(3.0) / 2.0;
    EXPECT_NEAR(value->angularRate.x, 0.2 * c - 0.1 * 0.5, 1e-15);
    EXPECT_NEAR(value->angularRate.y, -0.2 * 0.5 - 0.1 * c, 1e-15);
    EXPECT_EQ(value->angularRate.z, -0.05);

    // The true heading is not wrapped.
    for (const auto [heading, wander, yaw] : {std::array{0.1, 0.3, -0.2}, {-3.1, 0.2, -3.3}, {3.1, -0.2, 3.3}}) {
        record.heading = heading;
        record.wanderAngle = wander;
        EXPECT_NEAR(TimedPositionAttitude::fromSbet(record, nullptr)->attitude.getYaw(), yaw, 1e-15) << heading;
    }
}

TEST(TimedPositionAttitude, FromSbetPassesThePositionThroughAGeographicTransformInDegrees)
{
    const auto record = Testing::syntheticRecord(500.0);
    std::vector<Maths::PositionVector3> seen;
    const auto shift = [&seen](const Maths::PositionVector3& p, CRS::ConvertStep step) {
        EXPECT_EQ(static_cast<int>(step), 1);
        seen.push_back(p);
        return Maths::PositionVector3(p.x + 1.0, p.y - 2.0, p.z + 3.0);
    };

    const struct {
        const char* name;
        std::optional<std::int32_t> kind;
        double latitude;
        double longitude;
        double height;
        std::size_t conversions;
    } cases[] = {
        {"no transform", std::nullopt, record.latitude, record.longitude, record.height, 0},
        {"another kind", 2, record.latitude, record.longitude, record.height, 0},
        {"geographic degrees", 1, record.latitude + pi / 180.0, record.longitude - 2.0 * pi / 180.0, record.height + 3.0, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        seen.clear();
        const auto transform = c.kind ? std::make_unique<CRS::Transform>(*c.kind, shift) : nullptr;
        const auto value = TimedPositionAttitude::fromSbet(record, transform);
        EXPECT_NEAR(value->position.latitude, c.latitude, 1e-15);
        EXPECT_NEAR(value->position.longitude, c.longitude, 1e-15);
        EXPECT_EQ(value->position.height, c.height);
        ASSERT_EQ(seen.size(), c.conversions);
        if (c.conversions > 0) {
            EXPECT_NEAR(seen[0].x, record.latitude * 180.0 / pi, 1e-12);
            EXPECT_NEAR(seen[0].y, record.longitude * 180.0 / pi, 1e-12);
            EXPECT_EQ(seen[0].z, record.height);
        }
    }
}

TEST(TimedPositionAttitude, InterpolateBlendsEveryQuantityLinearly)
{
    auto first = Testing::syntheticRecord(100.0);
    auto second = Testing::syntheticRecord(100.5);
    const auto a = TimedPositionAttitude::fromSbet(first, nullptr);
    const auto b = TimedPositionAttitude::fromSbet(second, nullptr);

    for (const double k : {0.0, 0.25, 0.5, 1.0}) {
        SCOPED_TRACE(k);
        const auto value = TimedPositionAttitude::interpolate(*a, *b, k, 1234.5);
        expectValue(value.get(), ProviderTesting::blend(expectedOf(first), expectedOf(second), k));
        EXPECT_EQ(value->time.auxiliarySeconds, 1234.5);
    }
}

TEST(TimedPositionAttitude, InterpolateBlendsLongitudesAsPlainNumbersAndDropsWeekNumbers)
{
    auto a = valueAt(10.0, 0.5, -3.1, 0.0, 0.0, {});
    auto b = valueAt(11.0, 0.5, 3.1, 0.0, 0.0, {});
    a.time.weekNumber = 2300;
    b.time.weekNumber = 2300;
    const auto value = TimedPositionAttitude::interpolate(a, b, 0.5, 0.0);
    EXPECT_NEAR(value->position.longitude, 0.0, 1e-15) << "through zero, not through the antimeridian";
    EXPECT_EQ(value->time.weekNumber, 0u);
}

TEST(TimedPositionAttitude, InterpolateAnswersOnlyBetweenValidValuesAndReportsInvalidOnes)
{
    const std::string invalidA = assertText("a.status != Trajectory::Record::INVALID");
    const std::string invalidB = assertText("b.status != Trajectory::Record::INVALID");
    const struct {
        Status a;
        Status b;
        bool answered;
        std::vector<std::string> reports;
    } cases[] = {
        {Status::VALID, Status::VALID, true, {}},
        {Status::NOT_ALIGNED, Status::VALID, false, {}},
        {Status::VALID, Status::NOT_ALIGNED, false, {}},
        {Status::INVALID, Status::VALID, false, {invalidA}},
        {Status::VALID, Status::INVALID, false, {invalidB}},
        {Status::INVALID, Status::INVALID, false, {invalidA, invalidB}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.a) * 10 + static_cast<int>(c.b));
        AssertionRecorder recorder;
        const auto value = TimedPositionAttitude::interpolate(valueAt(1.0, 0.1, 0.2, 3.0, 0.0, {}, c.a),
                                                              valueAt(2.0, 0.1, 0.2, 3.0, 0.0, {}, c.b), 0.5, 0.0);
        EXPECT_EQ(value != nullptr, c.answered);
        EXPECT_EQ(recorder.messages(), c.reports);
        for (const auto& record : recorder.records()) {
            EXPECT_EQ(record.file, "src/Geodesy/src/Geodesy/TimedPositionAttitude.cpp");
        }
    }
}

} // namespace
} // namespace Kelvo::Geodesy
