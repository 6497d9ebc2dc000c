// SPDX-License-Identifier: MIT
#include "Projection/CrsDescription.h"

#include "Geodesy/Batch/ArgumentError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Kelvo::Projection {
namespace {

using Kind = CrsDescription::Kind;

TEST(CrsDescription, NamesKindsAndAxesInColumnOrder)
{
    const struct {
        const char* crs;
        const char* name;
        Kind kind;
        const char* identifier;
        std::vector<std::string> axes; // abbreviation and unit, in column order
    } cases[] = {
        {"EPSG:25832", "ETRS89 / UTM zone 32N", Kind::projected, "EPSG:25832", {"E metre", "N metre"}},
        {"EPSG:4326", "WGS 84", Kind::geographic2D, "EPSG:4326", {"Lon degree", "Lat degree"}},
        {"EPSG:4979", "WGS 84", Kind::geographic3D, "EPSG:4979", {"Lon degree", "Lat degree", "h metre"}},
        {"EPSG:4978", "WGS 84", Kind::geocentric, "EPSG:4978", {"X metre", "Y metre", "Z metre"}},
        {"EPSG:25832+5783", "ETRS89 / UTM zone 32N + DHHN92 height", Kind::compound, "",
         {"E metre", "N metre", "H metre"}},
        {"+proj=utm +zone=32 +datum=WGS84", "unknown", Kind::projected, "", {"E metre", "N metre"}},
        {"+proj=utm +zone=32 +ellps=GRS80 +units=us-ft", "unknown", Kind::projected, "",
         {"E US survey foot", "N US survey foot"}},
        // A bound CRS is described by the CRS it is bound to.
        {"+proj=longlat +ellps=GRS80 +towgs84=0,0,0", "unknown", Kind::geographic2D, "",
         {"lon degree", "lat degree"}},
        // Names are PROJ's, read without regard to case, spaces and punctuation.
        {"wgs84", "WGS 84", Kind::geographic2D, "EPSG:4326", {"Lon degree", "Lat degree"}},
    };
    for (const auto& c : cases) {
        const CrsDescription description = describeCrs(c.crs);
        EXPECT_EQ(description.name, c.name) << c.crs;
        EXPECT_EQ(description.kind, c.kind) << c.crs << ": " << toString(description.kind);
        EXPECT_EQ(description.identifier, c.identifier) << c.crs;
        std::vector<std::string> axes;
        for (const auto& axis : description.axes) {
            axes.push_back(axis.abbreviation + " " + axis.unit);
        }
        EXPECT_EQ(axes, c.axes) << c.crs;
    }
    const CrsDescription feet = describeCrs("+proj=utm +zone=32 +ellps=GRS80 +units=us-ft");
    EXPECT_DOUBLE_EQ(feet.axes.at(0).unitInSI, 1200.0 / 3937.0);
    EXPECT_EQ(feet.axes.at(1).direction, "north");
}

TEST(CrsDescription, ValidationNamesTheUsersArgument)
{
    EXPECT_NO_THROW(validateCrs("EPSG:32632", "--to"));
    try {
        validateCrs("EPSG:0", "--to");
        ADD_FAILURE() << "EPSG:0 accepted";
    } catch (const Geodesy::Batch::ArgumentError& error) {
        EXPECT_STREQ(error.what(), "--to 'EPSG:0': crs not found");
    }
    EXPECT_THROW(describeCrs("ETRS89 / UTM zone 99N"), Geodesy::Batch::ArgumentError);
}

} // namespace
} // namespace Kelvo::Projection
