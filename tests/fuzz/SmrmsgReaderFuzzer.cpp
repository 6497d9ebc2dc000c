// SPDX-License-Identifier: MIT
// The SMRMSG reader over any bytes: every record kept until endOfFile() is the file's record
// bit for bit, reading ends after the whole records, and the call after the end throws.
// Input: the file.
#include "FuzzSupport.h"

#include "Geodesy/Smrmsg/Reader.h"

#include <array>
#include <bit>
#include <memory>
#include <stdexcept>

using namespace Kelvo;
using namespace Kelvo::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t RECORD_SIZE = 80;
    quietLibrary();
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto path = scratchFile("fuzz.smrmsg", bytes);

    std::unique_ptr<Geodesy::Smrmsg::Reader> reader;
    expect(completes([&] { reader = std::make_unique<Geodesy::Smrmsg::Reader>(Core::FileInfo(path)); },
                     [](const std::exception&) { return false; }),
           "the SMRMSG reader refuses a file");

    const auto keep = [&](const Geodesy::Smrmsg::Record& record, std::uint64_t index) {
        expect((index + 1) * RECORD_SIZE <= bytes.size(), "an SMRMSG record kept beyond the file's whole records");
        const auto values = std::bit_cast<std::array<double, 10>>(record);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double stored = decode<double>(bytes.data() + index * RECORD_SIZE + i * sizeof(double), false);
            expect(sameBits(values[i], stored), "an SMRMSG record differs from the file's bytes");
        }
    };
    expect(readUntilEnd(*reader, size + 2, keep) == size / RECORD_SIZE, "not every whole SMRMSG record was read");
    const bool threw = !completes([&] { reader->getNext(); }, [](const std::exception& error) {
        return std::string_view(error.what()) == "SMRMSG file has unexpectedly reached EOF.";
    });
    expect(threw, "getNext() after the end does not throw");
    return 0;
}
