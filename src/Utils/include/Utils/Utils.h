// SPDX-License-Identifier: MIT
// Everything of the Utils library.
#pragma once

#include "Utils/CoreAssert.h"
#include "Utils/ErrorManagement/Error.h"
#include "Utils/ErrorManagement/ErrorIdentifier.h"
#include "Utils/ErrorManagement/ErrorIdentifierFactory.h"
#include "Utils/ErrorManagement/PackageIdentifier.h"
#include "Utils/ErrorManagement/ReturnStatus.h"
#include "Utils/FileHelper.h"
#include "Utils/SafeCast.h"
