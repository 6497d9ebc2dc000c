// SPDX-License-Identifier: MIT
// Everything of the Core library.
#pragma once

#include "Core/Event.h"
#include "Core/Exception.h"
#include "Core/FileInfo.h"
#include "Core/Logging.h"
#include "Core/Logging/LoggingCallbackPrivate.h"
