// SPDX-License-Identifier: MIT
// Throughput of the GPS/UTC conversions that every timed lookup runs.
#include "Geodesy/GPSTime.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

std::vector<double> utcTimes()
{
    std::vector<double> times(4096);
    double t = 1719217200.0; // 2024-06-24
    for (auto& time : times) {
        time = t;
        t += 0.005;
    }
    return times;
}

void utcToGpsSecondsOfWeek(benchmark::State& state)
{
    const auto times = utcTimes();
    for (auto _ : state) {
        for (const double t : times) {
            benchmark::DoNotOptimize(Kelvo::Geodesy::utcSecsOfEpochToSecsOfWeek(t));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(times.size()));
}
BENCHMARK(utcToGpsSecondsOfWeek);

void utcToGpsAdjustedTime(benchmark::State& state)
{
    const auto times = utcTimes();
    for (auto _ : state) {
        for (const double t : times) {
            benchmark::DoNotOptimize(Kelvo::Geodesy::utcSecsOfEpochToGpsAdjustedTime(t));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(times.size()));
}
BENCHMARK(utcToGpsAdjustedTime);

} // namespace

BENCHMARK_MAIN();
