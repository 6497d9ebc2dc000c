// SPDX-License-Identifier: MIT
// Everything of the Projection library.
#pragma once

#include "Projection/CrsDescription.h"
#include "Projection/CrsTransformer.h"
