// SPDX-License-Identifier: MIT
#pragma once

namespace Kelvo::Maths {

/// An axis-aligned box: a minimum and a maximum along each of x, y and z.
struct PointCloudBoundary {
    struct Range {
        double min = 0.0;
        double max = 0.0;
        bool operator==(const Range&) const = default;
    };

    Range x;
    Range y;
    Range z;

    bool operator==(const PointCloudBoundary&) const = default;
};

} // namespace Kelvo::Maths
