// SPDX-License-Identifier: MIT
// The two formats of the trajectory readers, for the tests that hold for both.
#pragma once

#include "support/TrajectoryFiles.h"

#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/Sbet/Reader.h"

#include <memory>
#include <string>

namespace Kelvo::Geodesy::Trajectory {

struct RecordFormat {
    const char* name;
    std::streamoff recordSize;
    const char* endOfFileMessage;
    bool cutRecordKeepsBytes;                   // a record cut short holds the bytes that came
    bool sizeCountsBytesRead;                   // a live size grows by the bytes read, not per record
    std::string (*bytes)(std::uint32_t count);  // `count` records, a second apart from 10 s
    std::unique_ptr<Reader> (*open)(const Core::FileInfo& file);
};

inline const RecordFormat recordFormats[] = {
    {"SBET", 136, "SBET file has unexpectedly reached EOF.", false, false,
     [](std::uint32_t count) { return Testing::sbetBytes(Testing::syntheticTrajectory(10.0, 1.0, count)); },
     [](const Core::FileInfo& file) -> std::unique_ptr<Reader> {
         return std::make_unique<Sbet::Reader>(file, Reader::ImuAlignmentStatus::NO_SOLUTION);
     }},
    {"raw APX", 115, "Raw APX file has unexpectedly reached EOF.", true, true,
     [](std::uint32_t count) {
         std::vector<ApxRaw::RawRecord> records;
         for (std::uint32_t i = 0; i < count; ++i) {
             records.push_back(Testing::syntheticRawRecord(10000 + 1000 * i));
         }
         return Testing::apxRawBytes(records);
     },
     [](const Core::FileInfo& file) -> std::unique_ptr<Reader> {
         return std::make_unique<ApxRaw::Reader>(file, Reader::ImuAlignmentStatus::NO_SOLUTION);
     }},
};

} // namespace Kelvo::Geodesy::Trajectory
