// SPDX-License-Identifier: MIT
// The raw APX reader over any bytes, as the SBET target reads its files. Every record kept is
// checked against an independent decoding of the file's big-endian bytes: the same time,
// height, velocities and rates, NaN exactly where the file holds NaN, and the grade that the
// best alignment so far and the solution flag give.
// Input: the file, then two bytes (the required alignment, the records read before the
// first rewind).
#include "FuzzSupport.h"

#include "Geodesy/ApxRaw/Reader.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>

using namespace Kelvo;
using namespace Kelvo::Fuzzing;
using Geodesy::Trajectory::Record;
using Alignment = Geodesy::Trajectory::Reader::ImuAlignmentStatus;

namespace {

constexpr std::size_t RECORD_SIZE = 115;

double timeAt(const std::string& bytes, std::size_t offset)
{
    return decode<std::uint32_t>(bytes.data() + offset + 11, true) / 1000.0;
}

/// Checks the records kept, in file order, against the file's bytes.
class FileRecords {
public:
    FileRecords(const std::string& bytes, Alignment required)
        : bytes(bytes)
        , required(static_cast<std::uint8_t>(required))
    {
    }

    void check(const Record& record, std::uint64_t index)
    {
        expect((index + 1) * RECORD_SIZE <= bytes.size(), "a raw APX record kept beyond the file's whole records");
        const char* raw = bytes.data() + index * RECORD_SIZE;
        best = std::max(best, static_cast<std::uint8_t>(raw[15]));
        const bool usable = best >= required && raw[16] != 0;
        expect(record.status == (usable ? Record::VALID : Record::NOT_ALIGNED), "a raw APX record is graded wrongly");
        expect(sameBits(record.time, timeAt(bytes, index * RECORD_SIZE)), "a raw APX time differs from the file");
        expect(sameBits(record.height, decode<double>(raw + 33, true)), "a raw APX height differs from the file");
        expect(record.wanderAngle == 0.0, "a raw APX wander angle is not 0");
        const double floats[6] = {record.velocityX,    record.velocityY,    record.velocityZ,
                                  record.angularRateX, record.angularRateY, record.angularRateZ};
        const std::size_t floatOffsets[6] = {41, 45, 49, 101, 105, 109};
        for (std::size_t i = 0; i < 6; ++i) {
            const double stored = decode<float>(raw + floatOffsets[i], true);
            expect(sameBits(floats[i], stored), "a raw APX velocity or rate differs from the file");
        }
        // Converted from degrees: NaN exactly where the file holds NaN.
        const double converted[8] = {record.latitude, record.longitude, record.roll, record.pitch,
                                     record.heading,  record.forceX,    record.forceY, record.forceZ};
        const double stored[8] = {decode<double>(raw + 17, true), decode<double>(raw + 25, true),
                                  decode<double>(raw + 57, true), decode<double>(raw + 65, true),
                                  decode<double>(raw + 73, true), decode<float>(raw + 89, true),
                                  decode<float>(raw + 93, true),  decode<float>(raw + 97, true)};
        for (std::size_t i = 0; i < 8; ++i) {
            expect(std::isnan(converted[i]) == std::isnan(stored[i]), "a raw APX angle is NaN where the file's is not");
        }
    }

private:
    const std::string& bytes;
    std::uint8_t required;
    std::uint8_t best = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    quietLibrary();
    FuzzedDataProvider input(data, size);
    const auto required = static_cast<Alignment>(input.ConsumeIntegral<std::uint8_t>());
    const auto readBeforeRewind = input.ConsumeIntegral<std::uint8_t>();
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    const auto path = scratchFile("fuzz.stream", bytes);

    std::unique_ptr<Geodesy::ApxRaw::Reader> reader;
    const bool opened = completes(
        [&] { reader = std::make_unique<Geodesy::ApxRaw::Reader>(Core::FileInfo(path), required); }, isReaderError);
    expect(opened == !bytes.empty(), "the raw APX reader refuses a file that is not empty, or takes an empty one");
    if (!opened) {
        return 0;
    }

    const std::uint64_t count = bytes.size() / RECORD_SIZE;
    expect(reader->getCount() == count, "getCount() is not the number of whole records");
    if (count > 0) {
        const auto interval = reader->getTimeInterval(Geodesy::TimeReference::week);
        expect(sameBits(interval.data.first, timeAt(bytes, 0))
                   && sameBits(interval.data.second, timeAt(bytes, bytes.size() - RECORD_SIZE)),
               "the interval is not the times of the first record and the last 115 bytes");
    }
    reader->getTimeInterval(Geodesy::TimeReference::day);

    // The best alignment met so far survives the rewinds, in the reader as in the check.
    FileRecords records(bytes, required);
    readRewindAndReadAgain(*reader, count, readBeforeRewind, bytes.size() + 2,
                           "Raw APX file has unexpectedly reached EOF.",
                           [&](const Record& record, std::uint64_t index) { records.check(record, index); });
    return 0;
}
