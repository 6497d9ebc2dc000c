// SPDX-License-Identifier: MIT
// The GNSS solution table: loading a 1,000,000-line RTKLIB position file, and answering
// 10,000,000 times over it, sorted and shuffled, on one and on two threads.
#include "Geodesy/Batch/GnssSolutionTable.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace Kelvo::Geodesy::Batch;

constexpr std::size_t solutionCount = 1'000'000;
constexpr std::size_t queryCount = 10'000'000;
constexpr std::uint32_t week = 2244;
constexpr double start = 36000.0;
constexpr double interval = 0.2; // 5 Hz: 1,000,000 lines are 55.6 hours, all in one GPS week

/// A 5 Hz RTKLIB file with velocities as rnx2rtkp writes it (fixed widths, CRLF), of a
/// vehicle going north-east at about 5 m/s, removed at exit.
class GeneratedPosFile {
public:
    GeneratedPosFile()
        : path(std::filesystem::temp_directory_path()
               / ("kelvo_bench_gnss_table_" + std::to_string(::getpid()) + ".pos"))
    {
        std::ofstream out(path, std::ios::binary);
        out << "% program   : RTKLIB ver.2.4.3\n%\n"
               "%  GPST          latitude(deg) longitude(deg)  height(m)   Q  ns   sdn(m)   sde(m)   sdu(m)  sdne(m)"
               "  sdeu(m)  sdun(m) age(s)  ratio    vn(m/s)    ve(m/s)    vu(m/s)      sdvn     sdve     sdvu"
               "    sdvne    sdveu    sdvun\r\n";
        std::vector<char> text(256);
        for (std::size_t i = 0; i < solutionCount; ++i) {
            const double seconds = start + static_cast<double>(i) * interval;
            const double wobble = static_cast<double>(i % 13) * 1e-4;
            const int length = std::snprintf(
                text.data(), text.size(),
                "%u %10.3f %14.9f %14.9f %10.4f %3u %3u %8.4f %8.4f %8.4f %8.4f %8.4f %8.4f %6.2f %6.1f %10.5f %10.5f "
                "%10.5f %9.5f %8.5f %8.5f %8.5f %8.5f %8.5f\r\n",
                week, seconds,
                35.1 + static_cast<double>(i) * 6e-9, 136.9 + static_cast<double>(i) * 7e-9, 104.86 + wobble,
                1U + static_cast<unsigned>(i % 50 == 0), 12U + static_cast<unsigned>(i % 7), 0.0024 + wobble,
                0.0024, 0.0064, 0.0009, -0.0016, -0.0024, 0.2, 9.6, 3.5 + wobble, 3.6, -0.01 + wobble, 0.05834,
                0.05764, 0.15666, 0.01063, -0.03203, -0.04989);
            out.write(text.data(), length);
        }
    }
    ~GeneratedPosFile() { std::filesystem::remove(path); }
    GeneratedPosFile(const GeneratedPosFile&) = delete;
    GeneratedPosFile& operator=(const GeneratedPosFile&) = delete;

    const std::filesystem::path path;
};

const GeneratedPosFile& generatedFile()
{
    static const GeneratedPosFile file;
    return file;
}

const GnssSolutionTable& loadedTable()
{
    static const GnssSolutionTable table = GnssSolutionTable::load(generatedFile().path);
    return table;
}

/// Query times as GPS adjusted time (as LAS point times), spread over the whole table and a
/// little beyond both ends; shuffled when `sorted` is false.
const std::vector<double>& queryTimes(bool sorted)
{
    static const std::vector<double> increasing = [] {
        const double first = static_cast<double>(week) * 604800.0 + start - 1e9 - 10.0;
        const double span = static_cast<double>(solutionCount) * interval + 20.0;
        std::vector<double> times(queryCount);
        for (std::size_t i = 0; i < queryCount; ++i) {
            times[i] = first + span * static_cast<double>(i) / static_cast<double>(queryCount);
        }
        return times;
    }();
    static const std::vector<double> shuffled = [] {
        std::vector<double> times = increasing;
        std::ranges::shuffle(times, std::mt19937_64(42));
        return times;
    }();
    return sorted ? increasing : shuffled;
}

void loadPosFile(benchmark::State& state)
{
    const auto& file = generatedFile();
    for (auto _ : state) {
        const auto table = GnssSolutionTable::load(file.path);
        benchmark::DoNotOptimize(table.gpsTime().data());
    }
    state.counters["lines/s"] = benchmark::Counter(static_cast<double>(state.iterations() * solutionCount),
                                                   benchmark::Counter::kIsRate);
}
BENCHMARK(loadPosFile)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Position, down velocity, Q and validity, what georeferencing a point cloud asks for.
void answerTimes(benchmark::State& state, bool sorted)
{
    const auto& table = loadedTable();
    const auto& times = queryTimes(sorted);
    std::vector<double> latitude(queryCount);
    std::vector<double> longitude(queryCount);
    std::vector<double> height(queryCount);
    std::vector<double> down(queryCount);
    std::vector<std::uint8_t> quality(queryCount);
    std::vector<std::uint8_t> valid(queryCount);
    GnssColumns out;
    out[GnssColumn::latitude] = latitude;
    out[GnssColumn::longitude] = longitude;
    out[GnssColumn::height] = height;
    out[GnssColumn::velocityDown] = down;
    out.quality = quality;
    out.valid = valid;
    const ThreadCount threads(static_cast<unsigned>(state.range(0)));
    for (auto _ : state) {
        table.at(times, {TimeScale::gpsAdjusted, {}}, out, threads);
        benchmark::DoNotOptimize(valid.data());
    }
    state.counters["times/s"] = benchmark::Counter(static_cast<double>(state.iterations() * queryCount),
                                                   benchmark::Counter::kIsRate);
}
BENCHMARK_CAPTURE(answerTimes, sorted, true)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(answerTimes, shuffled, false)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
