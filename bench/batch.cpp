// SPDX-License-Identifier: MIT
// Throughput of the batch engine over a 200 Hz SBET file of 1,000,000 records: loading the
// table beside the reader's own getNext() loop, poses at 20,000,000 increasing and
// 10,000,000 shuffled UTC times, and georeferencing 20,000,000 points to ECEF and to
// geodetic coordinates, each on one and on two threads. bench/compare_providers.sh runs
// this and numpy's np.interp over the same file and times.
//
// The file is written with Sbet::Writer at the first run, into "batch-bench-data" beside this
// program, and kept for later runs.
#include "Geodesy/Batch/Georeferencer.h"
#include "Geodesy/Batch/TrajectoryTable.h"
#include "Geodesy/Sbet/Reader.h"

#include "BenchFiles.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <numbers>
#include <random>
#include <vector>

namespace {

using namespace Kelvo;
using namespace Kelvo::Geodesy;
using namespace Kelvo::Geodesy::Batch;
namespace fs = std::filesystem;

constexpr std::size_t RECORDS = 1'000'000;
constexpr double RATE = 200.0;
constexpr double FIRST_TIME = 400000.0; // GPS s of week
constexpr std::size_t SORTED_QUERIES = 20'000'000;
constexpr std::size_t SHUFFLED_QUERIES = 10'000'000;
constexpr std::size_t POINTS = 20'000'000;
// Sunday 2024-06-23 00:00:00 UTC, the start of the UTC week of the file [UTC s since 1970].
constexpr double WEEK_START = 1719100800.0;
constexpr double LEAP_SECONDS = 18.0;

fs::path dataFolder;

// A survey flight: straight legs joined by turns, the heading wrapping through +-180 deg,
// the attitude shaking a little, the wander angle following the longitude.
Trajectory::Record recordAt(std::size_t index)
{
    const double s = static_cast<double>(index) / RATE;
    const double turn = std::sin(s / 90.0);
    const double heading = std::remainder(0.4 * s / 90.0 + 2.0 * turn, 2.0 * std::numbers::pi);
    return {Trajectory::Record::Status::VALID,
            FIRST_TIME + s,
            0.7 + 2e-6 * s,
            0.1 + 3e-6 * s + 1e-4 * turn,
            800.0 + 30.0 * turn,
            60.0 * std::cos(heading),
            -60.0 * std::sin(heading),
            0.5 * turn,
            0.2 * turn + 0.01 * std::sin(7.0 * s),
            0.03 + 0.005 * std::cos(5.0 * s),
            heading,
            0.05 + 1e-7 * s,
            0.3 * turn,
            0.05,
            9.81,
            0.002 * turn,
            0.01 * std::cos(7.0 * s),
            0.0044 * std::cos(s / 90.0)};
}

const fs::path& sbetFile()
{
    static const fs::path path = Bench::writtenSbet(dataFolder / "sbet-200hz-1m.sbet", RECORDS, recordAt);
    return path;
}

const TrajectoryTable& table()
{
    static const TrajectoryTable loaded = TrajectoryTable::load(std::vector<fs::path>{sbetFile()});
    return loaded;
}

// `count` UTC times [s since 1970] evenly from the first record to just before the last.
std::vector<double> increasingTimes(std::size_t count)
{
    const double first = WEEK_START + (FIRST_TIME - LEAP_SECONDS);
    const double step = static_cast<double>(RECORDS - 1) / RATE / static_cast<double>(count);
    std::vector<double> times(count);
    for (std::size_t i = 0; i < count; ++i) {
        times[i] = first + step * static_cast<double>(i);
    }
    return times;
}

std::vector<double> shuffledTimes(std::size_t count)
{
    auto times = increasingTimes(count);
    std::shuffle(times.begin(), times.end(), std::mt19937_64(1));
    return times;
}

void readerGetNext(benchmark::State& state)
{
    for (auto _ : state) {
        Sbet::Reader reader(sbetFile(), Trajectory::Reader::ImuAlignmentStatus::NO_SOLUTION);
        double sum = 0.0;
        for (;;) {
            const auto record = reader.getNext();
            if (reader.endOfFile()) {
                break;
            }
            sum += record.height;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(RECORDS));
}
BENCHMARK(readerGetNext)->Unit(benchmark::kMillisecond);

void tableLoad(benchmark::State& state)
{
    const std::vector<fs::path> files{sbetFile()};
    for (auto _ : state) {
        const TrajectoryTable loaded = TrajectoryTable::load(files);
        benchmark::DoNotOptimize(loaded.height().back());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(RECORDS));
}
BENCHMARK(tableLoad)->Unit(benchmark::kMillisecond);

// Poses of `times` (six values and the mask) on state.range(0) threads.
void answerPoses(benchmark::State& state, const std::vector<double>& times)
{
    std::vector<std::vector<double>> values(6, std::vector<double>(times.size()));
    std::vector<std::uint8_t> valid(times.size());
    const PoseColumns out{values[0], values[1], values[2], values[3], values[4], values[5], {}, {}, {}, valid};
    const ThreadCount threads(static_cast<unsigned>(state.range(0)));
    const TrajectoryTable& loaded = table(); // loaded on first use, before the measurement
    // One call before the measurement: on this kind of virtual machine the first pass over
    // freshly allocated output columns costs several times a later one.
    loaded.poses(times, {TimeScale::utc, {}}, out, threads);
    for (auto _ : state) {
        loaded.poses(times, {TimeScale::utc, {}}, out, threads);
    }
    if (std::count(valid.begin(), valid.end(), 1) != static_cast<std::ptrdiff_t>(times.size())) {
        state.SkipWithError("a time fell outside the table");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(times.size()));
}

void posesIncreasingUtcTimes(benchmark::State& state)
{
    static const auto times = increasingTimes(SORTED_QUERIES);
    answerPoses(state, times);
}
BENCHMARK(posesIncreasingUtcTimes)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

void posesShuffledUtcTimes(benchmark::State& state)
{
    static const auto times = shuffledTimes(SHUFFLED_QUERIES);
    answerPoses(state, times);
}
BENCHMARK(posesShuffledUtcTimes)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

// Points 5 to 80 m around the scanner at increasing times.
void georeferencePoints(benchmark::State& state, GeoreferenceFrame frame)
{
    static const auto times = increasingTimes(POINTS);
    static const auto scanner = [] {
        std::vector<std::vector<double>> xyz(3, std::vector<double>(POINTS));
        for (std::size_t i = 0; i < POINTS; ++i) {
            const double angle = 0.001 * static_cast<double>(i % 6283);
            const double range = 5.0 + static_cast<double>(i % 75);
            xyz[0][i] = 0.1 * range;
            xyz[1][i] = range * std::cos(angle);
            xyz[2][i] = range * std::sin(angle);
        }
        return xyz;
    }();
    SensorMount mount;
    mount.leverArm = {0.8, 0.1, -1.5};
    mount.boresight = {0.002, -0.001, 0.003};
    const Georeferencer georeferencer(table(), mount);
    std::vector<std::vector<double>> out(3, std::vector<double>(POINTS));
    std::vector<std::uint8_t> valid(POINTS);
    const ThreadCount threads(static_cast<unsigned>(state.range(0)));
    const auto run = [&] {
        georeferencer.georeference(times, {TimeScale::utc, {}}, scanner[0], scanner[1], scanner[2], frame,
                                   {out[0], out[1], out[2], valid}, threads);
    };
    run(); // before the measurement, as in answerPoses
    for (auto _ : state) {
        run();
    }
    if (std::count(valid.begin(), valid.end(), 1) != static_cast<std::ptrdiff_t>(POINTS)) {
        state.SkipWithError("a point fell outside the table");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(POINTS));
}

void georeferenceEcef(benchmark::State& state)
{
    georeferencePoints(state, GeoreferenceFrame::ecef);
}
BENCHMARK(georeferenceEcef)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

void georeferenceGeodetic(benchmark::State& state)
{
    georeferencePoints(state, GeoreferenceFrame::geodetic);
}
BENCHMARK(georeferenceGeodetic)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    dataFolder = fs::path(argv[0]).parent_path() / "batch-bench-data";
    return Bench::runBenchmarks(argc, argv, [] { std::cerr << "data: " << sbetFile().string() << '\n'; });
}
