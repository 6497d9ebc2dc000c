// SPDX-License-Identifier: MIT
#pragma once

namespace Kelvo::Geodesy::Smrmsg {

/// One epoch of an SMRMSG file, the RMS errors that accompany an SBET trajectory, in file
/// order and units: time [GPS s of week], north/east/down position RMS [m], north/east/down
/// velocity RMS [m/s], roll/pitch/heading RMS [arc-minutes]. The values are not interpreted.
struct Record {
    double time;
    double northPositionRms;
    double eastPositionRms;
    double downPositionRms;
    double northVelocityRms;
    double eastVelocityRms;
    double downVelocityRms;
    double rollRms;
    double pitchRms;
    double headingRms;
};

} // namespace Kelvo::Geodesy::Smrmsg
