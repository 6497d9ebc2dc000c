// SPDX-License-Identifier: MIT
#pragma once

#include "Geodesy/Batch/ThreadCount.h"
#include "Projection/ProjectionExport.h"

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace Kelvo::Projection {

/// Transforms columns of coordinates from a source to a target coordinate reference system
/// through PROJ. Either CRS is any text PROJ accepts: an authority code ("EPSG:25832"), a PROJ
/// string ("+proj=utm +zone=32 +datum=WGS84"), WKT or PROJJSON, or the name of a CRS in PROJ's
/// database. The source may instead be one of the library's own frames: geodetic columns
/// (latitude [rad], longitude [rad], ellipsoidal height [m] on WGS84, as `LatLonHeight` holds
/// them) or ECEF [m] on WGS84.
///
/// Columns of a CRS text are in PROJ's visualisation order: longitude or easting first,
/// latitude or northing second, then the height; geographic CRSs in degrees, the others in
/// the units of their axes (see `describeCrs`). A CRS with two axes passes the third column
/// through. PROJ picks the transformation (datum shifts included) as its `cs2cs` does, with
/// the grids installed on the machine and without network access.
///
/// A batch runs on `ThreadCount` threads, one `proj_trans_generic` call per thread's range,
/// each on its own PROJ context; results are the same, bit for bit, for every thread count.
/// The object may be shared between threads: calls take PROJ contexts from a pool that grows
/// to the number of threads used at once and is kept for later calls.
class KELVO_PROJECTION_EXPORT CrsTransformer {
public:
    /// The library's own source frames.
    enum class Frame {
        geodetic, ///< latitude [rad], longitude [rad], ellipsoidal height [m]: WGS84 (EPSG:4979)
        ecef,     ///< X, Y, Z [m]: WGS84 Earth-centred Earth-fixed (EPSG:4978)
    };

    /// From a source CRS to a target CRS. Throws `Geodesy::Batch::ArgumentError` naming the
    /// argument and PROJ's reason when either text is not a usable horizontal, geocentric or
    /// compound CRS ("target CRS 'EPSG:999999': crs not found"), or when PROJ finds no
    /// transformation between them.
    CrsTransformer(const std::string& sourceCrs, const std::string& targetCrs);
    /// From one of the library's frames to a target CRS; errors as above.
    CrsTransformer(Frame source, const std::string& targetCrs);

    CrsTransformer(CrsTransformer&&) noexcept;
    CrsTransformer& operator=(CrsTransformer&&) noexcept;
    ~CrsTransformer();

    /// The transformer of the way back: target columns in, source columns out (for a
    /// `Frame::geodetic` source: latitude, longitude [rad] and height again).
    CrsTransformer inverse() const;

    /// The names of the three input and output columns, for messages and headers:
    /// "latitude", "longitude", "height" for the geodetic frame, "x", "y", "z" otherwise.
    const std::array<std::string, 3>& inputNames() const;
    const std::array<std::string, 3>& outputNames() const;

    /// Transforms `first`, `second`, `third` (the source's columns in its order) into `x`,
    /// `y`, `z` (the target's). All six columns have one length, else
    /// `Geodesy::Batch::ArgumentError` names the column that differs. The outputs may be the
    /// inputs themselves, and must not overlap them otherwise. Points PROJ cannot transform
    /// (outside the projection's domain, NaN input) get NaN where PROJ gives no finite
    /// value. Returns the number of points with a NaN in any of the three outputs.
    std::size_t transform(std::span<const double> first, std::span<const double> second,
                          std::span<const double> third, std::span<double> x, std::span<double> y,
                          std::span<double> z,
                          Geodesy::Batch::ThreadCount threads = Geodesy::Batch::ThreadCount()) const;

    /// The same in place: the source's columns are overwritten by the target's x, y, z.
    std::size_t transformInPlace(std::span<double> first, std::span<double> second, std::span<double> third,
                                 Geodesy::Batch::ThreadCount threads = Geodesy::Batch::ThreadCount()) const;

private:
    struct Impl;
    explicit CrsTransformer(std::unique_ptr<Impl> impl);

    std::unique_ptr<Impl> impl;
};

} // namespace Kelvo::Projection
