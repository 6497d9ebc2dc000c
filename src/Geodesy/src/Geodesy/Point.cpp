// SPDX-License-Identifier: MIT
#include "Geodesy/Point.h"

#include "Core/Event.h"
#include "Geodesy/ErrorManagement/GeodesyErrors.h"
#include "Utils/CoreAssert.h"
#include "Utils/ErrorManagement/Error.h"
#include "Utils/ErrorManagement/ErrorIdentifierFactory.h"
#include "Utils/ErrorManagement/ReturnStatus.h"

#include <memory>
#include <utility>

namespace Kelvo::Geodesy {
namespace {

// Logs the out-of-range intensity as an error event of the geodesy package, so that hosts
// that watch events see it even when their assertion handler stays silent.
void logIntensityOutOfRange()
{
    using Utils::ErrorManagement::ErrorIdentifierFactory;
    using Utils::ErrorManagement::PackageIdentifier;
    std::shared_ptr<Utils::ErrorManagement::ErrorIdentifier> identifier =
        ErrorIdentifierFactory::create(PackageIdentifier::GEODESY, ErrorManagement::UNSPECIFIED_GEODESY_ERROR);
    const Utils::ErrorManagement::ReturnStatus status{Utils::ErrorManagement::Error(std::move(identifier))};
    const Core::Event::LoggingEventInfo info{Core::Event::ERROR_CATEGORY,
                                             static_cast<std::uint32_t>(PackageIdentifier::GEODESY),
                                             Point::INTENSITY_EVENT_CODE()};
    Core::Event::logEvent(info, status);
}

} // namespace

Point::Point(double x, double y, double z, double measuredValue, double intensity, unsigned char byteAttribute,
             std::optional<double> optionalValue, std::uint64_t wideIndex, std::uint32_t firstIndex, bool flag,
             std::optional<std::uint32_t> optionalIndex)
    : Maths::Point<double>(x, y, z)
    , measuredValue(measuredValue)
    , intensity(intensity)
    , byteAttribute(byteAttribute)
    , optionalValue(optionalValue)
    , wideIndex(wideIndex)
    , firstIndex(firstIndex)
    , flag(flag)
    , optionalIndex(optionalIndex)
{
    // Written so that a NaN intensity fails the check too.
    if (!(intensity >= 0.0 && intensity <= 1.0)) {
        logIntensityOutOfRange();
        CORE_ASSERT(intensity >= 0.0 && intensity <= 1.0);
    }
}

bool Point::operator==(const Point& other) const
{
    // std::optional's == gives exactly the rule wanted for optionalValue: both empty are
    // equal, one empty is unequal, two values compare with ==.
    return static_cast<const Maths::Point<double>&>(*this) == other && measuredValue == other.measuredValue
           && intensity == other.intensity && byteAttribute == other.byteAttribute
           && optionalValue == other.optionalValue && wideIndex == other.wideIndex && firstIndex == other.firstIndex;
}

} // namespace Kelvo::Geodesy
