// SPDX-License-Identifier: MIT
// Record throughput of the trajectory readers on 1 GiB files read from the page cache, next
// to a plain read() of the same file in 1 MiB chunks that sums every field (the ceiling) and
// to a std::ifstream read per record.
//
// The files are written with the library's writers at the first run, into
// "trajectory-bench-data" beside this program, and kept for later runs.
#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/ApxRaw/Writer.h"
#include "Geodesy/Sbet/Reader.h"
#include "Geodesy/Sbet/Writer.h"
#include "Geodesy/Smrmsg/Reader.h"
#include "Geodesy/Smrmsg/Writer.h"

#include <benchmark/benchmark.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <numbers>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace Kelvo::Geodesy;
namespace fs = std::filesystem;

constexpr std::uint64_t FILE_BYTES = std::uint64_t{1} << 30;
constexpr std::size_t SBET_SIZE = 136;
constexpr std::size_t APX_SIZE = 115;
constexpr std::size_t SMRMSG_SIZE = 80;

fs::path dataFolder;

// Reads the whole file once, so that the measured runs find it in the page cache.
void warmUp(const fs::path& path)
{
    const int file = ::open(path.c_str(), O_RDONLY);
    std::vector<char> chunk(1 << 20);
    while (::read(file, chunk.data(), chunk.size()) > 0) {
    }
    ::close(file);
}

// The file `name` of about 1 GiB of `recordSize`-byte records, written by `write` when missing.
fs::path dataFile(const char* name, std::size_t recordSize, const std::function<void(const fs::path&, std::uint64_t)>& write)
{
    const auto path = dataFolder / name;
    const std::uint64_t count = FILE_BYTES / recordSize;
    std::error_code error;
    if (fs::file_size(path, error) != count * recordSize) {
        fs::create_directories(dataFolder);
        std::cerr << "writing " << path << " (" << count << " records)\n";
        write(path, count);
    }
    warmUp(path);
    return path;
}

const fs::path& sbetFile()
{
    static const auto path = dataFile("bench.sbet", SBET_SIZE, [](const fs::path& path, std::uint64_t count) {
        Sbet::Writer writer(path);
        Trajectory::Record record{};
        for (std::uint64_t i = 0; i < count; ++i) {
            const double t = static_cast<double>(i);
            record = {Trajectory::Record::Status::VALID, 100000.0 + 0.005 * t, 0.5 + 1e-10 * t, -2.0 + 2e-10 * t,
                      100.0 + 1e-5 * t, 10.0, -5.0, 0.25, 0.01, -0.02, 1.0 + 1e-8 * t, 0.03, 0.1, -0.2, 9.8, 0.001,
                      -0.002, 0.003};
            writer.write(record);
        }
        writer.flush();
    });
    return path;
}

const fs::path& apxFile()
{
    static const auto path = dataFile("bench.stream", APX_SIZE, [](const fs::path& path, std::uint64_t count) {
        ApxRaw::Writer writer(path);
        for (std::uint64_t i = 0; i < count; ++i) {
            const double t = static_cast<double>(i);
            writer.write({static_cast<std::uint32_t>(100000000 + 5 * i), 5, 1, 45.0 + 1e-9 * t, 7.0, 300.0,
                          {1.0f, -2.0f, 0.5f}, 1.0, -2.0, 90.0 + 1e-7 * t, {0.1f, -0.2f, 0.3f}, {0.01f, -0.02f, 9.81f}});
        }
        writer.flush();
    });
    return path;
}

const fs::path& smrmsgFile()
{
    static const auto path = dataFile("bench.smrmsg", SMRMSG_SIZE, [](const fs::path& path, std::uint64_t count) {
        Smrmsg::Writer writer(path);
        for (std::uint64_t i = 0; i < count; ++i) {
            writer.write({100000.0 + static_cast<double>(i), 0.05, 0.05, 0.07, 0.006, 0.008, 0.008, 0.23, 0.24, 3.0});
        }
        writer.flush();
    });
    return path;
}

double littleDouble(const char* bytes)
{
    double value;
    std::memcpy(&value, bytes, sizeof(value));
    return value;
}

template <typename T>
T bigEndian(const char* bytes)
{
    using U = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;
    U raw;
    std::memcpy(&raw, bytes, sizeof(raw));
    if constexpr (sizeof(T) == 8) {
        raw = __builtin_bswap64(raw);
    } else {
        raw = __builtin_bswap32(raw);
    }
    return std::bit_cast<T>(raw);
}

