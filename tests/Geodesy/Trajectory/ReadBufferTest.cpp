// SPDX-License-Identifier: MIT
// The read-ahead must be indistinguishable from reading the stream record by record: same
// bytes, same counts, same end-of-file and failure flags after every read.
#include "Geodesy/Trajectory/ReadBuffer.h"

#include <gtest/gtest.h>

#include <ios>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::Trajectory {
namespace {

std::string sampleBytes(std::size_t count)
{
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<char>(i * 7 + 3);
    }
    return bytes;
}

TEST(ReadBuffer, BehavesAsStreamReadsWhateverTheChunkAndReadSizes)
{
    struct Case {
        std::size_t fileSize;
        std::size_t capacity;
        bool readAhead;
        std::vector<std::size_t> reads;
    };
    const Case cases[] = {
        // Reads that end exactly at the end of the data, then one more, then after the end.
        {12, 4, true, {4, 4, 4, 4, 4}},
        {12, 5, true, {4, 4, 4, 4, 4}},
        // Reads larger than the chunk, straddling several refills.
        {100, 7, true, {30, 1, 29, 40, 5, 5}},
        // A short read in the middle of a record.
        {10, 64, true, {4, 4, 4, 1}},
        {0, 8, true, {3, 3}},
        // Without read-ahead, as for a live source.
        {10, 64, false, {4, 4, 4, 1}},
        {12, 64, false, {6, 6, 6}},
    };
    for (const auto& c : cases) {
        const std::string data = sampleBytes(c.fileSize);
        std::istringstream expected(data);
        std::istringstream actual(data);
        ReadBuffer buffer(c.readAhead, c.capacity);
        for (std::size_t i = 0; i < c.reads.size(); ++i) {
            const auto n = c.reads[i];
            std::string want(n, 'x');
            std::string got(n, 'x');
            expected.read(want.data(), static_cast<std::streamsize>(n));
            const auto count = buffer.read(actual, got.data(), n);
            SCOPED_TRACE("file " + std::to_string(c.fileSize) + ", chunk " + std::to_string(c.capacity) + ", read #"
                         + std::to_string(i));
            EXPECT_EQ(count, static_cast<std::size_t>(expected.gcount()));
            EXPECT_EQ(got, want);
            EXPECT_EQ(actual.rdstate(), expected.rdstate());
        }
    }
}

// A stream buffer whose source breaks down after a few bytes, like a stalled live peer.
class BreakingSource : public std::streambuf {
protected:
    int_type underflow() override
    {
        if (served) {
            throw std::ios_base::failure("peer stalled");
        }
        served = true;
        setg(bytes, bytes, bytes + sizeof(bytes));
        return traits_type::to_int_type(bytes[0]);
    }

private:
    char bytes[3] = {'a', 'b', 'c'};
    bool served = false;
};

TEST(ReadBuffer, ASourceFailureMarksTheStreamBadAndIsRethrownOnlyWhenAskedFor)
{
    for (const bool readAhead : {true, false}) {
        BreakingSource source;
        std::istream stream(&source);
        stream.exceptions(std::ios::badbit);
        ReadBuffer buffer(readAhead, 2);
        char bytes[5];
        EXPECT_THROW(buffer.read(stream, bytes, 5), std::ios_base::failure);
        EXPECT_TRUE(stream.bad());

        BreakingSource quietSource;
        std::istream quiet(&quietSource);
        ReadBuffer quietBuffer(readAhead, 2);
        quietBuffer.read(quiet, bytes, 5);
        EXPECT_TRUE(quiet.bad());
        EXPECT_FALSE(quiet.eof());
    }
}

} // namespace
} // namespace Kelvo::Geodesy::Trajectory
