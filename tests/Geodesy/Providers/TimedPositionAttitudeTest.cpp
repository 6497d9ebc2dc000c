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

using Testing::AssertionRecorder;
using Testing::assertText;
using Status = Trajectory::Record::Status;

constexpr double pi = std::numbers::pi;

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
    EXPECT_EQ(value->position,
              LatLonHeight(Maths::Radian(record.latitude), Maths::Radian(record.longitude), record.height));
    EXPECT_EQ(value->attitude, Maths::EulerAngles(Maths::Radian(record.roll), Maths::Radian(record.pitch),
                                                  Maths::Radian(record.heading - pi / 6.0)));
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
    // No transform and one of another kind leave the position as it is.
    for (const std::optional<std::int32_t> kind : {std::optional<std::int32_t>(), std::optional<std::int32_t>(2)}) {
        const auto transform = kind ? std::make_unique<CRS::Transform>(*kind, shift) : nullptr;
        EXPECT_EQ(TimedPositionAttitude::fromSbet(record, transform)->position,
                  LatLonHeight(Maths::Radian(record.latitude), Maths::Radian(record.longitude), record.height));
    }
    EXPECT_TRUE(seen.empty());

    const auto value = TimedPositionAttitude::fromSbet(record, std::make_unique<CRS::Transform>(1, shift));
    EXPECT_NEAR(value->position.latitude, record.latitude + pi / 180.0, 1e-15);
    EXPECT_NEAR(value->position.longitude, record.longitude - 2.0 * pi / 180.0, 1e-15);
    EXPECT_EQ(value->position.height, record.height + 3.0);
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_NEAR(seen[0].x, record.latitude * 180.0 / pi, 1e-12);
    EXPECT_NEAR(seen[0].y, record.longitude * 180.0 / pi, 1e-12);
    EXPECT_EQ(seen[0].z, record.height);
}

TEST(TimedPositionAttitude, InterpolateBlendsOnlyValidValuesAndReportsInvalidOnes)
{
    const auto a = Testing::syntheticRecord(100.0);
    const auto b = Testing::syntheticRecord(100.5);
    const std::string invalidA = assertText("a.status != Trajectory::Record::INVALID");
    const std::string invalidB = assertText("b.status != Trajectory::Record::INVALID");
    const struct { Status a; Status b; std::vector<std::string> reports; } cases[] = {
        {Status::VALID, Status::VALID, {}},
        {Status::NOT_ALIGNED, Status::VALID, {}},
        {Status::VALID, Status::NOT_ALIGNED, {}},
        {Status::INVALID, Status::VALID, {invalidA}},
        {Status::VALID, Status::INVALID, {invalidB}},
        {Status::INVALID, Status::INVALID, {invalidA, invalidB}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.a) * 10 + static_cast<int>(c.b));
        AssertionRecorder recorder;
        auto first = TimedPositionAttitude::fromSbet(a, nullptr);
        auto second = TimedPositionAttitude::fromSbet(b, nullptr);
        first->status = c.a;
        second->status = c.b;
        const auto value = TimedPositionAttitude::interpolate(*first, *second, 0.25, 1234.5);
        if (c.a == Status::VALID && c.b == Status::VALID) {
            ProviderTesting::expectValue(value.get(), ProviderTesting::blend(ProviderTesting::expectedOf(a),
                                                                             ProviderTesting::expectedOf(b), 0.25));
            EXPECT_EQ(value->time.auxiliarySeconds, 1234.5);
        } else {
            EXPECT_EQ(value, nullptr);
        }
        EXPECT_EQ(recorder.messages(), c.reports);
        for (const auto& record : recorder.records()) {
            EXPECT_EQ(record.file, "src/Geodesy/src/Geodesy/TimedPositionAttitude.cpp");
        }
    }
}

TEST(TimedPositionAttitude, InterpolateBlendsLongitudesAsPlainNumbersAndDropsWeekNumbers)
{
    const TimedPositionAttitude a(GPSTime(10.0, 2300u), LatLonHeight(Maths::Radian(0.5), Maths::Radian(-3.1), 0.0), {},
                                  Status::VALID);
    TimedPositionAttitude b = a;
    b.time.secondsInWeek = 11.0;
    b.position.longitude = Maths::Radian(3.1);
    const auto value = TimedPositionAttitude::interpolate(a, b, 0.5, 0.0);
    EXPECT_NEAR(value->position.longitude, 0.0, 1e-15) << "through zero, not through the antimeridian";
    EXPECT_EQ(value->time.weekNumber, 0u);
}

} // namespace
} // namespace Kelvo::Geodesy