// The ceiling: read() in 1 MiB chunks, `sumRecord` applied to every whole record.
template <typename SumRecord>
void plainRead(benchmark::State& state, const fs::path& path, std::size_t recordSize, SumRecord sumRecord)
{
    std::vector<char> chunk((1 << 20) + recordSize);
    std::uint64_t records = 0;
    for (auto _ : state) {
        const int file = ::open(path.c_str(), O_RDONLY);
        double sum = 0.0;
        std::size_t carried = 0;
        for (;;) {
            const ssize_t received = ::read(file, chunk.data() + carried, 1 << 20);
            if (received <= 0) {
                break;
            }
            const std::size_t available = carried + static_cast<std::size_t>(received);
            std::size_t offset = 0;
            for (; offset + recordSize <= available; offset += recordSize) {
                sum += sumRecord(chunk.data() + offset);
                ++records;
            }
            carried = available - offset;
            std::memmove(chunk.data(), chunk.data() + offset, carried);
        }
        ::close(file);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(records));
}

double sumSbetBytes(const char* bytes)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < 17; ++i) {
        sum += littleDouble(bytes + 8 * i);
    }
    return sum;
}

double sumTrajectoryRecord(const Trajectory::Record& r)
{
    return r.time + r.latitude + r.longitude + r.height + r.velocityX + r.velocityY + r.velocityZ + r.roll + r.pitch
           + r.heading + r.wanderAngle + r.forceX + r.forceY + r.forceZ + r.angularRateX + r.angularRateY
           + r.angularRateZ;
}

// A reader's getNext() until the end of the file, summing every value of every record.
template <typename Reader, typename Sum, typename... Arguments>
void readerGetNext(benchmark::State& state, const fs::path& path, Sum sumRecord, Arguments... arguments)
{
    std::uint64_t records = 0;
    for (auto _ : state) {
        Reader reader(Kelvo::Core::FileInfo(path), arguments...);
        double sum = 0.0;
        for (;;) {
            const auto record = reader.getNext();
            if (reader.endOfFile()) {
                break;
            }
            sum += sumRecord(record);
            ++records;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(records));
}

void sbetPlainRead(benchmark::State& state)
{
    plainRead(state, sbetFile(), SBET_SIZE, sumSbetBytes);
}

void sbetIfstreamPerRecord(benchmark::State& state)
{
    std::uint64_t records = 0;
    for (auto _ : state) {
        std::ifstream file(sbetFile(), std::ios::binary);
        char bytes[SBET_SIZE];
        double sum = 0.0;
        while (file.read(bytes, SBET_SIZE)) {
            sum += sumSbetBytes(bytes);
            ++records;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(records));
}

void sbetReaderGetNext(benchmark::State& state)
{
    readerGetNext<Sbet::Reader>(state, sbetFile(), sumTrajectoryRecord,
                                Trajectory::Reader::ImuAlignmentStatus::NO_SOLUTION);
}

void apxPlainRead(benchmark::State& state)
{
    // The fields the reader uses, decoded and converted the way it does (degrees times pi,
    // divided by 180, as Maths::Degree::toRadian computes it).
    const auto radians = [](double degrees) { return degrees * std::numbers::pi / 180.0; };
    plainRead(state, apxFile(), APX_SIZE, [radians](const char* bytes) {
        double sum = bigEndian<std::uint32_t>(bytes + 11) / 1000.0 + static_cast<unsigned char>(bytes[15])
                     + static_cast<unsigned char>(bytes[16]);
        for (const std::size_t offset : {17, 25, 33, 57, 65, 73}) {
            sum += radians(bigEndian<double>(bytes + offset));
        }
        for (std::size_t i = 0; i < 3; ++i) {
            sum += bigEndian<float>(bytes + 41 + 4 * i) + radians(bigEndian<float>(bytes + 89 + 4 * i))
                   + bigEndian<float>(bytes + 101 + 4 * i);
        }
        return sum;
    });
}

void apxReaderGetNext(benchmark::State& state)
{
    readerGetNext<ApxRaw::Reader>(
        state, apxFile(),
        [](const Trajectory::Record& record) { return sumTrajectoryRecord(record) + static_cast<int>(record.status); },
        Trajectory::Reader::ImuAlignmentStatus::FULL_NAVIGATION);
}

void smrmsgPlainRead(benchmark::State& state)
{
    plainRead(state, smrmsgFile(), SMRMSG_SIZE, [](const char* bytes) {
        double sum = 0.0;
        for (std::size_t i = 0; i < 10; ++i) {
            sum += littleDouble(bytes + 8 * i);
        }
        return sum;
    });
}

void smrmsgReaderGetNext(benchmark::State& state)
{
    readerGetNext<Smrmsg::Reader>(state, smrmsgFile(), [](const Smrmsg::Record& r) {
        return r.time + r.northPositionRms + r.eastPositionRms + r.downPositionRms + r.northVelocityRms
               + r.eastVelocityRms + r.downVelocityRms + r.rollRms + r.pitchRms + r.headingRms;
    });
}

BENCHMARK(sbetPlainRead)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(sbetIfstreamPerRecord)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(sbetReaderGetNext)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(apxPlainRead)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(apxReaderGetNext)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(smrmsgPlainRead)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(smrmsgReaderGetNext)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    dataFolder = fs::weakly_canonical(fs::absolute(fs::path(argv[0]))).parent_path() / "trajectory-bench-data";
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
