// SPDX-License-Identifier: MIT
// Everything of the CRS library.
#pragma once

#include "CRS/ConvertStep.h"
#include "CRS/Transform.h"
