// SPDX-License-Identifier: MIT
// The inline time conversions of the providers must give the values and the reports of the
// library's conversion functions for every input.
#include "support/AssertionRecorder.h"

#include "Geodesy/SbetPositionAttitudeProvider.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <iomanip>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace Kelvo::Geodesy {
namespace {

using Testing::AssertionRecorder;

struct Outcome {
    std::uint64_t bits;
    std::vector<std::string> reports;
    bool operator==(const Outcome&) const = default;
};

Outcome run(const std::function<double(double)>& conversion, double x)
{
    AssertionRecorder recorder;
    const double value = conversion(x);
    std::vector<std::string> reports;
    for (const auto& record : recorder.records()) {
        reports.push_back(record.message + " @ " + record.file + ":" + std::to_string(record.line));
    }
    return {std::bit_cast<std::uint64_t>(value), reports};
}

TEST(ProviderTime, GivesTheValuesAndReportsOfTheLibraryConversions)
{
    const struct {
        const char* name;
        std::function<double(double)> inline_;
        std::function<double(double)> library;
        std::vector<double> edges;
    } conversions[] = {
        {"utcToGps", ProviderTime::utcToGps, utcToGps, {-1.0, -0.0, 0.0}},
        {"utcSecsOfEpochToSecsOfWeek", ProviderTime::utcSecsOfEpochToSecsOfWeek, utcSecsOfEpochToSecsOfWeek,
         {-345600.0, -345600.5, 259200.0, 259200.0 - 1e-9, 0x1p52, 0x1p60, 1e300}},
        {"gpsSecsOfWeekToUtcSecsOfDay", ProviderTime::gpsSecsOfWeekToUtcSecsOfDay, gpsSecsOfWeekToUtcSecsOfDay,
         {10.0, 18.0, 17.999999, 86399.0, 86417.9, 86400.0 + 18.0 - 18.0, 604799.999, 604800.0, 1e9}},
        {"toUtc< week >", [](double s) { return ProviderTime::toUtc<TimeReference::week>(GPSTime(s, 0.0)); },
         [](double s) { return GPSTime(s, 0.0).toUtc(TimeReference::week); }, {-5.0, 0.0, 17.0}},
        {"toUtc< day >", [](double s) { return ProviderTime::toUtc<TimeReference::day>(GPSTime(s, 0.0)); },
         [](double s) { return GPSTime(s, 0.0).toUtc(TimeReference::day); }, {-5.0, 0.0, 17.0, 86390.0}},
    };

    std::vector<double> common = {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                                  -std::numeric_limits<double>::infinity(), 1e-310, 1.0, 86400.0, 604800.0,
                                  1719100800.0, 1719100799.999999};
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> epochs(0.0, 4e9);
    std::uniform_real_distribution<double> weekSeconds(0.0, 604800.0);
    for (int i = 0; i < 5000; ++i) {
        common.push_back(epochs(random));
        common.push_back(weekSeconds(random));
    }

    for (const auto& conversion : conversions) {
        SCOPED_TRACE(conversion.name);
        auto inputs = common;
        inputs.insert(inputs.end(), conversion.edges.begin(), conversion.edges.end());
        int mismatches = 0;
        for (const double x : inputs) {
            const auto expected = run(conversion.library, x);
            const auto actual = run(conversion.inline_, x);
            // The inline form reports through the library function, so file and line agree.
            if (actual != expected && ++mismatches <= 5) {
                ADD_FAILURE() << "x = " << x << ": " << std::bit_cast<double>(actual.bits) << " with "
                              << actual.reports.size() << " reports, expected " << std::bit_cast<double>(expected.bits)
                              << " with " << expected.reports.size();
            }
        }
        EXPECT_EQ(mismatches, 0);
    }
}

TEST(ProviderTime, TheWeekRequestShortcutHoldsWhereverItIsTaken)
{
    // 1719705582 is the end of a GPS week (UTC Sunday 2024-06-30 00:00:00 minus 18 s).
    std::vector<double> inputs = {1315964782.0,           1315964782.0 + 0x1p-22, 1719100800.0,
                                  1719705582.0,           1719705581.0,           1719705581.0 + 0x1p-22,
                                  1719705582.0 - 0x1p-22, 1719705582.0 + 0x1p-22, 2146999999.0,
                                  2147000000.0};
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> epochs(1.2e9, 2.2e9);
    for (int i = 0; i < 20000; ++i) {
        inputs.push_back(epochs(random));
    }
    std::size_t taken = 0;
    for (const double utc : inputs) {
        double secondsOfWeek = 0.0;
        double adjusted = 0.0;
        if (ProviderTime::weekRequest(utc, secondsOfWeek, adjusted)) {
            ++taken;
            ASSERT_EQ(run([&](double) { return adjusted; }, utc), run(utcSecsOfEpochToGpsAdjustedTime, utc))
                << std::setprecision(17) << utc;
            ASSERT_EQ(run([&](double) { return secondsOfWeek; }, utc), run(utcSecsOfEpochToSecsOfWeek, utc)) << utc;
        }
    }
    // Taken for nearly every time from 2011 to 2038: all but the last 19 s of each week.
    EXPECT_GT(taken, inputs.size() * 8 / 10);
}

} // namespace
} // namespace Kelvo::Geodesy
