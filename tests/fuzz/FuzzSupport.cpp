// SPDX-License-Identifier: MIT
#include "FuzzSupport.h"

#include "Core/Event.h"
#include "Core/Logging.h"
#include "Utils/CoreAssert.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <bit>
#include <cstdio>
#include <limits>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <typeinfo>

#include <unistd.h>

namespace Kelvo::Fuzzing {
namespace {

static_assert(std::endian::native == std::endian::little, "decode() assumes a little-endian host");

std::uint64_t assertions = 0;

using Limits = std::numeric_limits<double>;

/// Times that have broken time code before: not numbers, the ends of the doubles, whole
/// weeks and days, the GPS epoch, where doubles stop holding every integer.
constexpr double ODD_TIMES[] = {
    Limits::quiet_NaN(), -Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 0.0, -0.0,
    Limits::denorm_min(), Limits::min(), -1.0, 1e-300, Limits::max(), -Limits::max(), 0x1p53, 0x1p63, -0x1p63,
    0x1p64, 604800.0, 604799.999999, 86400.0, 315964800.0, 1e20, -1e20,
};

} // namespace

const std::filesystem::path& scratchFolder()
{
    static const std::filesystem::path folder = [] {
        auto path = std::filesystem::temp_directory_path() / ("kelvo-fuzz-" + std::to_string(::getpid()));
        std::filesystem::create_directories(path);
        return path;
    }();
    // Registered once the folder exists, so that it runs before the path is destroyed.
    static const bool removedAtExit = std::atexit([] {
        std::error_code ignored;
        std::filesystem::remove_all(scratchFolder(), ignored);
    }) == 0;
    (void)removedAtExit;
    return folder;
}

void finding(const std::string& what)
{
    std::fprintf(stderr, "fuzz finding: %s\n", what.c_str());
    std::abort();
}

void quietLibrary()
{
    static const bool installed = [] {
        CoreAssert::setHandler([](const std::string&, const char*, std::size_t) { ++assertions; });
        Core::Logging::setSink([](Core::Logging::Level, const std::string&) {});
        Core::Event::setSink([](const Core::Event::LoggingEventInfo&, const std::string&) {});
        return true;
    }();
    (void)installed;
}

std::uint64_t assertionCount()
{
    return assertions;
}

std::filesystem::path scratchFile(const std::string& name, std::string_view bytes)
{
    const auto path = scratchFolder() / name;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        finding("cannot write the scratch file " + path.string());
    }
    return path;
}

bool isReaderError(const std::exception& error)
{
    if (dynamic_cast<const std::system_error*>(&error) != nullptr) {
        return true;
    }
    const std::string_view text = error.what();
    return typeid(error) == typeid(std::runtime_error)
           && (text.ends_with("is truncated.") || text.ends_with("file has unexpectedly reached EOF."));
}

bool sameBits(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

double requestTime(FuzzedDataProvider& input, double first, double last, double previous)
{
    switch (input.ConsumeIntegralInRange<int>(0, 3)) {
    case 0:
        return std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
    case 1:
        return input.PickValueInArray(ODD_TIMES);
    case 2:
        return first + (last - first) * (input.ConsumeIntegralInRange<int>(-256, 1280) / 1024.0);
    default:
        return previous - (last - first) * (input.ConsumeIntegralInRange<int>(0, 64) / 64.0);
    }
}

} // namespace Kelvo::Fuzzing
