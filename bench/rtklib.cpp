// SPDX-License-Identifier: MIT
// Opening a 100,000-line RTKLIB position file (the reader's scan of the whole file) and
// answering increasing times over it.
#include "Core/Logging.h"
#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

constexpr int lineCount = 100000;
constexpr double firstSeconds = 36000.0;
constexpr double step = 0.1; // 10 Hz

/// A position file as RTKLIB writes it: its header, then 10 Hz solutions of a vehicle driving
/// at about 5 m/s, lines ending in CRLF.
class PosFile {
public:
    PosFile()
        : path(std::filesystem::temp_directory_path() / ("kelvo_bench_rtklib_" + std::to_string(::getpid()) + ".pos"))
    {
        std::ofstream file(path, std::ios::binary);
        file << "% program   : RTKLIB ver.2.4.3\n%\n"
                "%  GPST          latitude(deg) longitude(deg)  height(m)   Q  ns   sdn(m)   sde(m)   sdu(m)  sdne(m)"
                "  sdeu(m)  sdun(m) age(s)  ratio    vn(m/s)    ve(m/s)    vu(m/s)      sdvn     sdve     sdvu"
                "    sdvne    sdveu    sdvun\r\n";
        char line[512];
        for (int i = 0; i < lineCount; ++i) {
            const double t = firstSeconds + i * step;
            std::snprintf(line, sizeof line,
                          "2244 %10.3f %14.9f %14.9f %10.4f %3d %3d %8.4f %8.4f %8.4f %8.4f %8.4f %8.4f %6.2f %6.1f "
                          "%10.5f %10.5f %10.5f %9.5f %8.5f %8.5f %8.5f %8.5f %8.5f\r\n",
                          t, 48.780735774 + i * 4.5e-6, 9.173352864 - i * 1e-7, 320.0009 + (i % 100) * 1e-3, 1,
                          6 + i % 5, 0.0070, 0.0045, 0.0162, -0.0021, -0.0012, -0.0075, 0.0, 999.9,
                          5.24067 + (i % 7) * 1e-3, 0.00081, -0.00557, 0.03022, 0.02303, 0.01821, -0.01007, 0.00341,
                          -0.00704);
            file << line;
        }
    }
    ~PosFile() { std::filesystem::remove(path); }
    PosFile(const PosFile&) = delete;
    PosFile& operator=(const PosFile&) = delete;

    const std::filesystem::path path;
};

const PosFile& posFile()
{
    static const PosFile file;
    return file;
}

void silenceLogs()
{
    Kelvo::Core::Logging::setSink([](Kelvo::Core::Logging::Level, const std::string&) {});
}

// Construction reads every line once forward and then the last moving line again.
void openPosFile(benchmark::State& state)
{
    silenceLogs();
    const auto& file = posFile();
    for (auto _ : state) {
        Kelvo::Geodesy::GNSS::RtkLibGnssDataProvider provider(file.path, 1.0);
        benchmark::DoNotOptimize(provider.getCurrentGnssData());
    }
    state.SetItemsProcessed(state.iterations() * lineCount);
    state.counters["lines/s"] = benchmark::Counter(static_cast<double>(state.iterations()) * lineCount,
                                                   benchmark::Counter::kIsRate);
}
BENCHMARK(openPosFile)->Unit(benchmark::kMillisecond);

// Four requests per record, from the first record to the one before the last.
void answerIncreasingTimes(benchmark::State& state)
{
    silenceLogs();
    const auto& file = posFile();
    constexpr int requestsPerRecord = 4;
    constexpr std::int64_t requests = static_cast<std::int64_t>(lineCount - 2) * requestsPerRecord;
    for (auto _ : state) {
        state.PauseTiming();
        Kelvo::Geodesy::GNSS::RtkLibGnssDataProvider provider(file.path, 1.0);
        state.ResumeTiming();
        for (std::int64_t i = 0; i < requests; ++i) {
            benchmark::DoNotOptimize(provider.getGnssData(firstSeconds + static_cast<double>(i) * (step / requestsPerRecord)));
        }
    }
    state.SetItemsProcessed(state.iterations() * requests);
}
BENCHMARK(answerIncreasingTimes)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
