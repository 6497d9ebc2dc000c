// SPDX-License-Identifier: MIT
#pragma once

#include "CRS/Transform.h"
#include "Core/Event.h"
#include "Core/FileInfo.h"
#include "Core/Logging.h"
#include "Geodesy/ApxRaw/Reader.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/PositionAttitudeProvider.h"
#include "Geodesy/Sbet/Reader.h"
#include "Geodesy/TimedPositionAttitude.h"
#include "Geodesy/Trajectory/Reader.h"
#include "Maths/Interval.h"
#include "Maths/IntervalCounter.h"
#include "Maths/Situation.h"
#include "Utils/CoreAssert.h"
#include "Utils/ErrorManagement/PackageIdentifier.h"

#include <cmath>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

namespace Kelvo::Geodesy {

namespace ProviderTime {

// The time conversions of GPSTime.h that every lookup runs, with the same values and the
// same reports. The common case, where none of the library function's checks fails, is
// computed here inline; every other case calls the library function, which reports what
// fails and returns the value. This keeps a lookup free of calls into the library for its
// arithmetic.

/// `x` modulo `period` (a whole number of seconds) for x >= 0, as std::fmod gives it, when
/// x - n * period lands in [0, period) for n = floor(x / period), estimated by a multiplication:
/// the remainder is then exact, equal to fmod and to the floor form, and passes every check of
/// the library's reductions. False in any other case (including a wrong estimate of n).
inline bool reduce(double x, double period, double& result)
{
    // Below 2^52 the product n * period is an exact integer, and so is the difference.
    if (!(x >= 0.0 && x < 0x1p52)) {
        return false;
    }
    // floor of a quotient in [0, 2^52): the truncation.
    const auto whole = static_cast<double>(static_cast<std::int64_t>(x * (1.0 / period)));
    const double remainder = x - whole * period;
    if (!(remainder >= 0.0 && remainder < period)) {
        return false;
    }
    result = remainder;
    return true;
}

/// utcToGps.
inline double utcToGps(double seconds)
{
    return seconds >= 0.0 ? seconds + GPS_LEAP_SECONDS() : Geodesy::utcToGps(seconds);
}

/// utcSecsOfEpochToSecsOfWeek.
inline double utcSecsOfEpochToSecsOfWeek(double utcSecsOfEpoch)
{
    double result;
    if (reduce(utcSecsOfEpoch + UNIX_EPOCH_SECONDS_IN_WEEK, SECONDS_IN_WEEK(), result)) {
        return result;
    }
    return Geodesy::utcSecsOfEpochToSecsOfWeek(utcSecsOfEpoch);
}

/// What the week lookup needs of a request `utc` [UTC s since the Unix epoch]: its UTC
/// seconds of the week, utcSecsOfEpochToSecsOfWeek(utc), and its GPS adjusted time,
/// utcSecsOfEpochToGpsAdjustedTime(utc). False, with nothing computed, when either would
/// report something or when the shortcut below does not hold.
///
/// The shortcut: from 2011-09 (GPS adjusted time > 0) to 2038-01 a request is a multiple of 2^-22 s,
/// so that every sum the library forms of it is exact, and the GPS time is exactly
/// utc + 18 - 315964800; while its GPS second of the week stays a second clear of the end of
/// the week, the library's week count and reduction see the same whole weeks. Its GPS
/// adjusted time is then exactly utc - 1315964782.
inline bool weekRequest(double utc, double& utcSecondsOfWeek, double& gpsAdjustedTime)
{
    constexpr double ADJUSTED_TIME_ORIGIN = GPS_EPOCH_IN_UNIX_SECONDS - GPS_LEAP_SECONDS() + GPS_ADJUSTED_TIME_OFFSET;
    double secondsOfWeek;
    if (!(utc > ADJUSTED_TIME_ORIGIN && utc < 2147000000.0)
        || !reduce(utc + UNIX_EPOCH_SECONDS_IN_WEEK, SECONDS_IN_WEEK(), secondsOfWeek)
        || !(secondsOfWeek + GPS_LEAP_SECONDS() <= SECONDS_IN_WEEK() - 1.0)) {
        return false;
    }
    utcSecondsOfWeek = secondsOfWeek;
    gpsAdjustedTime = utc - ADJUSTED_TIME_ORIGIN;
    return true;
}

/// gpsSecsOfWeekToUtcSecsOfDay, outside the first 18 s of a GPS week and the last 18 s of
/// a UTC day (where the library function reports).
inline double gpsSecsOfWeekToUtcSecsOfDay(double gpsSecsOfWeek)
{
    if (gpsSecsOfWeek >= 0.0 && gpsSecsOfWeek < SECONDS_IN_WEEK()) {
        const double utcSecsOfWeek = gpsSecsOfWeek - GPS_LEAP_SECONDS();
        double result;
        if (reduce(utcSecsOfWeek, SECONDS_IN_DAY(), result) && result < SECONDS_IN_DAY() - GPS_LEAP_SECONDS()) {
            return result;
        }
    }
    return Geodesy::gpsSecsOfWeekToUtcSecsOfDay(gpsSecsOfWeek);
}

/// GPSTime::toUtc< TR >().
template <TimeReference TR>
double toUtc(const GPSTime& time)
{
    if constexpr (TR == TimeReference::week) {
        const double seconds = time.secondsInWeek;
        return seconds >= 0.0 ? seconds - GPS_LEAP_SECONDS() : Geodesy::gpsToUtc(seconds);
    } else {
        return gpsSecsOfWeekToUtcSecsOfDay(time.secondsInWeek);
    }
}

} // namespace ProviderTime

/// Position and attitude from one trajectory file (`Reader` = Sbet::Reader or
/// ApxRaw::Reader), local or remote, interpolated linearly between the two records that
/// bracket the requested UTC time. Positions pass through the optional CRS transform (see
/// TimedPositionAttitude::fromSbet).
///
/// Two lookups: `getPositionAttitude` takes UTC seconds since the Unix epoch and compares
/// them with the records as UTC seconds of the week (its answers carry the GPS adjusted time
/// of the request as auxiliary seconds); `getPositionAttitudeOfDay` takes UTC seconds of the
/// day (auxiliary seconds 0). The records are read forward, three at a time (previous,
/// current, next), so increasing requests cost one read per record; a request between
/// previous and current reads nothing; an earlier one logs the event (1, 24, 23) "Timings are
/// not ordered -> rolling back into SBET: <request> < <current>" and reads a local file
/// again from its start (a remote source answers it with an empty pointer).
///
/// Empty answers: a time below or above the file's interval (counted as lower or upper in
/// the caller's counter), a bracket whose records are not both VALID, a remote source that
/// has ended. A remote source may still grow: a time above what has arrived is read up to
/// and counted by where it lies then. Preconditions are assertions (a request that is not a
/// normal number or 0, records out of time order, a request at or before the first record
/// after a rewind, a bracket not found before the end of a local file). Exceptions of the
/// reader (missing, empty or truncated file, a failed stream) pass through.
template <typename Reader>
class SbetPositionAttitudeProvider : public PositionAttitudeProvider {
public:
    /// Code of the event that a rewind logs.
    static constexpr std::uint32_t ROLLING_BACK_EVENT_CODE() { return 23; }

