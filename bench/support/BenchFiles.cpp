// SPDX-License-Identifier: MIT
#include "BenchFiles.h"

#include "Geodesy/Sbet/Writer.h"

#include <benchmark/benchmark.h>

#include <iostream>
#include <system_error>

namespace Kelvo::Bench {

std::filesystem::path writtenSbet(const std::filesystem::path& path, std::size_t records,
                                   const std::function<Geodesy::Trajectory::Record(std::size_t)>& recordAt)
{
    std::error_code error;
    if (std::filesystem::file_size(path, error) == records * 136) {
        return path;
    }
    std::filesystem::create_directories(path.parent_path());
    std::cerr << "writing " << path << " (" << records << " records)\n";
    Geodesy::Sbet::Writer writer(path);
    for (std::size_t i = 0; i < records; ++i) {
        writer.write(recordAt(i));
    }
    writer.flush();
    return path;
}

int runBenchmarks(int argc, char** argv, const std::function<void()>& prepare)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    prepare();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace Kelvo::Bench
