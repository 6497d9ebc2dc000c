// SPDX-License-Identifier: MIT
// The SBET reader over any bytes: open, read part, rewind, read to the end, read past it,
// rewind after the end and read again as a caller does. Every record kept must be the file's
// record, bit for bit and VALID; reading until endOfFile() must end.
// Input: the file, then one byte (the records read before the first rewind).
#include "FuzzSupport.h"

#include "Geodesy/Sbet/Reader.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <memory>
#include <stdexcept>

using namespace Kelvo;
using namespace Kelvo::Fuzzing;
using Geodesy::Trajectory::Record;

namespace {

constexpr std::size_t RECORD_SIZE = 136;

void expectFileRecord(const Record& record, const std::string& bytes, std::uint64_t index)
{
    expect(record.status == Record::VALID, "an SBET record read in full is not VALID");
    const std::array<double, 17> values = {record.time,         record.latitude,     record.longitude, record.height,
                                           record.velocityX,    record.velocityY,    record.velocityZ, record.roll,
                                           record.pitch,        record.heading,      record.wanderAngle, record.forceX,
                                           record.forceY,       record.forceZ,       record.angularRateX,
                                           record.angularRateY, record.angularRateZ};
    expect((index + 1) * RECORD_SIZE <= bytes.size(), "an SBET record kept beyond the file's whole records");
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double stored = decode<double>(bytes.data() + index * RECORD_SIZE + i * sizeof(double), false);
        expect(sameBits(values[i], stored), "an SBET record differs from the file's bytes");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    quietLibrary();
    FuzzedDataProvider input(data, size);
    const auto readBeforeRewind = input.ConsumeIntegral<std::uint8_t>();
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    const auto path = scratchFile("fuzz.sbet", bytes);

    std::unique_ptr<Geodesy::Sbet::Reader> reader;
    const bool opened = completes(
        [&] {
            reader = std::make_unique<Geodesy::Sbet::Reader>(Core::FileInfo(path),
                                                             Geodesy::Trajectory::Reader::ImuAlignmentStatus::NO_SOLUTION);
        },
        isReaderError);
    expect(opened == (!bytes.empty() && bytes.size() % RECORD_SIZE == 0),
           "the SBET reader refuses a file of whole records or takes one that is empty or truncated");
    if (!opened) {
        return 0;
    }

    const std::uint64_t count = bytes.size() / RECORD_SIZE;
    expect(reader->getCount() == count, "getCount() is not the number of records");
    const auto interval = reader->getTimeInterval(Geodesy::TimeReference::week);
    expect(sameBits(interval.data.first, decode<double>(bytes.data(), false))
               && sameBits(interval.data.second, decode<double>(bytes.data() + bytes.size() - RECORD_SIZE, false)),
           "the interval is not the times of the first and last records");
    reader->getTimeInterval(Geodesy::TimeReference::day);

    readRewindAndReadAgain(*reader, count, readBeforeRewind, bytes.size() + 2, "SBET file has unexpectedly reached EOF.",
                           [&](const Record& record, std::uint64_t index) { expectFileRecord(record, bytes, index); });
    return 0;
}
