// SPDX-License-Identifier: MIT
// Throughput of the geodetic <-> ECEF conversions over a million points spread over the globe
// and from -10 km to 1000 km of height, beside GeographicLib's geocentric conversions on the
// same points (when GeographicLib is available). Compare the items_per_second of
// llh2ecef with geographicLibForward and of ecef2llh with geographicLibReverse.
#include "Geodesy/CoordinateSystem/Ellipsoid.h"

#include <benchmark/benchmark.h>

#ifdef KELVO_WITH_GEOGRAPHICLIB
#include <GeographicLib/Geocentric.hpp>
#endif

#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

namespace {

using Kelvo::Geodesy::ECEF;
using Kelvo::Geodesy::LatLonHeight;

struct Points {
    std::vector<LatLonHeight> geodetic; // [rad, rad, m]
    std::vector<double> latitudeDegrees;
    std::vector<double> longitudeDegrees;
    std::vector<ECEF> ecef;
};

const Points& points()
{
    static const Points shared = [] {
        constexpr std::size_t count = 1'000'000;
        std::mt19937_64 generator(20240624);
        std::uniform_real_distribution<double> latitude(-90.0, 90.0);
        std::uniform_real_distribution<double> longitude(-180.0, 180.0);
        std::uniform_real_distribution<double> height(-10000.0, 1000000.0);
        Points result;
        result.geodetic.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            const double lat = latitude(generator);
            const double lon = longitude(generator);
            const LatLonHeight point(Kelvo::Maths::Radian(lat * std::numbers::pi / 180.0),
                                     Kelvo::Maths::Radian(lon * std::numbers::pi / 180.0), height(generator));
            result.geodetic.push_back(point);
            result.latitudeDegrees.push_back(lat);
            result.longitudeDegrees.push_back(lon);
            result.ecef.push_back(Kelvo::Geodesy::CoordinateSystem::llh2ecef(point));
        }
        return result;
    }();
    return shared;
}

void setItems(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points().geodetic.size()));
}

void llh2ecef(benchmark::State& state)
{
    const Points& data = points();
    for (auto _ : state) {
        for (const LatLonHeight& point : data.geodetic) {
            benchmark::DoNotOptimize(Kelvo::Geodesy::CoordinateSystem::llh2ecef(point));
        }
    }
    setItems(state);
}
BENCHMARK(llh2ecef)->Unit(benchmark::kMillisecond);

void ecef2llh(benchmark::State& state)
{
    const Points& data = points();
    for (auto _ : state) {
        for (const ECEF& point : data.ecef) {
            benchmark::DoNotOptimize(Kelvo::Geodesy::CoordinateSystem::ecef2llh(point));
        }
    }
    setItems(state);
}
BENCHMARK(ecef2llh)->Unit(benchmark::kMillisecond);

#ifdef KELVO_WITH_GEOGRAPHICLIB
void geographicLibForward(benchmark::State& state)
{
    const Points& data = points();
    const GeographicLib::Geocentric& wgs84 = GeographicLib::Geocentric::WGS84();
    for (auto _ : state) {
        for (std::size_t i = 0; i < data.geodetic.size(); ++i) {
            double x = 0.0;
            double y = 0.0;
            double z = 0.0;
            wgs84.Forward(data.latitudeDegrees[i], data.longitudeDegrees[i], data.geodetic[i].height, x, y, z);
            benchmark::DoNotOptimize(x);
            benchmark::DoNotOptimize(y);
            benchmark::DoNotOptimize(z);
        }
    }
    setItems(state);
}
BENCHMARK(geographicLibForward)->Unit(benchmark::kMillisecond);

void geographicLibReverse(benchmark::State& state)
{
    const Points& data = points();
    const GeographicLib::Geocentric& wgs84 = GeographicLib::Geocentric::WGS84();
    for (auto _ : state) {
        for (const ECEF& point : data.ecef) {
            double latitude = 0.0;
            double longitude = 0.0;
            double height = 0.0;
            wgs84.Reverse(point.x, point.y, point.z, latitude, longitude, height);
            benchmark::DoNotOptimize(latitude);
            benchmark::DoNotOptimize(longitude);
            benchmark::DoNotOptimize(height);
        }
    }
    setItems(state);
}
BENCHMARK(geographicLibReverse)->Unit(benchmark::kMillisecond);
#endif

} // namespace

BENCHMARK_MAIN();
