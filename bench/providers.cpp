// SPDX-License-Identifier: MIT
// Throughput of position/attitude lookups: a provider over a 200 Hz SBET file of 1,000,000
// records answers 20,000,000 increasing UTC times spread evenly over the file (about twenty
// per record, as lidar time stamps come). Beside it, a plain loop that walks the records in
// memory and blends six values per time: the ceiling. bench/compare_providers.sh runs this
// and numpy's np.interp over the same file and times.
//
// The file is written with Sbet::Writer at the first run, into "provider-bench-data" beside
// this program, and kept for later runs.
#include "Geodesy/PositionAttitudeProviderFactory.h"
#include "Geodesy/SbetPositionAttitudeProvider.h"

#include "BenchFiles.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <vector>

namespace {

using namespace Kelvo;
using namespace Kelvo::Geodesy;
namespace fs = std::filesystem;

constexpr std::size_t RECORDS = 1'000'000;
constexpr double RATE = 200.0;
constexpr double FIRST_TIME = 400000.0; // GPS s of week: Thursday 15:06:40
constexpr std::size_t QUERIES = 20'000'000;
// Sunday 2024-06-23 00:00:00 UTC, the start of the UTC week of the file [UTC s since 1970].
constexpr double WEEK_START = 1719100800.0;
constexpr double LEAP_SECONDS = 18.0;

fs::path dataFolder;

// A platform flying a gentle S-curve: every value moves, none wraps.
Trajectory::Record recordAt(std::size_t index)
{
    const double t = FIRST_TIME + static_cast<double>(index) / RATE;
    const double s = static_cast<double>(index) / RATE;
    const double swing = std::sin(s / 60.0);
    return {Trajectory::Record::Status::VALID,
            t,
            0.6591 + 1e-7 * s,
            -2.0773 + 2e-7 * s + 1e-5 * swing,
            1500.0 + 20.0 * swing,
            50.0,
            10.0 * swing,
            0.1,
            0.05 * swing,
            0.02,
            1.0 + 0.3 * swing,
            0.0178,
            0.1,
            -0.2,
            9.8,
            0.001,
            -0.002,
            0.005 * std::cos(s / 60.0)};
}

const fs::path& sbetFile()
{
    static const fs::path path = Bench::writtenSbet(dataFolder / "sbet-200hz-1m.sbet", RECORDS, recordAt);
    return path;
}

// The i-th request, UTC seconds since the Unix epoch: from the first record's time to just
// before the last one's, in equal steps.
struct Requests {
    double first = WEEK_START + (FIRST_TIME - LEAP_SECONDS);
    double step = static_cast<double>(RECORDS - 1) / RATE / static_cast<double>(QUERIES);
    double at(std::size_t i) const { return first + step * static_cast<double>(i); }
};

template <typename Provider>
void answerEveryRequest(benchmark::State& state, const std::function<std::unique_ptr<Provider>()>& open)
{
    const Requests requests;
    double sum = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        auto provider = open();
        Maths::IntervalCounter counter;
        state.ResumeTiming();
        for (std::size_t i = 0; i < QUERIES; ++i) {
            const auto value = provider->getPositionAttitude(requests.at(i), counter);
            sum += value->position.height + value->attitude.getYaw();
        }
        if (counter[Maths::Situation::inside] != QUERIES) {
            state.SkipWithError("a request fell outside the file");
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(QUERIES));
}

void providerIncreasingUtcTimes(benchmark::State& state)
{
    answerEveryRequest<SbetPositionAttitudeProvider<Sbet::Reader>>(state, [] {
        return std::make_unique<SbetPositionAttitudeProvider<Sbet::Reader>>(
            Core::FileInfo(sbetFile()), nullptr, Trajectory::Reader::ImuAlignmentStatus::NO_SOLUTION);
    });
}
BENCHMARK(providerIncreasingUtcTimes)->Unit(benchmark::kMillisecond);

// The same through the interface, as a program that only knows the factory sees it.
void factoryProviderIncreasingUtcTimes(benchmark::State& state)
{
    answerEveryRequest<PositionAttitudeProvider>(state, [] {
        return PositionAttitudeProviderFactory().create({Core::FileInfo(sbetFile())}, nullptr,
                                                        Trajectory::Reader::ImuAlignmentStatus::NO_SOLUTION);
    });
}
BENCHMARK(factoryProviderIncreasingUtcTimes)->Unit(benchmark::kMillisecond);

// The ceiling: the records already in memory, the requests already in the file's GPS
// seconds of week, a forward walk and six linear blends per request.
void plainForwardWalk(benchmark::State& state)
{
    std::vector<double> times(RECORDS);
    std::vector<std::array<double, 6>> values(RECORDS);
    {
        std::ifstream file(sbetFile(), std::ios::binary);
        std::array<double, 17> record;
        for (std::size_t i = 0; i < RECORDS; ++i) {
            file.read(reinterpret_cast<char*>(record.data()), sizeof(record));
            times[i] = record[0];
            values[i] = {record[1], record[2], record[3], record[7], record[8], record[9]};
        }
    }
    const Requests requests;
    double sum = 0.0;
    for (auto _ : state) {
        std::size_t j = 0;
        for (std::size_t i = 0; i < QUERIES; ++i) {
            const double t = requests.at(i) - WEEK_START + LEAP_SECONDS;
            while (j + 2 < RECORDS && times[j + 1] < t) {
                ++j;
            }
            const double k = (t - times[j]) / (times[j + 1] - times[j]);
            std::array<double, 6> blended;
            for (std::size_t c = 0; c < 6; ++c) {
                blended[c] = values[j][c] + (values[j + 1][c] - values[j][c]) * k;
            }
            benchmark::DoNotOptimize(blended);
            sum += blended[2];
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(QUERIES));
}
BENCHMARK(plainForwardWalk)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    dataFolder = fs::path(argv[0]).parent_path() / "provider-bench-data";
    return Bench::runBenchmarks(argc, argv, [] { std::cerr << "data: " << sbetFile().string() << '\n'; });
}
