// SPDX-License-Identifier: MIT
#include "Geodesy/GNSS/RtkLibGnssDataProvider.h"

#include "Core/Logging/LoggingCallbackPrivate.h"
#include "GNSS/FixedText.h"
#include "GNSS/RTKLIB/RtkLibPosReader.h"
#include "Utils/CoreAssert.h"

#include <cmath>

namespace Kelvo::Geodesy::GNSS {

RtkLibGnssDataProvider::RtkLibGnssDataProvider(const Core::FileInfo& fileInfo, const double& velocityThreshold)
    : fileInfo(fileInfo)
    , reader(std::make_unique<RtkLibPosReader>(fileInfo, velocityThreshold))
{
    restart();
}

RtkLibGnssDataProvider::~RtkLibGnssDataProvider() = default;

bool RtkLibGnssDataProvider::endOfFile()
{
    CORE_ASSERT(reader);
    return !reader || reader->endOfFile();
}

Maths::Interval<double> RtkLibGnssDataProvider::getTimeInterval() const
{
    CORE_ASSERT(reader);
    return reader ? reader->getTimeInterval() : Maths::Interval<double>{};
}

const GnssData* RtkLibGnssDataProvider::getCurrentGnssData()
{
    CORE_ASSERT(current);
    return current.get();
}

void RtkLibGnssDataProvider::restart()
{
    CORE_ASSERT(reader);
    if (!reader) {
        return;
    }
    reader->returnToBegin();
    previous.reset();
    current = std::make_unique<GnssData>(reader->getNext());
    next = std::make_unique<GnssData>(reader->getNext());
    CORE_ASSERT(next->gpsTime.secondsInWeek > current->gpsTime.secondsInWeek);
}

void RtkLibGnssDataProvider::moveForward()
{
    CORE_ASSERT(reader);
    CORE_ASSERT(!endOfFile());
    CORE_ASSERT(current);
    CORE_ASSERT(next);
    if (!reader) {
        return;
    }
    previous = std::move(current);
    current = std::move(next);
    next = std::make_unique<GnssData>(reader->getNext());
    CORE_ASSERT(next->gpsTime.secondsInWeek >= current->gpsTime.secondsInWeek);
}

std::unique_ptr<GnssData> RtkLibGnssDataProvider::getGnssData(double seconds)
{
    CORE_ASSERT(std::isnormal( seconds ) || seconds == 0.0);
    CORE_ASSERT(reader);
    CORE_ASSERT(current);
    CORE_ASSERT(next);
    if (!reader || !current || !next) {
        return nullptr;
    }

    const auto usedInterval = reader->getTimeInterval();
    if (seconds < usedInterval.data.first || seconds > usedInterval.data.second) {
        return nullptr;
    }

    if (seconds < current->gpsTime.secondsInWeek) {
        if (previous && previous->gpsTime.secondsInWeek < seconds) {
            return std::make_unique<GnssData>(GnssData::interpolate(seconds, *previous, *current));
        }
        Core::Logging::logAtLevel(1, "This should never happen -> Rolling back to the beginning of the RTK lib POS file: "
                                         + toFixedText(seconds) + " < " + toFixedText(current->gpsTime.secondsInWeek));
        restart();
        CORE_ASSERT(seconds > current->gpsTime.secondsInWeek);
    }

    while (!reader->endOfFile() && next->gpsTime.secondsInWeek < seconds) {
        moveForward();
    }
    CORE_ASSERT(!reader->endOfFile());
    return std::make_unique<GnssData>(GnssData::interpolate(seconds, *current, *next));
}

} // namespace Kelvo::Geodesy::GNSS
