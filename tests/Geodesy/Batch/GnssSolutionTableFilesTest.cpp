// SPDX-License-Identifier: MIT
// The GNSS solution table over every RTKLIB position file of tests/refdata: forms, line
// counts and first/last values as the files write them, and the files of one run written
// in different forms against each other.
#include "Geodesy/Batch/FileFormatError.h"
#include "Geodesy/Batch/GnssSolutionTable.h"
#include "Geodesy/GNSS/RtkLibPosLine.h"
#include "GnssTestFiles.h"
#include "support/TemporaryDirectory.h"

#include <GeographicLib/LocalCartesian.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

namespace Kelvo::Geodesy::Batch {
namespace {

using namespace Testing;
using Form = GnssPositionForm;
using Velocity = GnssVelocityForm;
using System = GnssTimeSystem;
using Clock = GnssTimeForm;

constexpr double NONE = std::numeric_limits<double>::quiet_NaN();

double radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

/// One solution as its line writes it: the three position numbers (degrees, ECEF or
/// e/n/u), Q, ns, the first standard deviation column, ratio, the first velocity column.
struct Line {
    std::uint32_t week;
    double secondsOfWeek;
    std::array<double, 3> position;
    int quality;
    int satellites;
    double firstDeviation;
    double ratio;
    double firstVelocity;
};

struct FileFacts {
    const char* path;
    System system;
    Clock clock;
    Form form;
    Velocity velocity;
    const char* program;
    std::size_t rows;
    Line first;
    Line last;
};

// First and last lines as the files write them (PROVENANCE.md quotes them), calendar times
// turned into GPS week and seconds by hand. Files of one run share their lines; files
// without velocities are checked for NaN whatever the line's velocity.
const Line spirentFirst{2244, 36000.0, {48.780735774, 9.173352864, 320.0009}, 1, 6, 0.0070, 999.9, 5.24067};
const Line spirentLast{2244, 36600.0, {48.780734235, 9.173352861, 320.0009}, 1, 5, 0.0079, 999.9, 5.24082};
const Line multignssFirst{2320, 116400.0, {35.134699014, 136.977575478, 104.8606}, 1, 42, 0.0024, 9.6, 0.00141};
const Line multignssLast{2320, 116700.0, {35.134699006, 136.977575492, 104.8625}, 1, 42, 0.0024, 9.9, 0.01603};
const Line crescentFirst{1481, 108094.0, {35.872928562, 138.389821114, 995.2348}, 5, 8, 3.4042, 0.0, 0.03971};
const Line crescentLast{1481, 108405.0, {35.865530058, 138.387180576, 936.6539}, 5, 8, 3.4238, 0.0, 0.03022};
const Line xyzFirst{1481, 108094.0, {-3869304.5547, 3436558.7857, 3717358.9005}, 5, 8, 5.6370, 0.0, 0.01029};
const Line xyzLast{1481, 108405.0, {-3869470.3576, 3437025.0575, 3716659.2427}, 5, 8, 5.6818, 0.0, -4.85405};
const Line gsiSppFirst{1316, 518400.0, {35.160874723, 139.613828338, 70.5181}, 5, 7, 2.9983, 0.0, 0.0};
const Line gsiSppLast{1316, 521820.0, {35.160922801, 139.613825320, 84.1724}, 5, 5, 27.1753, 0.0, 0.0};
const Line gsiRtkFirst{1316, 518400.0, {35.160865956, 139.613842998, 68.3784}, 1, 7, 0.0058, 24.9, 0.0};
const Line gsiRtkLast{1316, 521820.0, {35.160866219, 139.613842930, 68.4647}, 1, 5, 0.0404, 350.0, 0.0};
const Line instinctFirst{2244, 36000.0, {29.999994371, 94.999992812, -9.3615}, 5, 8, 2.5813, 0.0, 0.01216};
const Line instinctLast{2244, 50400.0, {30.000005283, 94.999995363, -10.8537}, 5, 7, 2.4447, 0.0, -0.00941};
// The d-m-s file writes 29 59 59.97974 94 59 59.97412 and 30 00 00.01902 94 59 59.98331.
const Line dmsFirst{2244, 36000.0, {29.0 + 59.0 / 60.0 + 59.97974 / 3600.0, 94.0 + 59.0 / 60.0 + 59.97412 / 3600.0,
                                    -9.3615}, 5, 8, 2.5813, 0.0, 0.01216};
const Line dmsLast{2244, 50400.0, {30.0 + 0.01902 / 3600.0, 94.0 + 59.0 / 60.0 + 59.98331 / 3600.0, -10.8537}, 5, 7,
                   2.4447, 0.0, -0.00941};

const std::vector<FileFacts> refdataFiles{
    {"rtk_kinematic_dyn_vel_gpsgal_spirent.pos", System::gpst, Clock::weekSeconds, Form::geodeticDegrees,
     Velocity::northEastUp, "RTKLIB ver.2.4.3", 601, spirentFirst, spirentLast},
    {"rtk_kinematic_dyn_vel_multignss.pos", System::gpst, Clock::weekSeconds, Form::geodeticDegrees,
     Velocity::northEastUp, "RTKLIB ver.2.4.3", 301, multignssFirst, multignssLast},
    {"spp_vel_crescent.pos", System::gpst, Clock::weekSeconds, Form::geodeticDegrees, Velocity::northEastUp,
     "RTKLIB ver.2.4.3", 312, crescentFirst, crescentLast},
    {"spp_novel_crescent.pos", System::gpst, Clock::weekSeconds, Form::geodeticDegrees, Velocity::none,
     "RTKLIB ver.2.4.3", 312, crescentFirst, crescentLast},
    {"spp_vel_hms_crescent.pos", System::gpst, Clock::calendar, Form::geodeticDegrees, Velocity::northEastUp,
     "RTKLIB ver.2.4.3", 312, crescentFirst, crescentLast},
    {"spp_vel_xyz_crescent.pos", System::gpst, Clock::weekSeconds, Form::ecef, Velocity::ecef, "RTKLIB ver.2.4.3",
     312, xyzFirst, xyzLast},
    {"spp_vel_gsi0759.pos", System::gpst, Clock::weekSeconds, Form::geodeticDegrees, Velocity::northEastUp,
     "RTKLIB ver.2.4.3", 115, gsiSppFirst, gsiSppLast},
    {"rtk_kinematic_vel.pos", System::gpst, Clock::weekSeconds, Form::geodeticDegrees, Velocity::northEastUp,
     "RTKLIB ver.2.4.3", 115, gsiRtkFirst, gsiRtkLast},
    {"rtk_kinematic_novel.pos", System::gpst, Clock::weekSeconds, Form::geodeticDegrees, Velocity::none,
     "RTKLIB ver.2.4.3", 115, gsiRtkFirst, gsiRtkLast},
    {"rtk_kinematic_vel_hms.pos", System::gpst, Clock::calendar, Form::geodeticDegrees, Velocity::northEastUp,
     "RTKLIB ver.2.4.3", 115, gsiRtkFirst, gsiRtkLast},
    {"public/matrtklib_kinematic_rover_rtk.pos", System::gpst, Clock::weekSeconds, Form::geodeticDegrees,
     Velocity::none, "RTKPOST ver.2.4.3 b34", 5395,
     {2270, 194670.0, {35.165360868, 136.881409540, 41.4082}, 1, 16, 0.0049, 6.4, NONE},
     {2270, 195900.0, {35.165369854, 136.881267238, 41.4675}, 1, 18, 0.0043, 8.0, NONE}},
    {"public/matrtklib_static_rover_rtk.pos", System::gpst, Clock::calendar, Form::geodeticDegrees,
     Velocity::northEastUp, "RTKPOST ver.2.4.3 b34", 301,
     {2320, 116400.0, {35.134699011, 136.977575483, 104.8619}, 1, 42, 0.0024, 12.0, 0.00141},
     {2320, 116700.0, {35.134699006, 136.977575492, 104.8618}, 1, 42, 0.0024, 10.1, -0.00356}},
    {"public/rtklibexplorer_demo1_out.pos", System::gpst, Clock::calendar, Form::enuBaseline, Velocity::none,
     "RTKLIB ver.2.4.3", 4230, {1875, 149097.0, {-0.6970, 0.1185, -2.5211}, 2, 14, 1.3662, 0.0, NONE},
     {1875, 153326.0, {0.2132, -0.2887, -0.0234}, 1, 13, 0.0046, 999.9, NONE}},
    {"public/instinct/lla_gpst_000_dd.pos", System::gpst, Clock::weekSeconds, Form::geodeticDegrees, Velocity::none,
     "", 2, instinctFirst, instinctLast},
    {"public/instinct/lla_gpst2_111_dd.pos", System::gpst, Clock::calendar, Form::geodeticDegrees,
     Velocity::northEastUp, "RTKPOST-QT ver.demo5 b34g", 2, instinctFirst, instinctLast},
    {"public/instinct/lla_utc_111_dd.pos", System::utc, Clock::calendar, Form::geodeticDegrees,
     Velocity::northEastUp, "RTKPOST-QT ver.demo5 b34g", 2, instinctFirst, instinctLast},
    {"public/instinct/lla_jst_111_dd.pos", System::jst, Clock::calendar, Form::geodeticDegrees,
     Velocity::northEastUp, "RTKPOST-QT ver.demo5 b34g", 2, instinctFirst, instinctLast},
    {"public/instinct/lla_gpst2_111_ds.pos", System::gpst, Clock::calendar, Form::geodeticDms, Velocity::northEastUp,
     "RTKPOST-QT ver.demo5 b34g", 2, dmsFirst, dmsLast},
    {"public/instinct/ecef_gpst2_111_dd.pos", System::gpst, Clock::calendar, Form::ecef, Velocity::ecef,
     "RTKPOST-QT ver.demo5 b34g", 2,
     {2244, 36000.0, {-481817.9432, 5507212.2485, 3170368.5142}, 5, 8, 2.2007, 0.0, -0.00394},
     {2244, 50400.0, {-481818.0230, 5507210.3373, 3170368.8157}, 5, 7, 2.0367, 0.0, -0.00273}},
    {"public/instinct/spirent_rover_dynamic_rtk_forward_continuous.pos", System::gpst, Clock::calendar,
     Form::geodeticDegrees, Velocity::northEastUp, "RTKPOST demo5 b34i", 601,
     {2244, 36000.0, {48.780735781, 9.173352866, 319.9977}, 2, 7, 1.4664, 0.0, 5.23939},
     {2244, 36600.0, {48.780734233, 9.173352862, 320.0009}, 1, 8, 0.0052, 999.9, 5.23818}},
};

std::filesystem::path rtklib(const std::string& name) { return refData("rtklib/" + name); }

/// The row as its line writes it, in the same terms as `Line`.
Line lineOf(const GnssSolutionTable& table, std::size_t row)
{
    const auto value = [&](GnssColumn column) { return table.has(column) ? table.column(column)[row] : NONE; };
    Line line{table.week(row), table.secondsOfWeek(row), {}, table.quality()[row], table.satellites()[row],
              0.0, value(GnssColumn::ratio), 0.0};
    switch (table.positionForm()) {
    case Form::ecef:
        line.position = {value(GnssColumn::ecefX), value(GnssColumn::ecefY), value(GnssColumn::ecefZ)};
        line.firstDeviation = value(GnssColumn::sdx);
        break;
    case Form::enuBaseline:
        line.position = {value(GnssColumn::east), value(GnssColumn::north), value(GnssColumn::up)};
        line.firstDeviation = value(GnssColumn::sde); // the file writes sde first
        break;
    default:
        line.position = {value(GnssColumn::latitude) * 180.0 / std::numbers::pi,
                         value(GnssColumn::longitude) * 180.0 / std::numbers::pi, value(GnssColumn::height)};
        line.firstDeviation = value(GnssColumn::sdn);
    }
    const bool ecefVelocity = table.velocityForm() == Velocity::ecef;
    line.firstVelocity = value(ecefVelocity ? GnssColumn::velocityX : GnssColumn::velocityNorth);
    return line;
}

void expectLine(const Line& actual, const Line& expected, bool withVelocity)
{
    EXPECT_EQ(actual.week, expected.week);
    EXPECT_NEAR(actual.secondsOfWeek, expected.secondsOfWeek, 1e-6);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(actual.position[i], expected.position[i], 1e-9 * std::max(1.0, std::fabs(expected.position[i])));
    }
    EXPECT_EQ(actual.quality, expected.quality);
    EXPECT_EQ(actual.satellites, expected.satellites);
    EXPECT_DOUBLE_EQ(actual.firstDeviation, expected.firstDeviation);
    EXPECT_DOUBLE_EQ(actual.ratio, expected.ratio);
    if (withVelocity) {
        EXPECT_DOUBLE_EQ(actual.firstVelocity, expected.firstVelocity);
    } else {
        EXPECT_TRUE(std::isnan(actual.firstVelocity));
    }
}

TEST(GnssSolutionTableFiles, ReadsEveryFormOfEveryReferenceFile)
{
    for (const FileFacts& facts : refdataFiles) {
        SCOPED_TRACE(facts.path);
        const auto table = GnssSolutionTable::load(rtklib(facts.path));
        ASSERT_EQ(table.files().size(), 1U);
        const GnssFileDescription& file = table.files().front();
        EXPECT_EQ(file.timeSystem, facts.system);
        EXPECT_EQ(file.timeForm, facts.clock);
        EXPECT_EQ(file.positionForm, facts.form);
        EXPECT_EQ(file.velocityForm, facts.velocity);
        EXPECT_EQ(file.program, facts.program);
        EXPECT_EQ(file.columnNames.size(), facts.velocity == Velocity::none ? 14U : 23U);
        EXPECT_EQ(table.size(), facts.rows);
        EXPECT_EQ(file.rowCount, facts.rows);
        expectLine(lineOf(table, 0), facts.first, facts.velocity != Velocity::none);
        expectLine(lineOf(table, table.size() - 1), facts.last, facts.velocity != Velocity::none);

        // Geodetic columns for every form here (the ENU file has a ref pos); the velocity
        // columns exactly when the file has velocities.
        EXPECT_TRUE(table.has(GnssColumn::latitude));
        EXPECT_EQ(table.has(GnssColumn::velocityDown), facts.velocity != Velocity::none);
        EXPECT_EQ(table.has(GnssColumn::velocityX), facts.velocity == Velocity::ecef);
        EXPECT_EQ(table.has(GnssColumn::ecefZ), facts.form == Form::ecef);
        EXPECT_EQ(table.has(GnssColumn::up), facts.form == Form::enuBaseline);
        EXPECT_EQ(table.has(GnssColumn::sdun), facts.form != Form::ecef);
        for (std::size_t c = 0; c < GNSS_COLUMN_COUNT(); ++c) {
            const auto values = table.column(static_cast<GnssColumn>(c));
            EXPECT_TRUE(values.empty() || values.size() == table.size()) << columnName(static_cast<GnssColumn>(c));
        }
    }
}

TEST(GnssSolutionTableFiles, MalformedReferenceFilesAreRefusedNamingTheLine)
{
    const auto corrupt = rtklib("public/instinct/corrupt_inside_data.pos");
    const auto headless = rtklib("public/instinct/corrupt_header_missing.pos");
    const std::vector<std::pair<std::filesystem::path, std::string>> cases{
        {corrupt, corrupt.string() + ": line 16: field 3 (latitude(deg)) 'corrupt' is not a number"},
        {headless, headless.string()
                       + ": line 1: data line before the column-name header line: its time system and position "
                         "form are unknown"},
    };
    for (const auto& [path, message] : cases) {
        EXPECT_EQ(errorText<FileFormatError>([&] { GnssSolutionTable::load(path); }), message);
    }
}

TEST(GnssSolutionTableFiles, OneRunInDifferentFormsGivesTheSameSolutions)
{
    // Calendar and week/seconds lines of one run: the same times to the bit, the same values.
    const std::vector<std::pair<const char*, const char*>> sameRun{
        {"rtk_kinematic_vel_hms.pos", "rtk_kinematic_vel.pos"},
        {"spp_vel_hms_crescent.pos", "spp_vel_crescent.pos"},
        {"public/instinct/lla_utc_111_dd.pos", "public/instinct/lla_gpst2_111_dd.pos"},
        {"public/instinct/lla_jst_111_dd.pos", "public/instinct/lla_utc_111_dd.pos"},
        {"rtk_kinematic_novel.pos", "rtk_kinematic_vel.pos"},
    };
    for (const auto& [name, reference] : sameRun) {
        SCOPED_TRACE(name);
        const auto table = GnssSolutionTable::load(rtklib(name));
        const auto expected = GnssSolutionTable::load(rtklib(reference));
        ASSERT_EQ(table.size(), expected.size());
        EXPECT_TRUE(std::ranges::equal(table.gpsTime(), expected.gpsTime()));
        EXPECT_TRUE(std::ranges::equal(table.quality(), expected.quality()));
        EXPECT_TRUE(std::ranges::equal(table.satellites(), expected.satellites()));
        for (std::size_t c = 0; c < GNSS_COLUMN_COUNT(); ++c) {
            const auto column = static_cast<GnssColumn>(c);
            if (table.has(column)) {
                EXPECT_TRUE(std::ranges::equal(table.column(column), expected.column(column))) << columnName(column);
            }
        }
    }

    // The Spirent run of INSTINCT has the very epochs of ours.
    EXPECT_TRUE(std::ranges::equal(
        GnssSolutionTable::load(rtklib("public/instinct/spirent_rover_dynamic_rtk_forward_continuous.pos")).gpsTime(),
        GnssSolutionTable::load(rtklib("rtk_kinematic_dyn_vel_gpsgal_spirent.pos")).gpsTime()));
}

TEST(GnssSolutionTableFiles, EcefFilesAgreeWithTheGeodeticFilesOfTheirRun)
{
    const std::vector<std::pair<const char*, const char*>> runs{
        {"spp_vel_xyz_crescent.pos", "spp_vel_crescent.pos"},
        {"public/instinct/ecef_gpst2_111_dd.pos", "public/instinct/lla_gpst2_111_dd.pos"},
    };
    constexpr double earthRadius = 6.4e6; // [m], to turn radians into metres
    for (const auto& [name, reference] : runs) {
        SCOPED_TRACE(name);
        const auto ecef = GnssSolutionTable::load(rtklib(name));
        const auto geodetic = GnssSolutionTable::load(rtklib(reference));
        ASSERT_EQ(ecef.size(), geodetic.size());
        for (std::size_t row = 0; row < ecef.size(); ++row) {
            // Both are written to a tenth of a millimetre (1e-9 deg is 0.1 mm).
            EXPECT_NEAR(ecef.latitude()[row], geodetic.latitude()[row], 1e-3 / earthRadius);
            EXPECT_NEAR(ecef.longitude()[row], geodetic.longitude()[row], 1e-3 / earthRadius);
            EXPECT_NEAR(ecef.height()[row], geodetic.height()[row], 1e-3);
            // ECEF velocities rotated to north/east/down; both written to 1e-5 m/s.
            for (const auto column : {GnssColumn::velocityNorth, GnssColumn::velocityEast, GnssColumn::velocityDown}) {
                EXPECT_NEAR(ecef.column(column)[row], geodetic.column(column)[row], 3e-5) << columnName(column);
            }
        }
    }
}

TEST(GnssSolutionTableFiles, EnuBaselinesAreGeodeticThroughTheReferencePosition)
{
    // ref pos 40.086179918-105.206044414 1575.6355: latitude and negative longitude touch.
    const auto table = GnssSolutionTable::load(rtklib("public/rtklibexplorer_demo1_out.pos"));
    const auto& reference = table.files().front().referencePosition;
    ASSERT_TRUE(reference);
    EXPECT_NEAR(reference->latitude, radians(40.086179918), 1e-15);
    EXPECT_NEAR(reference->longitude, radians(-105.206044414), 1e-15);
    EXPECT_DOUBLE_EQ(reference->height, 1575.6355);

    const GeographicLib::LocalCartesian frame(40.086179918, -105.206044414, 1575.6355);
    for (std::size_t row = 0; row < table.size(); row += 97) {
        double latitude = 0.0;
        double longitude = 0.0;
        double height = 0.0;
        frame.Reverse(table.column(GnssColumn::east)[row], table.column(GnssColumn::north)[row],
                      table.column(GnssColumn::up)[row], latitude, longitude, height);
        EXPECT_NEAR(table.latitude()[row], radians(latitude), 1e-12);
        EXPECT_NEAR(table.longitude()[row], radians(longitude), 1e-12);
        EXPECT_NEAR(table.height()[row], height, 1e-6);
    }
    // sde sdn sdu sden sdnu sdue = 1.3662 1.5742 3.4640 -0.5676 -0.4186 -0.8436 on the first line.
    const auto cov = table.positionCovariance(0);
    EXPECT_DOUBLE_EQ(cov.xx, 1.5742 * 1.5742);
    EXPECT_DOUBLE_EQ(cov.yy, 1.3662 * 1.3662);
    EXPECT_DOUBLE_EQ(cov.zz, 3.4640 * 3.4640);
    EXPECT_DOUBLE_EQ(cov.xy, -0.5676 * 0.5676);
    EXPECT_DOUBLE_EQ(cov.yz, -0.8436 * 0.8436);
    EXPECT_DOUBLE_EQ(cov.xz, -0.4186 * 0.4186);
}

TEST(GnssSolutionTableFiles, AgreesWithTheLineParserOnEveryLineItAccepts)
{
    // The library's line parser takes these files; it negates the height and stores the covariance
    // roots raw, the table keeps the height and gives both roots and covariances.
    for (const char* name : {"rtk_kinematic_dyn_vel_gpsgal_spirent.pos", "rtk_kinematic_dyn_vel_multignss.pos",
                             "spp_vel_crescent.pos", "spp_vel_gsi0759.pos", "rtk_kinematic_vel.pos"}) {
        SCOPED_TRACE(name);
        const auto table = GnssSolutionTable::load(rtklib(name));
        std::ifstream file(rtklib(name), std::ios::binary);
        std::size_t row = 0;
        for (std::string line; std::getline(file, line);) {
            const auto record = GNSS::parseRtkLibPosLine(line);
            if (!record) {
                continue;
            }
            ASSERT_LT(row, table.size());
            EXPECT_EQ(table.week(row), record->gpsTime.weekNumber);
            // GPS seconds since 1980 resolve 2^-22 s: "519659.999" comes back 7e-8 s off.
            EXPECT_NEAR(table.secondsOfWeek(row), record->gpsTime.secondsInWeek, 1e-7);
            EXPECT_EQ(table.latitude()[row], record->position.latitude);
            EXPECT_EQ(table.longitude()[row], record->position.longitude);
            EXPECT_EQ(table.height()[row], -record->position.height);
            EXPECT_EQ(table.column(GnssColumn::velocityNorth)[row], record->velocity.x);
            EXPECT_EQ(table.column(GnssColumn::velocityEast)[row], record->velocity.y);
            EXPECT_EQ(table.column(GnssColumn::velocityDown)[row], record->velocity.z);
            EXPECT_EQ(table.column(GnssColumn::sdne)[row], record->positionCovariance.xy);
            EXPECT_EQ(table.column(GnssColumn::sdeu)[row], record->positionCovariance.yz);
            EXPECT_EQ(table.column(GnssColumn::sdun)[row], record->positionCovariance.xz);
            EXPECT_EQ(table.column(GnssColumn::sdvne)[row], record->velocityCovariance.xy);
            EXPECT_EQ(table.column(GnssColumn::sdveu)[row], record->velocityCovariance.yz);
            EXPECT_EQ(table.column(GnssColumn::sdvun)[row], record->velocityCovariance.xz);
            ++row;
        }
        EXPECT_EQ(row, table.size());
    }
}

} // namespace
} // namespace Kelvo::Geodesy::Batch
