// SPDX-License-Identifier: MIT
#pragma once

namespace Kelvo::Geodesy::GNSS {

/// A symmetric 3x3 covariance by its upper triangle, row by row. The default is 0.01 on the
/// diagonal and 0 elsewhere. Nothing checks symmetry or positivity.
struct CovarianceElements {
    double xx = 0.01;
    double xy = 0.0;
    double xz = 0.0;
    double yy = 0.01;
    double yz = 0.0;
    double zz = 0.01;

    bool operator==(const CovarianceElements&) const = default;
};

} // namespace Kelvo::Geodesy::GNSS
