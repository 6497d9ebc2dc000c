// SPDX-License-Identifier: MIT
#include "Geodesy/Trajectory/Reader.h"

#include "Trajectory/FileAccess.h"
#include "Trajectory/ReadBuffer.h"

#include "Core/Logging.h"
#include "Core/Logging/LoggingCallbackPrivate.h"
#include "Utils/CoreAssert.h"
#include "Utils/FileHelper.h"

#include <cerrno>
#include <fstream>
#include <limits>
#include <sstream>
#include <system_error>

namespace Kelvo::Geodesy::Trajectory {

Reader::Reader(const Core::FileInfo& fileInfo)
    : fileInfo(fileInfo)
    , inStream(fileInfo.makeStream(std::optional<int>(std::ios::binary | std::ios::ate)))
    , timeInterval(std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity())
{
    // Kept before anything else can overwrite it: it says why a local file did not open.
    const int openError = errno;
    size = inStream->tellg();
    readBuffer = std::make_unique<ReadBuffer>(!fileInfo.isRemote());

    CORE_ASSERT(inStream);
    // Only a bad stream throws; the end of the file and failed reads are tested by hand.
    inStream->exceptions(std::ios::badbit);
    CORE_ASSERT(inStream);

    if (fileInfo.isRemote()) {
        return;
    }

    CORE_ASSERT(size >= 0);
    const auto* ifs = dynamic_cast<const std::ifstream*>(inStream.get());
    CORE_ASSERT(ifs);
    if (ifs == nullptr || !ifs->is_open()) {
        throw openFailure(openError, fileInfo.getPath());
    }
    guardAgainstEmptyFile(fileInfo.getPath());
}

Reader::~Reader() = default;

void Reader::returnToBegin()
{
    if (fileInfo.isRemote()) {
        return;
    }
    readBuffer->discard();
    inStream->seekg(0, std::ios::beg);
}

Maths::Interval<double> Reader::getTimeInterval(TimeReference tref) const
{
    CORE_ASSERT(tref == TimeReference::week || tref == TimeReference::day);
    switch (tref) {
    case TimeReference::week:
        return timeInterval;
    case TimeReference::day:
        // The file times are GPS: no leap-second correction.
        return {secsOfWeekToSecsOfDay(timeInterval.data.first), secsOfWeekToSecsOfDay(timeInterval.data.second)};
    }
    CORE_NEVER_COME_HERE("Unexpected TimeReference!");
    return {};
}

std::pair<double, LatLonHeight> Reader::getNextLLH()
{
    const Record record = getNext();
    return {record.time, LatLonHeight(Maths::Radian(record.latitude), Maths::Radian(record.longitude), record.height)};
}

std::int64_t Reader::safeRead(char* const buffer, std::size_t size)
{
    CORE_ASSERT(buffer);
    CORE_ASSERT(size > 0);
    CORE_ASSERT(inStream);
    CORE_ASSERT(inStream->good());
    const auto count = readBuffer->read(*inStream, buffer, size);
    if (inStream->fail()) {
        Core::Logging::logVerbose("Failed to read input-stream.");
    }
    return static_cast<std::int64_t>(count);
}

void Reader::updateTimeInterval(double time)
{
    // Two independent tests, so that the first record sets both ends.
    if (timeInterval.data.first > time) {
        timeInterval.data.first = time;
    }
    if (time > timeInterval.data.second) {
        timeInterval.data.second = time;
    }
}

void Reader::guardAgainstEmptyFile(const std::filesystem::path& path)
{
    CORE_ASSERT(!path.empty());
    CORE_ASSERT(!fileInfo.isRemote());
    CORE_ASSERT(inStream);
    inStream->seekg(0, std::ios::beg);
    if (size > 0) {
        return;
    }
    std::ostringstream message;
    message << "Trajectory file " << path << "is empty";
    Core::Logging::logAtLevel(3, message.str());
    throw Utils::FileHelper::makeSystemError(message.str());
}

} // namespace Kelvo::Geodesy::Trajectory
