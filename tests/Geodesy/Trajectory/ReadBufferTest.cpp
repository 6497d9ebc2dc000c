// SPDX-License-Identifier: MIT
// The read-ahead must be indistinguishable from reading the stream record by record: same
// bytes, same counts, same end-of-file and failure flags after every read.
#include "Geodesy/Trajectory/ReadBuffer.h"

#include <gtest/gtest.h>

#include <ios>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace Kelvo::Geodesy::Trajectory {
namespace {

TEST(ReadBuffer, BehavesAsStreamReadsWhateverTheChunkAndReadSizes)
{
    struct Case {
        std::size_t fileSize, capacity;
        bool readAhead;
        std::vector<std::size_t> reads;
    };
    const Case cases[] = {
        // Reads that end exactly at the end of the data, then one more, then after the end.
        {12, 4, true, {4, 4, 4, 4, 4}}, {12, 5, true, {4, 4, 4, 4, 4}},
        // Reads larger than the chunk, straddling several refills.
        {100, 7, true, {30, 1, 29, 40, 5, 5}},
        // A short read in the middle of a record.
        {10, 64, true, {4, 4, 4, 1}}, {0, 8, true, {3, 3}},
        // Without read-ahead, as for a live source.
        {10, 64, false, {4, 4, 4, 1}}, {12, 64, false, {6, 6, 6}},
    };
    for (const auto& c : cases) {
        std::string data(c.fileSize, '\0');
        for (std::size_t i = 0; i < data.size(); ++i) {
            data[i] = static_cast<char>(i * 7 + 3);
        }
        std::istringstream expected(data);
        std::istringstream actual(data);
        ReadBuffer buffer(c.readAhead, c.capacity);
        for (std::size_t i = 0; i < c.reads.size(); ++i) {
            std::string want(c.reads[i], 'x');
            std::string got(c.reads[i], 'x');
            expected.read(want.data(), static_cast<std::streamsize>(want.size()));
            EXPECT_EQ(buffer.read(actual, got.data(), got.size()), static_cast<std::size_t>(expected.gcount()));
            EXPECT_EQ(got, want);
            EXPECT_EQ(actual.rdstate(), expected.rdstate()) << "file " << c.fileSize << ", chunk " << c.capacity
                                                            << ", read #" << i;
        }
    }
}

// A stream buffer that serves three bytes, then breaks down like a stalled live peer.
struct BreakingSource : std::streambuf {
    char bytes[3] = {'a', 'b', 'c'};
    bool served = false;
    int_type underflow() override
    {
        if (std::exchange(served, true)) {
            throw std::ios_base::failure("peer stalled");
        }
        setg(bytes, bytes, bytes + sizeof(bytes));
        return traits_type::to_int_type(bytes[0]);
    }
};

// The readers ask for the failure to be rethrown: a broken source must not pass for an end of file.
TEST(ReadBuffer, ASourceFailureMarksTheStreamBadAndIsRethrown)
{
    for (const bool readAhead : {true, false}) {
        BreakingSource source;
        std::istream stream(&source);
        stream.exceptions(std::ios::badbit);
        ReadBuffer buffer(readAhead, 2);
        char bytes[5];
        EXPECT_THROW(buffer.read(stream, bytes, 5), std::ios_base::failure);
        EXPECT_TRUE(stream.bad() && !stream.eof()) << readAhead;
    }
}

} // namespace
} // namespace Kelvo::Geodesy::Trajectory
