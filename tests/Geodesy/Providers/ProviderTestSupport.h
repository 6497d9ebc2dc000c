// SPDX-License-Identifier: MIT
// What the position/attitude tests share: the times of a known UTC week, the expected value
// of a trajectory at a time worked out from the records alone, and a reader that counts what
// a provider asks of it.
#pragma once

#include "Geodesy/Sbet/Reader.h"
#include "Geodesy/TimedPositionAttitude.h"
#include "Geodesy/Trajectory/Record.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
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

/// The GPS adjusted time of a request: GPS seconds since 1980-01-06 minus 1e9.
inline double gpsAdjustedTimeOf(double epochSeconds)
{
    return epochSeconds - 315964800.0 + 18.0 - 1e9;
}

/// A provider's answer as the records say it should be: position and angles as stored,
/// yaw = heading - wander angle, angular rates turned into NED axes by the wander angle.
struct Expected {
    double seconds;
    double latitude;
    double longitude;
    double height;
    double roll;
    double pitch;
    double yaw;
    double rateNorth;
    double rateEast;
    double rateDown;
};

inline Expected expectedOf(const Trajectory::Record& r)
{
    const double c = std::cos(r.wanderAngle);
    const double s = std::sin(r.wanderAngle);
    return {r.time,
            r.latitude,
            r.longitude,
            r.height,
            r.roll,
            r.pitch,
            r.heading - r.wanderAngle,
            r.angularRateX * c - r.angularRateY * s,
            -r.angularRateX * s - r.angularRateY * c,
            -r.angularRateZ};
}

/// The linear blend at fraction k (attitudes far from the +-pi seam).
inline Expected blend(const Expected& a, const Expected& b, double k)
{
    const auto mix = [k](double x, double y) { return x + (y - x) * k; };
    return {mix(a.seconds, b.seconds),     mix(a.latitude, b.latitude),   mix(a.longitude, b.longitude),
            mix(a.height, b.height),       mix(a.roll, b.roll),           mix(a.pitch, b.pitch),
            mix(a.yaw, b.yaw),             mix(a.rateNorth, b.rateNorth), mix(a.rateEast, b.rateEast),
            mix(a.rateDown, b.rateDown)};
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

/// Tolerances per quantity: nanoseconds, picoradians, nanometres, and rates to 1e-15 rad/s.
inline void expectValue(const TimedPositionAttitude* actual, const Expected& expected)
{
    ASSERT_NE(actual, nullptr);
    EXPECT_NEAR(actual->time.secondsInWeek, expected.seconds, 1e-9);
    EXPECT_EQ(actual->time.weekNumber, 0u);
    EXPECT_NEAR(actual->position.latitude, expected.latitude, 1e-12);
    EXPECT_NEAR(actual->position.longitude, expected.longitude, 1e-12);
    EXPECT_NEAR(actual->position.height, expected.height, 1e-9);
    EXPECT_NEAR(actual->attitude.getRoll(), expected.roll, 1e-12);
    EXPECT_NEAR(actual->attitude.getPitch(), expected.pitch, 1e-12);
    EXPECT_NEAR(actual->attitude.getYaw(), expected.yaw, 1e-12);
    EXPECT_NEAR(actual->angularRate.x, expected.rateNorth, 1e-15);
    EXPECT_NEAR(actual->angularRate.y, expected.rateEast, 1e-15);
    EXPECT_NEAR(actual->angularRate.z, expected.rateDown, 1e-15);
    EXPECT_EQ(actual->status, Trajectory::Record::Status::VALID);
}

/// The records of an SBET file read with plain stream reads, independently of the library.
inline std::vector<Trajectory::Record> readSbetDirectly(const std::filesystem::path& path)
{
    static_assert(std::endian::native == std::endian::little);
    std::ifstream file(path, std::ios::binary);
    std::vector<Trajectory::Record> records;
    double values[17];
    while (file.read(reinterpret_cast<char*>(values), sizeof(values))) {
        records.push_back({Trajectory::Record::Status::VALID, values[0], values[1], values[2], values[3], values[4],
                           values[5], values[6], values[7], values[8], values[9], values[10], values[11], values[12],
                           values[13], values[14], values[15], values[16]});
    }
    return records;
}

/// An SBET reader that counts the records, rewinds and openings a provider asks of it. The
/// counts are shared by every instance; reset() starts them again.
class CountingSbetReader {
public:
    static inline std::uint64_t records = 0;
    static inline std::uint64_t rewinds = 0;
    static inline std::uint64_t openings = 0;

    static void reset() { records = rewinds = openings = 0; }

    CountingSbetReader(const Core::FileInfo& fileInfo, Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus)
        : reader(fileInfo, imuAlignmentStatus)
    {
        ++openings;
    }

    Trajectory::Record getNext()
    {
        ++records;
        return reader.getNext();
    }

    void returnToBegin()
    {
        ++rewinds;
        reader.returnToBegin();
    }

    bool endOfFile() const { return reader.endOfFile(); }
    bool isRemote() const { return reader.isRemote(); }
    Maths::Interval<double> getTimeInterval(TimeReference reference) const { return reader.getTimeInterval(reference); }

private:
    Sbet::Reader reader;
};

} // namespace Kelvo::Geodesy::ProviderTesting
