// SPDX-License-Identifier: MIT
// Geodetic columns (two million points around Munich) to ETRS89 / UTM zone 32N (EPSG:25832):
// CrsTransformer beside PROJ's own proj_trans_generic on the same operation (EPSG:4979 to
// EPSG:25832, normalised for visualisation) and the same points, on one and on two threads.
// Both copy their input first, since PROJ transforms in place. Compare the items_per_second
// of crsTransformer/threads:N with rawProj/threads:N. The small-batch pair shows what the pool
// of PROJ contexts saves over making a context and cloning the operation on every call.
#include "Projection/CrsTransformer.h"

#include <benchmark/benchmark.h>
#include <proj.h>

#include <algorithm>
#include <cstdint>
#include <numbers>
#include <random>
#include <thread>
#include <vector>

namespace {

using Kelvo::Geodesy::Batch::ThreadCount;
using Kelvo::Projection::CrsTransformer;

struct Points {
    std::vector<double> latitude, longitude, height;           // [rad, rad, m]: CrsTransformer
    std::vector<double> longitudeDegrees, latitudeDegrees;     // PROJ's own input
};

const Points& points()
{
    static const Points shared = [] {
        constexpr std::size_t count = 2'000'000;
        std::mt19937_64 generator(20240624);
        std::uniform_real_distribution<double> latitude(47.9, 48.4);
        std::uniform_real_distribution<double> longitude(11.2, 11.9);
        std::uniform_real_distribution<double> height(450.0, 650.0);
        Points result;
        for (std::size_t i = 0; i < count; ++i) {
            const double lat = latitude(generator);
            const double lon = longitude(generator);
            result.latitudeDegrees.push_back(lat);
            result.longitudeDegrees.push_back(lon);
            result.latitude.push_back(lat * std::numbers::pi / 180.0);
            result.longitude.push_back(lon * std::numbers::pi / 180.0);
            result.height.push_back(height(generator));
        }
        return result;
    }();
    return shared;
}

struct Output {
    std::vector<double> x, y, z;
    explicit Output(std::size_t n)
        : x(n), y(n), z(n)
    {
    }
};

/// A context and the operation as CrsTransformer builds it.
struct RawProj {
    PJ_CONTEXT* context = proj_context_create();
    PJ* operation = nullptr;

    RawProj()
    {
        proj_context_set_enable_network(context, 0);
        PJ* direct = proj_create_crs_to_crs(context, "EPSG:4979", "EPSG:25832", nullptr);
        operation = proj_normalize_for_visualization(context, direct);
        proj_destroy(direct);
    }
    /// A new context with a copy of `prototype`'s operation.
    explicit RawProj(const PJ* prototype)
        : operation(proj_clone(context, prototype))
    {
        proj_context_set_enable_network(context, 0);
    }
    RawProj(const RawProj&) = delete;
    RawProj& operator=(const RawProj&) = delete;
    ~RawProj()
    {
        proj_destroy(operation);
        proj_context_destroy(context);
    }

    void transform(const Points& in, Output& out, std::size_t begin, std::size_t end) const
    {
        std::copy(in.longitudeDegrees.begin() + begin, in.longitudeDegrees.begin() + end, out.x.begin() + begin);
        std::copy(in.latitudeDegrees.begin() + begin, in.latitudeDegrees.begin() + end, out.y.begin() + begin);
        std::copy(in.height.begin() + begin, in.height.begin() + end, out.z.begin() + begin);
        const std::size_t n = end - begin;
        proj_trans_generic(operation, PJ_FWD, out.x.data() + begin, sizeof(double), n, out.y.data() + begin,
                           sizeof(double), n, out.z.data() + begin, sizeof(double), n, nullptr, 0, 0);
    }
};

void setItems(benchmark::State& state, std::size_t perIteration)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(perIteration));
}

void crsTransformer(benchmark::State& state)
{
    const Points& in = points();
    const CrsTransformer transformer(CrsTransformer::Frame::geodetic, "EPSG:25832");
    const ThreadCount threads(static_cast<unsigned>(state.range(0)));
    Output out(in.latitude.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            transformer.transform(in.latitude, in.longitude, in.height, out.x, out.y, out.z, threads));
        benchmark::ClobberMemory();
    }
    setItems(state, in.latitude.size());
}

void rawProj(benchmark::State& state)
{
    const Points& in = points();
    const auto threads = static_cast<std::size_t>(state.range(0));
    std::vector<RawProj> projs(threads); // one context and operation per thread
    Output out(in.latitude.size());
    const std::size_t n = in.latitude.size();
    for (auto _ : state) {
        std::vector<std::jthread> workers;
        for (std::size_t thread = 1; thread < threads; ++thread) {
            workers.emplace_back([&, thread] {
                projs[thread].transform(in, out, n * thread / threads, n * (thread + 1) / threads);
            });
        }
        projs[0].transform(in, out, 0, n / threads);
        workers.clear();
        benchmark::ClobberMemory();
    }
    setItems(state, n);
}

constexpr std::size_t SMALL_BATCH = 100;

void crsTransformerSmallBatch(benchmark::State& state)
{
    const Points& in = points();
    const CrsTransformer transformer(CrsTransformer::Frame::geodetic, "EPSG:25832");
    Output out(SMALL_BATCH);
    const auto first = [](const std::vector<double>& column) { return std::span(column).first(SMALL_BATCH); };
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            transformer.transform(first(in.latitude), first(in.longitude), first(in.height), out.x, out.y, out.z));
    }
    setItems(state, SMALL_BATCH);
}

void contextAndCloneEachSmallBatch(benchmark::State& state)
{
    const Points& in = points();
    const RawProj prototype;
    Output out(SMALL_BATCH);
    for (auto _ : state) {
        const RawProj perCall(prototype.operation);
        perCall.transform(in, out, 0, SMALL_BATCH);
    }
    setItems(state, SMALL_BATCH);
}

} // namespace

BENCHMARK(crsTransformer)->ArgName("threads")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(rawProj)->ArgName("threads")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(crsTransformerSmallBatch)->Unit(benchmark::kMicrosecond);
BENCHMARK(contextAndCloneEachSmallBatch)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
