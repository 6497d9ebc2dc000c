// SPDX-License-Identifier: MIT
// Everything of the Maths library.
#pragma once

#include "Maths/Degree.h"
#include "Maths/EulerAngles.h"
#include "Maths/Interval.h"
#include "Maths/IntervalCounter.h"
#include "Maths/Matrix3.h"
#include "Maths/Point.h"
#include "Maths/PointCloudBoundary.h"
#include "Maths/PositionVector3.h"
#include "Maths/Radian.h"
#include "Maths/Situation.h"
