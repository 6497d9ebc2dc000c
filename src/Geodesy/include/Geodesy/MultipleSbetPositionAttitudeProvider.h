// SPDX-License-Identifier: MIT
#pragma once

#include "CRS/Transform.h"
#include "Core/Event.h"
#include "Core/FileInfo.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/PositionAttitudeProvider.h"
#include "Geodesy/SbetPositionAttitudeProvider.h"
#include "Geodesy/TimedPositionAttitude.h"
#include "Geodesy/Trajectory/Reader.h"
#include "Maths/Interval.h"
#include "Maths/IntervalCounter.h"
#include "Utils/CoreAssert.h"
#include "Utils/ErrorManagement/PackageIdentifier.h"

#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace Kelvo::Geodesy {

/// Position and attitude from several trajectory files of one format (`Reader` =
/// Sbet::Reader or ApxRaw::Reader) covering consecutive or overlapping stretches of time:
/// one SbetPositionAttitudeProvider per file, keyed by the file's start [GPS s of week].
///
/// Each lookup first picks a file, then answers as that file's provider does (same times,
/// same counting, same empty answers). The file that answered last keeps answering while it
/// contains the request, even where a later file overlaps it. Otherwise the file with the
/// greatest start not after utcToGps(request) is taken, the request being compared as given:
/// for getPositionAttitude (UTC seconds since the Unix epoch) that is always the last file;
/// for getPositionAttitudeOfDay (UTC seconds of the day) the last file starting before it,
/// and the current file when every file starts after it. A time in a gap between two files
/// thus goes to the earlier file and is counted there as upper.
///
/// Two files with the same start: the event (1, 24, 17) "SBET file '<file> starts exactly at
/// the same time as another SBET file." is logged and the later file in set order replaces
/// the earlier one. An empty range of files is an assertion. Exceptions of opening a file
/// pass through the constructor.
template <typename Reader>
class MultipleSbetPositionAttitudeProvider : public PositionAttitudeProvider {
public:
    /// Code of the event that a second file with the same start logs.
    static constexpr std::uint32_t DUPLICATE_START_EVENT_CODE() { return 17; }

    /// Opens every file of [firstFile, lastFile), in set order. `transform` may be null;
    /// each file's provider keeps its own copy.
    MultipleSbetPositionAttitudeProvider(std::set<Core::FileInfo>::const_iterator firstFile,
                                         std::set<Core::FileInfo>::const_iterator lastFile,
                                         const CRS::Transform* transform,
                                         Trajectory::Reader::ImuAlignmentStatus imuAlignmentStatus)
    {
        CORE_ASSERT(firstFile != lastFile);
        for (auto file = firstFile; file != lastFile; ++file) {
            auto provider = std::make_unique<SbetPositionAttitudeProvider<Reader>>(*file, transform, imuAlignmentStatus);
            const Maths::Interval<double> interval = provider->getTimeInterval(TimeReference::week);
            if (readers.contains(interval)) {
                Core::Event::logEvent({Core::Event::INFORMATION_CATEGORY,
                                       static_cast<std::uint32_t>(Utils::ErrorManagement::PackageIdentifier::GEODESY),
                                       DUPLICATE_START_EVENT_CODE()},
                                      std::string("SBET file '") + file->toString()
                                          + " starts exactly at the same time as another SBET file.");
            }
            readers[interval] = std::move(provider);
        }
        current = readers.begin();
        if (current != std::end(readers)) {
            CORE_ASSERT(current->second);
        }
    }

    MultipleSbetPositionAttitudeProvider(const MultipleSbetPositionAttitudeProvider&) = delete;
    MultipleSbetPositionAttitudeProvider& operator=(const MultipleSbetPositionAttitudeProvider&) = delete;
    ~MultipleSbetPositionAttitudeProvider() override = default;

    std::unique_ptr<TimedPositionAttitude> getPositionAttitude(double seconds, Maths::IntervalCounter& counter) override
    {
        select<TimeReference::week>(seconds);
        if (!isUsable()) {
            return nullptr;
        }
        return current->second->getPositionAttitude(seconds, counter);
    }

    std::unique_ptr<TimedPositionAttitude> getPositionAttitudeOfDay(double seconds,
                                                                    Maths::IntervalCounter& counter) override
    {
        select<TimeReference::day>(seconds);
        if (!isUsable()) {
            return nullptr;
        }
        return current->second->getPositionAttitudeOfDay(seconds, counter);
    }

    /// The current record of the file that answered last.
    const TimedPositionAttitude* getCurrent() override
    {
        if (!isUsable()) {
            return nullptr;
        }
        return current->second->getCurrent();
    }

private:
    /// Orders the files by their start alone.
    struct StartsBefore {
        bool operator()(const Maths::Interval<double>& a, const Maths::Interval<double>& b) const
        {
            return a.data.first < b.data.first;
        }
    };
    using Providers =
        std::map<Maths::Interval<double>, std::unique_ptr<SbetPositionAttitudeProvider<Reader>>, StartsBefore>;

    /// Whether `current` is a file to ask. Asserts "current != std::end( readers )" and
    /// "current->second".
    bool isUsable() const
    {
        CORE_ASSERT(current != std::end( readers ));
        if (current == std::end(readers)) {
            return false;
        }
        CORE_ASSERT(current->second);
        return current->second != nullptr;
    }

    /// Points `current` at the file that answers `seconds` (see the class comment).
    template <TimeReference TR>
    void select(double seconds)
    {
        CORE_ASSERT(!readers.empty());
        if (!isUsable() || current->second->template contains<TR>(seconds)) {
            return;
        }
        // The starts are GPS seconds of the week; the request is compared as given.
        const double x = ProviderTime::utcToGps(seconds);
        const auto after = readers.upper_bound(Maths::Interval<double>(x, x));
        if (after != readers.begin()) {
            current = std::prev(after);
            CORE_ASSERT(current->second);
        }
    }

    Providers readers;
    typename Providers::iterator current = readers.end();
};

} // namespace Kelvo::Geodesy