    /// Opens `fileInfo` and stands on its first two records. `transform` may be null; the
    /// provider keeps its own copy.
    SbetPositionAttitudeProvider(const Core::FileInfo& fileInfo, const CRS::Transform* transform,
                                 Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus)
        : fileInfo(fileInfo)
        , reader(std::make_unique<Reader>(fileInfo, imuAlignmentStatus))
        , transform(transform != nullptr ? std::make_unique<CRS::Transform>(*transform) : nullptr)
        , imuAlignmentStatus(imuAlignmentStatus)
    {
        initialize();
    }

    SbetPositionAttitudeProvider(const SbetPositionAttitudeProvider&) = delete;
    SbetPositionAttitudeProvider& operator=(const SbetPositionAttitudeProvider&) = delete;
    ~SbetPositionAttitudeProvider() override = default;

    std::unique_ptr<TimedPositionAttitude> getPositionAttitude(double seconds, Maths::IntervalCounter& counter) override
    {
        return lookup<TimeReference::week>(seconds, counter);
    }

    std::unique_ptr<TimedPositionAttitude> getPositionAttitudeOfDay(double seconds,
                                                                    Maths::IntervalCounter& counter) override
    {
        return lookup<TimeReference::day>(seconds, counter);
    }

    /// Asserts "current".
    const TimedPositionAttitude* getCurrent() override
    {
        CORE_ASSERT(current);
        return current.get();
    }

    /// The file's interval [GPS s of week or of day]; for a remote source, that of the
    /// records read so far.
    Maths::Interval<double> getTimeInterval(TimeReference reference) const
    {
        CORE_ASSERT(reader != nullptr);
        return reader->getTimeInterval(reference);
    }

    /// Whether the request (as the lookup of `TR` takes it) lies in the file's interval,
    /// bounds included. Counts nothing.
    template <TimeReference TR>
    bool contains(double seconds) const
    {
        CORE_ASSERT(reader);
        return classify(ProviderTime::utcToGps(requestSeconds<TR>(seconds)), reader->getTimeInterval(TR))
               == Maths::Situation::inside;
    }

private:
    /// The request in the scale of the records' toUtc< TR >().
    template <TimeReference TR>
    static double requestSeconds(double seconds)
    {
        if constexpr (TR == TimeReference::week) {
            return ProviderTime::utcSecsOfEpochToSecsOfWeek(seconds);
        } else {
            return seconds;
        }
    }

