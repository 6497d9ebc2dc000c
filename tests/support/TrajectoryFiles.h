// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/ApxRaw/RawRecord.h"
#include "Geodesy/Trajectory/Record.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Kelvo::Testing {

/// A VALID record of a platform in steady motion: every value is its own linear function of
/// `time` [GPS s of week], so a record built for any time is known exactly and two fields
/// never hold the same value (a field stored in the wrong slot shows).
Geodesy::Trajectory::Record syntheticRecord(double time);

/// `count` synthetic records, `step` seconds apart from `start`.
std::vector<Geodesy::Trajectory::Record> syntheticTrajectory(double start, double step, std::size_t count);

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

} // namespace Kelvo::Testing
