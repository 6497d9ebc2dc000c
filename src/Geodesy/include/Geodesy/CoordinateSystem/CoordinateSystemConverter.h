// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/CoordinateSystem/CoordinateSystem.h"
#include "Geodesy/CoordinateSystem/Ellipsoid.h"
#include "Geodesy/ECEF.h"
#include "Geodesy/GeodesyExport.h"
#include "Geodesy/LatLonHeight.h"
#include "Maths/Matrix3.h"
#include "Maths/PointCloudBoundary.h"
#include "Maths/PositionVector3.h"
#include "Maths/Radian.h"
#include "Utils/CoreAssert.h"

#include <concepts>
#include <memory>

namespace Kelvo::Geodesy::CoordinateSystem {

/// Anything with x, y, z accessors (PositionVector3, Maths::Point<double>, ...).
template <typename T>
concept Position3 = requires(T position, const T constPosition, double value) {
    { constPosition.getX() } -> std::convertible_to<double>;
    { constPosition.getY() } -> std::convertible_to<double>;
    { constPosition.getZ() } -> std::convertible_to<double>;
    position.setX(value);
    position.setY(value);
    position.setZ(value);
};

/// Converts positions and axis-aligned boxes between TRF (ECEF x, y, z [m]), LLH (latitude,
/// longitude [rad], height [m], carried as x, y, z) and NED about one fixed centre on WGS84.
/// NED here is the ECEF vector rotated into the centre's north-east-down axes, without
/// subtracting the centre's own ECEF position: a point converts to its rotated geocentric
/// vector, and NED values round-trip through TRF and LLH with the same rotation.
/// The centre is given at construction or taken from the first position converted; a NED
/// input cannot provide one. PROJECTION and UNKNOWN are never converted: such requests, and
/// a missing centre, are reported through CORE_ASSERT / CORE_NEVER_COME_HERE and leave the
/// position or box unchanged (convertLlh then returns a zero vector). Nothing throws.
class KELVO_GEODESY_EXPORT CoordinateSystemConverter {
public:
    /// Converts to `output`; no input system and no centre yet.
    explicit CoordinateSystemConverter(CoordinateSystem output);
    /// Converts to `output` about `nedCenter`; an empty pointer asserts "nedCenter != nullptr"
    /// and leaves a converter that must not be used.
    CoordinateSystemConverter(CoordinateSystem output, std::unique_ptr<LatLonHeight>&& nedCenter);
    /// Converts from `input` to `output` (input first); no centre yet.
    CoordinateSystemConverter(CoordinateSystem input, CoordinateSystem output);

    CoordinateSystemConverter(CoordinateSystemConverter&&) noexcept = default;
    CoordinateSystemConverter& operator=(CoordinateSystemConverter&&) noexcept = default;
    CoordinateSystemConverter(const CoordinateSystemConverter&) = delete;
    CoordinateSystemConverter& operator=(const CoordinateSystemConverter&) = delete;
    ~CoordinateSystemConverter() = default;

    CoordinateSystem getOutputCoordinateSystem() const { return outputCoordinateSystem; }
    void setOutputCoordinateSystem(CoordinateSystem output) { outputCoordinateSystem = output; }
    void setInputCoordinateSystem(CoordinateSystem input) { inputCoordinateSystem = input; }

    /// `position` in the output system (the input system is not consulted). For NED output
    /// without a centre, `position` becomes the centre. PROJECTION or UNKNOWN output reports
    /// "Unsupported data format" and returns (0, 0, 0).
    Maths::PositionVector3 convertLlh(LatLonHeight position);

    /// Converts `boundary` in place from the input to the output system. Between TRF and LLH
    /// or NED the result encloses the eight converted corners; between LLH and NED the two
    /// corners are converted as they are, not re-sorted. Any other pair, equal systems
    /// included, reports "Operation no supported..." and leaves the box unchanged.
    void convertBoundaries(Maths::PointCloudBoundary& boundary);

    /// Converts `position` in place from `from` to `to`. Without a centre, one is taken from
    /// this position (LLH or TRF input; NED input is reported). UNKNOWN and PROJECTION are
    /// asserted against; a pair that cannot be converted is reported and left unchanged.
    template <Position3 Position>
    void convert(Position& position, CoordinateSystem from, CoordinateSystem to);

private:
    void initNedCenter(std::unique_ptr<LatLonHeight>&& nedCenter);
    void convertBoundariesWithDeformation(Maths::PointCloudBoundary& boundary);

    static Maths::PositionVector3 llhToTrf(const Maths::PositionVector3& llh)
    {
        return llh2ecef(LatLonHeight(Maths::Radian(llh.x), Maths::Radian(llh.y), llh.z)).ecef2PositionVector3();
    }
    static Maths::PositionVector3 trfToLlh(const Maths::PositionVector3& trf)
    {
        const LatLonHeight llh = ecef2llh(ECEF(trf.x, trf.y, trf.z));
        return {llh.latitude, llh.longitude, llh.height};
    }

    CoordinateSystem outputCoordinateSystem;
    CoordinateSystem inputCoordinateSystem;
    std::unique_ptr<LatLonHeight> nedCenter;
    Maths::Matrix3 ecef2ned;
    Maths::Matrix3 ned2ecef;
};

template <Position3 Position>
void CoordinateSystemConverter::convert(Position& position, CoordinateSystem from, CoordinateSystem to)
{
    if (from == to) {
        return;
    }
    CORE_ASSERT(from != CoordinateSystem::UNKNOWN);
    CORE_ASSERT(to != CoordinateSystem::UNKNOWN);
    CORE_ASSERT(from != CoordinateSystem::PROJECTION);
    CORE_ASSERT(to != CoordinateSystem::PROJECTION);

    const Maths::PositionVector3 input(position.getX(), position.getY(), position.getZ());
    if (nedCenter == nullptr) {
        switch (from) {
        case CoordinateSystem::LLH:
            initNedCenter(std::make_unique<LatLonHeight>(Maths::Radian(input.x), Maths::Radian(input.y), input.z));
            break;
        case CoordinateSystem::TRF:
            initNedCenter(std::make_unique<LatLonHeight>(ecef2llh(ECEF(input.x, input.y, input.z))));
            break;
        case CoordinateSystem::NED:
            CORE_NEVER_COME_HERE("cannot guess NED center. Center has to be provided in constructor");
            break;
        default:
            CORE_NEVER_COME_HERE("Added a new coordinate system, this code might need to be updated #1");
            break;
        }
    }

    Maths::PositionVector3 output;
    if (from == CoordinateSystem::TRF && to == CoordinateSystem::NED) {
        output = ecef2ned * input;
    } else if (from == CoordinateSystem::TRF && to == CoordinateSystem::LLH) {
        output = trfToLlh(input);
    } else if (from == CoordinateSystem::LLH && to == CoordinateSystem::TRF) {
        output = llhToTrf(input);
    } else if (from == CoordinateSystem::NED && to == CoordinateSystem::TRF) {
        output = ned2ecef * input;
    } else if (from == CoordinateSystem::NED && to == CoordinateSystem::LLH) {
        output = trfToLlh(ned2ecef * input);
    } else if (from == CoordinateSystem::LLH && to == CoordinateSystem::NED) {
        output = ecef2ned * llhToTrf(input);
    } else {
        CORE_NEVER_COME_HERE("Added a new coordinate system, this code might need to be updated #2");
        return;
    }
    position.setX(output.x);
    position.setY(output.y);
    position.setZ(output.z);
}

} // namespace Kelvo::Geodesy::CoordinateSystem