    /// Where the GPS time `x` lies relative to `interval`, both bounds inside.
    static Maths::Situation classify(double x, const Maths::Interval<double>& interval)
    {
        if (x < interval.data.first) {
            return Maths::Situation::lower;
        }
        if (x > interval.data.second) {
            return Maths::Situation::upper;
        }
        return Maths::Situation::inside;
    }

    /// Whether a request classified as `situation` is looked up.
    bool admit(Maths::Situation situation, Maths::IntervalCounter& counter) const
    {
        if (!fileInfo.isRemote()) {
            return situation == Maths::Situation::inside;
        }
        switch (situation) {
        case Maths::Situation::lower:
            return false;
        case Maths::Situation::inside:
            return true;
        case Maths::Situation::upper:
            // A live source may still bring the time: it is counted again once read up to.
            counter[Maths::Situation::upper]--;
            return true;
        }
        CORE_NEVER_COME_HERE("Unexpected enum-class value");
        return true;
    }

    // The lookup. Its checks are evaluated together on the hot path; when one fails, a cold
    // function reports each failing one with its own text, in the order they are written.
    template <TimeReference TR>
    std::unique_ptr<TimedPositionAttitude> lookup(double seconds, Maths::IntervalCounter& counter)
    {
        if (!(std::isnormal(seconds) || seconds == 0.0)) [[unlikely]] {
            reportRequest(seconds);
        }
        double auxiliarySeconds = 0.0;
        double utcSeconds = seconds;
        if constexpr (TR == TimeReference::week) {
            if (!ProviderTime::weekRequest(seconds, utcSeconds, auxiliarySeconds)) {
                auxiliarySeconds = utcSecsOfEpochToGpsAdjustedTime(seconds);
                utcSeconds = utcSecsOfEpochToSecsOfWeek(seconds);
            }
        }

        if (!(reader && current && next)) [[unlikely]] {
            reportMissingRecords(seconds);
        }

        const Maths::Situation situation = classify(ProviderTime::utcToGps(utcSeconds), reader->getTimeInterval(TR));
        counter[situation]++;
        if (!admit(situation, counter) || !current || !next) {
            return nullptr;
        }

        const double currentSeconds = ProviderTime::toUtc<TR>(current->time);
        if (currentSeconds > utcSeconds) {
            if (previous && utcSeconds > ProviderTime::toUtc<TR>(previous->time)) {
                return interpolateAt<TR>(*previous, *current, utcSeconds, auxiliarySeconds);
            }
            if (!rollBack<TR>(utcSeconds, currentSeconds)) {
                return nullptr;
            }
        }

        // Strictly below: a request at a record's time stops with that record as `next`.
        while (!reader->endOfFile() && next && ProviderTime::toUtc<TR>(next->time) < utcSeconds) {
            moveForward();
        }

        if (!fileInfo.isRemote()) {
            if (reader->endOfFile()) [[unlikely]] {
                reportEndOfFile();
            }
        } else if (!finishRemote<TR>(situation, utcSeconds, counter)) {
            return nullptr;
        }
        return interpolateAt<TR>(*current, *next, utcSeconds, auxiliarySeconds);
    }

    template <TimeReference TR>
    static std::unique_ptr<TimedPositionAttitude> interpolateAt(const TimedPositionAttitude& pos1,
                                                                const TimedPositionAttitude& pos2, double utcSeconds,
                                                                double auxiliarySeconds)
    {
        if (!(pos1.time <= pos2.time)) [[unlikely]] {
            reportOrder(pos1, pos2);
        }
        const double time1 = ProviderTime::toUtc<TR>(pos1.time);
        const double time2 = ProviderTime::toUtc<TR>(pos2.time);
        // Two records at the same instant: the first one wins.
        const double k = time2 == time1 ? 0.0 : (utcSeconds - time1) / (time2 - time1);
        if (!(utcSeconds >= time1 && utcSeconds <= time2 && k >= 0.0 && k <= 1.0)) [[unlikely]] {
            reportBracket(utcSeconds, time1, time2, k);
        }
        if (pos1.status == Trajectory::Record::VALID && pos2.status == Trajectory::Record::VALID) {
            // What interpolate() gives for two VALID values, without the call into the library.
            return TimedPositionAttitude::blendValid(pos1, pos2, k, auxiliarySeconds);
        }
        return TimedPositionAttitude::interpolate(pos1, pos2, k, auxiliarySeconds);
    }

    // ---- Off the hot path ----------------------------------------------------------------

