// SPDX-License-Identifier: MIT
// The position/attitude factory and providers over one or two fuzzed SBET or raw APX files,
// asked at odd times (NaN, infinities, negatives, huge values, backwards), by UTC seconds
// since 1970 or of the day, with or without a CRS transform. Only the readers' documented
// exceptions may leave; every lookup is counted once; an answer is VALID, and finite when
// no assertion fired and every record holds moderate numbers.
// Input: the file bytes, then the query bytes, then two bytes (the length of the file
// bytes), two bytes (where a second file starts) and one byte of flags.
#include "FuzzSupport.h"

#include "Geodesy/PositionAttitudeProviderFactory.h"
#include "Maths/IntervalCounter.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <set>
#include <vector>

using namespace Kelvo;
using namespace Kelvo::Fuzzing;

namespace {

/// GPS week used to turn the files' seconds of week into UTC seconds since 1970; the
/// providers match requests by their second of the week, whatever the week.
constexpr double WEEK = 2320.0;

struct Format {
    const char* extension;
    std::size_t recordSize;
    double (*time)(const char* record);
    /// Offsets and sizes (8: double, 4: float) of the values that reach an answer.
    std::vector<std::pair<std::size_t, std::size_t>> values;
    bool bigEndian;
};

const Format SBET{".sbet", 136, [](const char* r) { return decode<double>(r, false); },
                  {{0, 8}, {8, 8}, {16, 8}, {24, 8}, {56, 8}, {64, 8}, {72, 8}, {80, 8}, {112, 8}, {120, 8}, {128, 8}},
                  false};
const Format APX{".stream", 115, [](const char* r) { return decode<std::uint32_t>(r + 11, true) / 1000.0; },
                 {{17, 8}, {25, 8}, {33, 8}, {57, 8}, {65, 8}, {73, 8}, {101, 4}, {105, 4}, {109, 4}},
                 true};

/// Whether every whole record of `bytes` holds moderate numbers where an answer takes them.
bool moderateRecords(const std::string& bytes, const Format& format)
{
    for (std::size_t offset = 0; offset + format.recordSize <= bytes.size(); offset += format.recordSize) {
        for (const auto& [at, size] : format.values) {
            const char* value = bytes.data() + offset + at;
            const double number = size == 8 ? decode<double>(value, format.bigEndian) : decode<float>(value, true);
            if (!(std::abs(number) < 1e100)) {
                return false;
            }
        }
    }
    return true;
}

bool finite(const Geodesy::TimedPositionAttitude& value)
{
    for (const double number :
         {value.time.secondsInWeek, static_cast<double>(value.position.latitude),
          static_cast<double>(value.position.longitude), value.position.height,
          static_cast<double>(value.attitude.getRoll()), static_cast<double>(value.attitude.getPitch()),
          static_cast<double>(value.attitude.getYaw()), value.angularRate.getX(), value.angularRate.getY(),
          value.angularRate.getZ()}) {
        if (!std::isfinite(number)) {
            return false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    quietLibrary();
    FuzzedDataProvider input(data, size);
    const auto flags = input.ConsumeIntegral<std::uint8_t>();
    const auto split = input.ConsumeIntegral<std::uint16_t>();
    const std::string bytes = input.ConsumeBytesAsString(input.ConsumeIntegral<std::uint16_t>());
    const auto queryBytes = input.ConsumeRemainingBytes<std::uint8_t>();
    FuzzedDataProvider queries(queryBytes.data(), queryBytes.size());

    const Format& format = (flags & 1) != 0 ? APX : SBET;
    const bool twoFiles = (flags & 2) != 0;
    const bool mixedExtensions = (flags & 4) != 0;
    const bool ofDay = (flags & 8) != 0;
    const bool withTransform = (flags & 16) != 0;
    const auto alignment = static_cast<Geodesy::Trajectory::Reader::ImuAlignmentStatus>((flags >> 5) % 6);

    const std::size_t firstSize = twoFiles ? split % (bytes.size() + 1) : bytes.size();
    std::set<Core::FileInfo> files{Core::FileInfo(scratchFile(std::string("a") + format.extension,
                                                              std::string_view(bytes).substr(0, firstSize)))};
    if (twoFiles) {
        const char* extension = mixedExtensions ? (&format == &SBET ? APX : SBET).extension : format.extension;
        files.insert(Core::FileInfo(scratchFile(std::string("b") + extension, std::string_view(bytes).substr(firstSize))));
    }
    const CRS::Transform identity(1, [](const Maths::PositionVector3& position, CRS::ConvertStep) { return position; });

    std::unique_ptr<Geodesy::PositionAttitudeProvider> provider;
    if (!completes(
            [&] {
                provider = Geodesy::PositionAttitudeProviderFactory().create(
                    files, withTransform ? &identity : nullptr, alignment);
            },
            isReaderError)) {
        return 0;
    }
    expect(provider != nullptr, "the factory gives no provider for trajectory files that opened");

    // The span of the records' times, in the scale of the requests.
    double first = std::numeric_limits<double>::infinity();
    double last = -first;
    for (std::size_t offset = 0; offset + format.recordSize <= bytes.size(); offset += format.recordSize) {
        const double time = format.time(bytes.data() + offset);
        if (std::isfinite(time)) {
            first = std::min(first, time);
            last = std::max(last, time);
        }
    }
    if (first > last) {
        first = last = 0.0;
    }
    const double toRequest = ofDay ? -Geodesy::GPS_LEAP_SECONDS()
                                   : Geodesy::GPS_EPOCH_IN_UNIX_SECONDS + WEEK * Geodesy::SECONDS_IN_WEEK()
                                         - Geodesy::GPS_LEAP_SECONDS();
    first += toRequest;
    last += toRequest;

    const bool moderateFiles = !mixedExtensions && moderateRecords(bytes.substr(0, firstSize), format)
                               && moderateRecords(bytes.substr(firstSize), format);
    Maths::IntervalCounter counter;
    std::uint64_t lookups = 0;
    double previous = last;
    while (queries.remaining_bytes() > 0) {
        const double time = requestTime(queries, first, last, previous);
        previous = time;
        const auto before = assertionCount();
        std::unique_ptr<Geodesy::TimedPositionAttitude> answer;
        if (!completes(
                [&] {
                    answer = ofDay ? provider->getPositionAttitudeOfDay(time, counter)
                                   : provider->getPositionAttitude(time, counter);
                },
                isReaderError)) {
            return 0;
        }
        ++lookups;
        provider->getCurrent();
        expect(counter[Maths::Situation::lower] + counter[Maths::Situation::inside] + counter[Maths::Situation::upper]
                   == lookups,
               "a lookup of a local file is not counted exactly once");
        if (!answer) {
            continue;
        }
        expect(answer->status == Geodesy::Trajectory::Record::VALID, "an answer is not VALID");
        expect(!moderateFiles || assertionCount() != before || finite(*answer),
               "an answer between records of moderate numbers is not finite");
    }
    return 0;
}
