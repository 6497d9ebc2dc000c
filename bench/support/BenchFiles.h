// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Trajectory/Record.h"

#include <cstddef>
#include <filesystem>
#include <functional>

namespace Kelvo::Bench {

/// `path`, an SBET file holding `records` records, record i being `recordAt(i)`: written with
/// Sbet::Writer when it is missing or of another size (saying so on std::cerr), kept for
/// later runs. Called before the first measurement, never during one.
std::filesystem::path writtenSbet(const std::filesystem::path& path, std::size_t records,
                                   const std::function<Geodesy::Trajectory::Record(std::size_t)>& recordAt);

/// main() of a benchmark program: runs the benchmarks that the command line selects, after
/// `prepare` (which writes the data files, so that no measurement includes their writing).
int runBenchmarks(int argc, char** argv, const std::function<void()>& prepare);

} // namespace Kelvo::Bench
