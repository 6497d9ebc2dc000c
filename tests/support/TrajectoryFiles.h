// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/ApxRaw/RawRecord.h"
#include "Geodesy/Smrmsg/Record.h"
#include "Geodesy/Trajectory/Record.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace Kelvo::Testing {

/// A VALID record of a platform in steady motion: every value is its own linear function of
/// `time` [GPS s of week], so a record built for any time is known exactly and two fields
/// never hold the same value (a field stored in the wrong slot shows).
Geodesy::Trajectory::Record syntheticRecord(double time);

/// `count` synthetic records, `step` seconds apart from `start`.
std::vector<Geodesy::Trajectory::Record> syntheticTrajectory(double start, double step, std::size_t count);

/// The bytes that a `Writer` writes for `records`.
template <typename Writer, typename Record>
std::string writtenBytes(const std::vector<Record>& records)
{
    std::ostringstream bytes;
    Writer writer(bytes);
    for (const auto& record : records) {
        writer.write(record);
    }
    return bytes.str();
}

/// The bytes of an SBET file holding `records`.
std::string sbetBytes(const std::vector<Geodesy::Trajectory::Record>& records);

/// A raw APX record at `timeOfWeek` [ms] whose values are linear functions of the time.
Geodesy::ApxRaw::RawRecord syntheticRawRecord(std::uint32_t timeOfWeek, std::uint8_t alignmentStatus = 5,
                                              std::uint8_t solutionFlag = 1);

/// The bytes of a raw APX file holding `records`.
std::string apxRawBytes(const std::vector<Geodesy::ApxRaw::RawRecord>& records);

/// Calls getNext() until the reader reports the end of the file, as the readers' callers do:
/// the record of the call whose read hit the end is dropped.
template <typename Reader>
auto readUntilEnd(Reader& reader)
{
    std::vector<decltype(reader.getNext())> records;
    for (;;) {
        auto record = reader.getNext();
        if (reader.endOfFile()) {
            return records;
        }
        records.push_back(record);
    }
}

/// The doubles of `record`, in file order.
std::array<double, 17> valuesOf(const Geodesy::Trajectory::Record& record);
std::array<double, 10> valuesOf(const Geodesy::Smrmsg::Record& record);

/// The bits of `values`, to compare records exactly: NaN payloads and signed zeros included.
template <std::size_t Count>
std::array<std::uint64_t, Count> bitsOf(const std::array<double, Count>& values)
{
    return std::bit_cast<std::array<std::uint64_t, Count>>(values);
}

/// The what() text of the `Exception` that `action` throws, "(no exception)" when none is.
template <typename Exception, typename Action>
std::string thrownText(Action&& action)
{
    try {
        action();
    } catch (const Exception& error) {
        return error.what();
    }
    return "(no exception)";
}

/// Reads records of the given `times`, each leaving endOfFile() clear, then the read that hits
/// the end, which sets it; the call after that must throw `message`. Returns the record of the
/// read that hit the end, whose last double no byte of the file replaced: a NaN.
template <typename Reader>
auto readPastTheEnd(Reader& reader, const std::vector<double>& times, const std::string& message)
{
    for (const double time : times) {
        EXPECT_EQ(reader.getNext().time, time);
        EXPECT_FALSE(reader.endOfFile()) << "a read that ends at the end of the file does not set it";
    }
    const auto hit = reader.getNext();
    EXPECT_TRUE(reader.endOfFile());
    EXPECT_TRUE(std::isnan(valuesOf(hit).back()));
    EXPECT_EQ(thrownText<std::runtime_error>([&] { reader.getNext(); }), message);
    return hit;
}

} // namespace Kelvo::Testing
