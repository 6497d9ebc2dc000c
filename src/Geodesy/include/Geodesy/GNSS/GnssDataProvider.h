// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/GNSS/GnssData.h"
#include "Geodesy/GeodesyExport.h"

#include <memory>

namespace Kelvo::Geodesy::GNSS {

/// Answers what the GNSS solution was at a GPS time. Lookups may move the underlying
/// reader, so one provider serves one caller at a time.
class KELVO_GEODESY_EXPORT GnssDataProvider {
public:
    GnssDataProvider() = default;
    GnssDataProvider(const GnssDataProvider&) = default;
    GnssDataProvider& operator=(const GnssDataProvider&) = default;
    virtual ~GnssDataProvider();

    /// The solution at GPS seconds of week `seconds` [s], or an empty pointer when the
    /// provider has no answer for that time.
    virtual std::unique_ptr<GnssData> getGnssData(double seconds) = 0;

    /// The record the provider's window stands on (not owned by the caller).
    virtual const GnssData* getCurrentGnssData() = 0;
};

} // namespace Kelvo::Geodesy::GNSS
