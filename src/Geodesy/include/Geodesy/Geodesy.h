// SPDX-License-Identifier: MIT
// Everything of the Geodesy library.
#pragma once

#include "Geodesy/AffineTransformationParameters.h"
#include "Geodesy/CoordinateSystem/CoordinateSystem.h"
#include "Geodesy/CoordinateSystem/CoordinateSystemConverter.h"
#include "Geodesy/CoordinateSystem/Ellipsoid.h"
#include "Geodesy/CoordinateSystem/OutputCoordinateSystemNotSupportedException.h"
#include "Geodesy/ECEF.h"
#include "Geodesy/ErrorManagement/GeodesyErrors.h"
#include "Geodesy/ErrorManagement/PackageIdEnumErrorIdentifier.h"
#include "Geodesy/FileDoNotExistsException.h"
#include "Geodesy/FileIsEmptyException.h"
#include "Geodesy/GNSS/CovarianceElements.h"
#include "Geodesy/GNSS/GnssData.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/LatLonHeight.h"