    [[gnu::cold, gnu::noinline]] static void reportRequest(double seconds)
    {
        CORE_ASSERT(std::isnormal( seconds ) || seconds == 0.0);
    }

    [[gnu::cold, gnu::noinline]] void reportMissingRecords(double seconds) const
    {
        CORE_ASSERT(reader);
        CORE_ASSERT(current);
        CORE_ASSERT(next);
        if (!current) {
            std::ostringstream message;
            message << "No matching found in sbet for " << seconds;
            Core::Logging::logWarning(message.str());
        }
    }

    [[gnu::cold, gnu::noinline]] void reportEndOfFile() const
    {
        // The last record read ahead is never a usable `next`.
        CORE_ASSERT(reader->isRemote() || !reader->endOfFile());
    }

    [[gnu::cold, gnu::noinline]] static void reportOrder(const TimedPositionAttitude& pos1,
                                                         const TimedPositionAttitude& pos2)
    {
        CORE_ASSERT(pos1.time <= pos2.time);
    }

    [[gnu::cold, gnu::noinline]] static void reportBracket(double utcSeconds, double time1, double time2, double k)
    {
        CORE_ASSERT(utcSeconds >= time1);
        CORE_ASSERT(utcSeconds <= time2);
        CORE_ASSERT(k >= 0.0);
        CORE_ASSERT(k <= 1.0);
    }

    /// A request before `current` and not after `previous`: logs it, then stands a local file
    /// on its first two records again. False for a remote source, which cannot go back.
    template <TimeReference TR>
    [[gnu::noinline]] bool rollBack(double utcSeconds, double currentSeconds)
    {
        Core::Event::logEvent({Core::Event::INFORMATION_CATEGORY,
                               static_cast<std::uint32_t>(Utils::ErrorManagement::PackageIdentifier::GEODESY),
                               ROLLING_BACK_EVENT_CODE()},
                              std::string("Timings are not ordered -> rolling back into SBET: ")
                                  + std::to_string(utcSeconds) + " < " + std::to_string(currentSeconds));
        if (fileInfo.isRemote()) {
            return false;
        }
        initialize();
        CORE_ASSERT(next->time > current->time);
        if constexpr (TR == TimeReference::day) {
            // The day scale breaks at UTC midnight: the file must not start across one.
            CORE_ASSERT(next->time.toUtc< TimeReference::day >() > current->time.toUtc< TimeReference::day >());
        }
        CORE_ASSERT(utcSeconds > current->time.toUtc< TR >());
        return true;
    }

    /// One step of the forward search: records must not go back in time.
    [[gnu::noinline]] void moveForward()
    {
        CORE_ASSERT(next->time >= current->time);
        advance();
    }

    /// What a remote source does once the search has stopped; false when it has no answer.
    template <TimeReference TR>
    bool finishRemote(Maths::Situation situation, double utcSeconds, Maths::IntervalCounter& counter)
    {
        CORE_ASSERT(situation != Maths::Situation::lower);
        if (situation == Maths::Situation::upper) {
            // Counted again against what has arrived by now.
            counter[classify(ProviderTime::utcToGps(utcSeconds), reader->getTimeInterval(TR))]++;
        }
        return next && !reader->endOfFile();
    }

    /// Stands on the first two records (also the rewind). `previous` keeps what it held.
    void initialize()
    {
        CORE_ASSERT(reader);
        if (!fileInfo.isRemote() && reader->endOfFile()) {
            // Rewinding does not clear the end-of-file state of the reader's stream: a file
            // read to its end is opened afresh instead.
            reader = std::make_unique<Reader>(fileInfo, imuAlignmentStatus);
        }
        reader->returnToBegin();
        current = TimedPositionAttitude::fromSbet(reader->getNext(), transform);
        CORE_ASSERT(current);
        next = TimedPositionAttitude::fromSbet(reader->getNext(), transform);
        CORE_ASSERT(next);
    }

    /// Moves the bracket one record forward.
    void advance()
    {
        CORE_ASSERT(reader);
        CORE_ASSERT(!reader->endOfFile());
        CORE_ASSERT(current);
        CORE_ASSERT(next);
        previous = std::move(current);
        current = std::move(next);
        next = TimedPositionAttitude::fromSbet(reader->getNext(), transform);
    }

    Core::FileInfo fileInfo;
    std::unique_ptr<Reader> reader;
    std::unique_ptr<TimedPositionAttitude> previous;
    std::unique_ptr<TimedPositionAttitude> current;
    std::unique_ptr<TimedPositionAttitude> next;
    std::unique_ptr<CRS::Transform> transform;
    /// Kept to open the file again (see initialize).
    Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus;
};

} // namespace Kelvo::Geodesy
