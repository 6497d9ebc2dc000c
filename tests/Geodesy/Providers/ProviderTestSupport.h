// SPDX-License-Identifier: MIT
// What the position/attitude tests share: the times of a known UTC week, the expected value
// of a trajectory at a time worked out from the records alone, and a reader that counts what
// a provider asks of it.
#pragma once

#include "support/LogRecorder.h"

#include "Geodesy/Sbet/Reader.h"
#include "Geodesy/TimedPositionAttitude.h"
#include "Geodesy/Trajectory/Record.h"
#include "Maths/IntervalCounter.h"
#include "Maths/Situation.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

namespace Kelvo::Geodesy::ProviderTesting {

constexpr auto anyAlignment = Trajectory::Reader::ImuAlignmentStatus::NO_SOLUTION;

/// Sunday 2024-06-23 00:00:00 UTC, the start of a UTC week [UTC s since the Unix epoch].
constexpr double WEEK_START = 1719100800.0;

/// The request, in UTC seconds since the Unix epoch, for GPS second of week `gps` of that
/// week (GPS is 18 s ahead of UTC).
inline double epochSecondsOf(double gps)
{
    return WEEK_START + (gps - 18.0);
}

/// The week lookup of `provider` for GPS second of week `gps`, as (gps, counter) -> answer: it
/// takes UTC seconds since the Unix epoch, here in the week starting at WEEK_START.
template <typename Provider>
auto byEpoch(Provider& provider)
{
    return [&provider](double gps, auto& counter) {
        return provider.getPositionAttitude(epochSecondsOf(gps), counter);
    };
}

/// The day lookup of `provider` for GPS second of week `gps`: it takes UTC seconds of the day.
template <typename Provider>
auto byDay(Provider& provider)
{
    return [&provider](double gps, auto& counter) {
        return provider.getPositionAttitudeOfDay(std::fmod(gps - 18.0, 86400.0), counter);
    };
}

/// A provider's answer as the records say it should be: position and angles as stored,
/// yaw = heading - wander angle, angular rates turned into NED axes by the wander angle.
struct Expected { double seconds, latitude, longitude, height, roll, pitch, yaw, rateNorth, rateEast, rateDown; };
/// Each quantity with its tolerance: nanoseconds, picoradians, nanometres, 1e-15 rad/s.
struct Quantity { double Expected::*field; double tolerance; const char* name; };
constexpr Quantity quantities[] = {
    {&Expected::seconds, 1e-9, "time"},         {&Expected::latitude, 1e-12, "latitude"},
    {&Expected::longitude, 1e-12, "longitude"}, {&Expected::height, 1e-9, "height"},
    {&Expected::roll, 1e-12, "roll"},           {&Expected::pitch, 1e-12, "pitch"},
    {&Expected::yaw, 1e-12, "yaw"},             {&Expected::rateNorth, 1e-15, "rate north"},
    {&Expected::rateEast, 1e-15, "rate east"},  {&Expected::rateDown, 1e-15, "rate down"}};

inline Expected expectedOf(const Trajectory::Record& r)
{
    const double c = std::cos(r.wanderAngle);
    const double s = std::sin(r.wanderAngle);
    return {r.time, r.latitude, r.longitude, r.height, r.roll, r.pitch, r.heading - r.wanderAngle,
            r.angularRateX * c - r.angularRateY * s, -r.angularRateX * s - r.angularRateY * c, -r.angularRateZ};
}

/// The linear blend at fraction k (attitudes far from the +-pi seam).
inline Expected blend(Expected a, const Expected& b, double k)
{
    for (const auto& q : quantities) {
        a.*q.field += (b.*q.field - a.*q.field) * k;
    }
    return a;
}

/// The value at GPS second of week `gps` of a trajectory given by its records in time order.
inline Expected expectedAt(const std::vector<Trajectory::Record>& records, double gps)
{
    std::size_t i = 1;
    while (i + 1 < records.size() && records[i].time < gps) {
        ++i;
    }
    const auto& a = records[i - 1];
    const auto& b = records[i];
    return blend(expectedOf(a), expectedOf(b), (gps - a.time) / (b.time - a.time));
}

inline void expectValue(const TimedPositionAttitude* actual, const Expected& expected)
{
    ASSERT_NE(actual, nullptr);
    const Expected value{actual->time.secondsInWeek, actual->position.latitude, actual->position.longitude,
                         actual->position.height,    actual->attitude.getRoll(), actual->attitude.getPitch(),
                         actual->attitude.getYaw(),  actual->angularRate.x,      actual->angularRate.y,
                         actual->angularRate.z};
    for (const auto& q : quantities) {
        EXPECT_NEAR(value.*q.field, expected.*q.field, q.tolerance) << q.name;
    }
    EXPECT_EQ(actual->time.weekNumber, 0u);
    EXPECT_EQ(actual->status, Trajectory::Record::Status::VALID);
}

/// The counter of a single request counted as `situation`.
inline Maths::IntervalCounter countedAs(Maths::Situation situation)
{
    Maths::IntervalCounter counter;
    counter[situation] = 1;
    return counter;
}

/// One request of a scenario: the GPS second of week asked for, the records whose value at
/// that time is the answer (null: no answer), where it is counted and how many rewinds it logs.
struct Step {
    double gps;
    const std::vector<Trajectory::Record>* answer;
    Maths::Situation counted;
    std::size_t rewinds = 0;
};

/// Runs the steps in order through `ask(gps, counter)`.
template <typename Ask>
void expectSteps(const Ask& ask, const std::vector<Step>& steps)
{
    for (const auto& step : steps) {
        SCOPED_TRACE(step.gps);
        Maths::IntervalCounter counter;
        Testing::EventRecorder events;
        const std::unique_ptr<TimedPositionAttitude> value = ask(step.gps, counter);
        if (step.answer != nullptr) {
            expectValue(value.get(), expectedAt(*step.answer, step.gps));
        } else {
            EXPECT_EQ(value, nullptr);
        }
        EXPECT_EQ(counter, countedAs(step.counted));
        EXPECT_EQ(events.entries().size(), step.rewinds);
    }
}

/// The records of an SBET file read with plain stream reads, independently of the library.
inline std::vector<Trajectory::Record> readSbetDirectly(const std::filesystem::path& path)
{
    static_assert(std::endian::native == std::endian::little);
    std::ifstream file(path, std::ios::binary);
    std::vector<Trajectory::Record> records;
    double v[17];
    while (file.read(reinterpret_cast<char*>(v), sizeof(v))) {
        records.push_back({Trajectory::Record::Status::VALID, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8],
                           v[9], v[10], v[11], v[12], v[13], v[14], v[15], v[16]});
    }
    return records;
}

/// An SBET reader that counts the records, rewinds and openings a provider asks of it. The
/// counts are shared by every instance; reset() starts them again.
class CountingSbetReader {
public:
    static inline std::uint64_t records = 0, rewinds = 0, openings = 0;
    static void reset() { records = rewinds = openings = 0; }

    CountingSbetReader(const Core::FileInfo& fileInfo, Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus)
        : reader(fileInfo, imuAlignmentStatus)
    {
        ++openings;
    }
    Trajectory::Record getNext() { ++records; return reader.getNext(); }
    void returnToBegin() { ++rewinds; reader.returnToBegin(); }
    bool endOfFile() const { return reader.endOfFile(); }
    bool isRemote() const { return reader.isRemote(); }
    Maths::Interval<double> getTimeInterval(TimeReference reference) const { return reader.getTimeInterval(reference); }

private:
    Sbet::Reader reader;
};

} // namespace Kelvo::Geodesy::ProviderTesting
