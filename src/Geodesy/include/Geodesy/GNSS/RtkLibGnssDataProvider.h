// SPDX-License-Identifier: MIT
#pragma once

#include "Core/FileInfo.h"
#include "Geodesy/GNSS/GnssDataProvider.h"
#include "Geodesy/GeodesyExport.h"
#include "Maths/Interval.h"

#include <memory>

namespace Kelvo::Geodesy::GNSS {

class RtkLibPosReader;

/// GNSS solutions from one RTKLIB position file (".pos", GPS week and seconds of week,
/// latitude/longitude in degrees, velocities written), interpolated linearly at GPS seconds
/// of week. Times outside the file's used interval (first to last record moving at least
/// `velocityThreshold` m/s along any axis) get an empty pointer.
///
/// The provider slides a window of three records (previous, current, next) forward through
/// the file, so increasing times are answered in one pass. A time between previous and
/// current is answered without reading; an earlier one logs a warning ("This should never
/// happen -> Rolling back ...") and restarts from the top of the file. Everything else that
/// goes wrong is an assertion: the first two records not strictly increasing in time, a
/// request whose bracketing record is the file's last line ("!reader->endOfFile()"), a time
/// that is neither normal nor zero, and the reader's own assertions.
class KELVO_GEODESY_EXPORT RtkLibGnssDataProvider : public GnssDataProvider {
public:
    /// Opens and scans the file (see the reader) and stands on its first two records.
    RtkLibGnssDataProvider(const Core::FileInfo& fileInfo, const double& velocityThreshold);
    ~RtkLibGnssDataProvider() override;
    RtkLibGnssDataProvider(const RtkLibGnssDataProvider&) = delete;
    RtkLibGnssDataProvider& operator=(const RtkLibGnssDataProvider&) = delete;

    std::unique_ptr<GnssData> getGnssData(double seconds) override;
    /// Asserts "current".
    const GnssData* getCurrentGnssData() override;

    /// True when the reader has nothing left to read. Asserts "reader".
    bool endOfFile();

    /// The file's used time interval [GPS s of week]: from the first to the last record
    /// moving at the velocity threshold or faster. Asserts "reader" and, through the reader,
    /// that the interval is valid.
    Maths::Interval<double> getTimeInterval() const;

private:
    void restart();
    void moveForward();

    Core::FileInfo fileInfo;
    std::unique_ptr<RtkLibPosReader> reader;
    std::unique_ptr<GnssData> previous;
    std::unique_ptr<GnssData> current;
    std::unique_ptr<GnssData> next;
};

} // namespace Kelvo::Geodesy::GNSS
