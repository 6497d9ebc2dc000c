// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Numbers.h"
#include "OutputFile.h"
#include "PosFile.h"
#include "Progress.h"
#include "Simulator.h"
#include "TimeText.h"

#include "Geodesy/ApxRaw/Writer.h"
#include "Geodesy/CoordinateSystem/Ellipsoid.h"
#include "Geodesy/GPSTime.h"
#include "Geodesy/Sbet/Writer.h"
#include "Geodesy/Smrmsg/Writer.h"

#include <cmath>
#include <numbers>

namespace Kelvo::Tool {
namespace {

using std::numbers::pi;

constexpr double MAX_DURATION = 7 * 86400.0; // [s]
constexpr double MAX_RATE = 1000.0;          // [Hz]
constexpr double MAX_RECORDS = 5.0e7;
/// How long the raw APX stream takes to align at the start of the survey [s], at most.
constexpr double ALIGNMENT_TIME = 4.0;

/// The survey site: a street in Munich (UTM zone 32N), and the RTK base station 1 km away.
const Geodesy::LatLonHeight SITE(Maths::Radian(Maths::Degree(48.137154)), Maths::Radian(Maths::Degree(11.576124)), 560.0);
constexpr double INITIAL_HEADING = 35.0 * pi / 180.0;
constexpr double BASE_LATITUDE = 48.1442; // [deg]
constexpr double BASE_LONGITUDE = 11.5692;
constexpr double BASE_HEIGHT = 548.3021; // [m]

/// Reproducible noise: splitmix64 with a fixed seed, turned normal by Box-Muller.
class Noise {
public:
    double gaussian(double sigma)
    {
        const double u1 = (static_cast<double>(next() >> 11) + 1.0) / 9007199254740993.0;
        const double u2 = static_cast<double>(next() >> 11) / 9007199254740992.0;
        return sigma * std::sqrt(-2.0 * std::log(u1)) * std::cos(2.0 * pi * u2);
    }

private:
    std::uint64_t next()
    {
        std::uint64_t z = (state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }

    std::uint64_t state = 20240624;
};

double degrees(double radians) { return radians * 180.0 / pi; }

Geodesy::Trajectory::Record sbetRecord(const VehicleState& s, double secondsOfWeek)
{
    return {Geodesy::Trajectory::Record::Status::VALID,
            secondsOfWeek,
            s.position.latitude,
            s.position.longitude,
            s.position.height,
            s.velocity.x,
            s.velocity.y,
            s.velocity.z,
            s.roll,
            s.pitch,
            s.heading,
            0.0,
            s.specificForce.x,
            s.specificForce.y,
            s.specificForce.z,
            s.angularRate.x,
            s.angularRate.y,
            s.angularRate.z};
}

/// The real-time record of the same state. While the IMU aligns, its state climbs through
/// the coarse stages, the first quarter of that time has no solution, and the heading is
/// still off by up to ten degrees.
Geodesy::ApxRaw::RawRecord rawRecord(const VehicleState& s, double secondsOfWeek, double alignmentTime)
{
    Geodesy::ApxRaw::RawRecord raw{};
    raw.timeOfWeek = static_cast<std::uint32_t>(std::llround(secondsOfWeek * 1000.0));
    double headingError = 0.0;
    if (s.time < alignmentTime) {
        raw.alignmentStatus = static_cast<std::uint8_t>(1 + static_cast<int>(4.0 * s.time / alignmentTime));
        raw.solutionFlag = s.time < alignmentTime / 4.0 ? 0 : 1;
        headingError = 10.0 * (1.0 - s.time / alignmentTime);
    } else {
        raw.alignmentStatus = static_cast<std::uint8_t>(Alignment::FULL_NAVIGATION);
        raw.solutionFlag = 1;
    }
    raw.latitude = degrees(s.position.latitude);
    raw.longitude = degrees(s.position.longitude);
    raw.height = s.position.height;
    raw.velocity = {static_cast<float>(s.velocity.x), static_cast<float>(s.velocity.y), static_cast<float>(s.velocity.z)};
    raw.roll = degrees(s.roll);
    raw.pitch = degrees(s.pitch);
    raw.heading = std::fmod(degrees(s.heading) + headingError + 360.0, 360.0);
    raw.firstTriple = {static_cast<float>(degrees(s.angularRate.x)), static_cast<float>(degrees(s.angularRate.y)),
                       static_cast<float>(degrees(s.angularRate.z))};
    raw.secondTriple = {static_cast<float>(s.specificForce.x), static_cast<float>(s.specificForce.y),
                        static_cast<float>(s.specificForce.z)};
    return raw;
}

/// Smoothed RMS errors: a few centimetres, the heading settling as the vehicle drives.
Geodesy::Smrmsg::Record smrmsgRecord(const VehicleState& s, double secondsOfWeek)
{
    const double wobble = std::sin(s.time / 60.0);
    const double heading = 1.0 + 2.0 * std::exp(-s.distance / 300.0);
    return {secondsOfWeek,         0.020 + 0.004 * wobble, 0.022 + 0.004 * wobble, 0.035 + 0.006 * wobble,
            0.005 + 0.001 * wobble, 0.006 + 0.001 * wobble, 0.007 + 0.001 * wobble, 0.25 + 0.02 * wobble,
            0.26 + 0.02 * wobble,  heading};
}

/// An RTK fixed solution of the same state: centimetre noise on position and velocity.
PosEpoch posEpoch(const VehicleState& s, std::int64_t week, double secondsOfWeek, bool first, Noise& noise)
{
    const auto [primeVertical, meridian] = Geodesy::CoordinateSystem::getRnRe(s.position.latitude);
    const double h = s.position.height;
    PosEpoch e;
    e.week = week;
    e.secondsOfWeek = secondsOfWeek;
    e.latitude = degrees(s.position.latitude + noise.gaussian(0.005) / (meridian + h));
    e.longitude = degrees(s.position.longitude + noise.gaussian(0.005) / ((primeVertical + h) * std::cos(s.position.latitude)));
    e.height = h + noise.gaussian(0.012);
    e.quality = 1;
    e.satellites = 14 + static_cast<int>(3.0 * (1.0 + std::sin(s.time / 53.0)));
    const double wobble = std::sin(s.time / 41.0);
    e.sdn = 0.0052 + 0.0008 * wobble;
    e.sde = 0.0047 + 0.0007 * wobble;
    e.sdu = 0.0151 + 0.0020 * wobble;
    e.sdne = -0.0019;
    e.sdeu = -0.0011;
    e.sdun = -0.0068;
    e.age = 1.0;
    e.ratio = 10.0 + 20.0 * (1.0 + std::sin(s.time / 37.0));
    e.vn = s.velocity.x + noise.gaussian(0.01);
    e.ve = s.velocity.y + noise.gaussian(0.01);
    e.vu = -s.velocity.z + noise.gaussian(0.015);
    // RTKLIB's first epoch of a run with dynamics has no velocity estimate yet.
    const double sdv = first ? 10.0 : 1.0;
    e.sdvn = first ? sdv : 0.0281;
    e.sdve = first ? sdv : 0.0243;
    e.sdvu = first ? sdv : 0.0392;
    e.sdvne = first ? 0.0 : -0.0061;
    e.sdveu = first ? 0.0 : 0.0017;
    e.sdvun = first ? 0.0 : -0.0094;
    return e;
}

void checkPlan(const SimulateOptions& options)
{
    if (!(options.duration > 0.0 && options.duration <= MAX_DURATION)) {
        throw UsageError("--duration must lie between 0 and " + shortest(MAX_DURATION) + " s, not " + shortest(options.duration));
    }
    if (!(options.rate > 0.0 && options.rate <= MAX_RATE)) {
        throw UsageError("--rate must lie between 0 and " + shortest(MAX_RATE) + " Hz, not " + shortest(options.rate));
    }
    const double records = std::floor(options.duration * options.rate) + 1.0;
    if (records < 2.0 || records > MAX_RECORDS) {
        throw UsageError("--duration and --rate give " + shortest(records) + " records; 2 to " + shortest(MAX_RECORDS)
                         + " are possible");
    }
    if (!(options.start >= Geodesy::GPS_EPOCH_IN_UNIX_SECONDS)) {
        throw UsageError("--start must lie after the GPS epoch, 1980-01-06");
    }
    const GpsWeekTime start = unixToGps(options.start);
    if (start.secondsOfWeek + options.duration >= Geodesy::SECONDS_IN_WEEK()) {
        throw UsageError("the survey would run past the end of GPS week " + std::to_string(start.week)
                         + "; trajectory files count seconds within one week: choose an earlier --start");
    }
}

} // namespace

SimulatedSurvey simulateSurvey(const SimulateOptions& options, Context& context)
{
    checkPlan(options);
    std::error_code error;
    std::filesystem::create_directories(options.directory, error);
    if (error) {
        throw InputError(options.directory, "cannot be created: " + error.message());
    }

    SimulatedSurvey survey;
    survey.sbet = options.directory / "survey.sbet";
    survey.apxRaw = options.directory / "survey.stream";
    survey.smrmsg = options.directory / "survey.smrmsg";
    survey.pos = options.directory / "survey.pos";
    const GpsWeekTime start = unixToGps(options.start);
    survey.week = start.week;
    survey.records = static_cast<std::uint64_t>(std::floor(options.duration * options.rate)) + 1;
    const double lastTime = static_cast<double>(survey.records - 1) / options.rate;
    survey.firstSecondOfWeek = start.secondsOfWeek;
    survey.lastSecondOfWeek = start.secondsOfWeek + lastTime;

    AtomicFile sbetFile(survey.sbet);
    AtomicFile apxFile(survey.apxRaw);
    AtomicFile smrmsgFile(survey.smrmsg);
    AtomicFile posFile(survey.pos);
    Geodesy::Sbet::Writer sbet(sbetFile.stream());
    Geodesy::ApxRaw::Writer apx(apxFile.stream());
    Geodesy::Smrmsg::Writer smrmsg(smrmsgFile.stream());

    const auto firstEpoch = static_cast<std::int64_t>(std::ceil(survey.firstSecondOfWeek));
    const auto lastEpoch = static_cast<std::int64_t>(std::floor(survey.lastSecondOfWeek));
    survey.posEpochs = static_cast<std::uint64_t>(std::max<std::int64_t>(0, lastEpoch - firstEpoch + 1));

    Progress progress(context, "simulate", survey.records + survey.posEpochs);
    const double alignmentTime = std::min(ALIGNMENT_TIME, 0.05 * options.duration);
    SurveySimulator trajectory(options.duration, SITE, INITIAL_HEADING);
    for (std::uint64_t i = 0; i < survey.records; ++i) {
        const double time = static_cast<double>(i) / options.rate;
        const VehicleState state = trajectory.stateAt(time);
        sbet.write(sbetRecord(state, start.secondsOfWeek + time));
        apx.write(rawRecord(state, start.secondsOfWeek + time, alignmentTime));
        progress.update(i);
    }

    // The GNSS solutions and the accuracies come once a second, on whole GPS seconds.
    PosHeader header;
    header.program = std::string("kelvo-geodesy simulate (RTKLIB-style output)");
    header.inputs = {"simulated rover", "simulated base"};
    header.first.week = header.last.week = start.week;
    header.first.secondsOfWeek = static_cast<double>(firstEpoch);
    header.last.secondsOfWeek = static_cast<double>(lastEpoch);
    header.first.latitude = BASE_LATITUDE;
    header.first.longitude = BASE_LONGITUDE;
    header.first.height = BASE_HEIGHT;
    writePosHeader(posFile.stream(), header);
    SurveySimulator epochs(options.duration, SITE, INITIAL_HEADING);
    Noise noise;
    for (std::int64_t second = firstEpoch; second <= lastEpoch; ++second) {
        const double secondsOfWeek = static_cast<double>(second);
        const VehicleState state = epochs.stateAt(std::min(lastTime, secondsOfWeek - start.secondsOfWeek));
        smrmsg.write(smrmsgRecord(state, secondsOfWeek));
        writePosEpoch(posFile.stream(), posEpoch(state, start.week, secondsOfWeek, second == firstEpoch, noise));
        progress.update(survey.records + static_cast<std::uint64_t>(second - firstEpoch));
    }

    sbet.flush();
    apx.flush();
    smrmsg.flush();
    sbetFile.commit();
    apxFile.commit();
    smrmsgFile.commit();
    posFile.commit();
    return survey;
}

void runSimulate(const SimulateOptions& options, Context& context)
{
    const SimulatedSurvey survey = simulateSurvey(options, context);
    const std::string rate = shortest(options.rate) + " Hz";
    auto& out = context.out;
    out << survey.sbet.string() << ": " << survey.records << " SBET records at " << rate << '\n'
        << survey.apxRaw.string() << ": " << survey.records << " raw APX records at " << rate << '\n'
        << survey.smrmsg.string() << ": " << survey.posEpochs << " SMRMSG records at 1 Hz\n"
        << survey.pos.string() << ": " << survey.posEpochs << " RTKLIB solutions at 1 Hz\n"
        << "GPS week " << survey.week << ", " << fixed(survey.firstSecondOfWeek, 3) << " .. "
        << fixed(survey.lastSecondOfWeek, 3) << " s of week; UTC "
        << calendarText(gpsToUnix(survey.week, survey.firstSecondOfWeek)) << " .. "
        << calendarText(gpsToUnix(survey.week, survey.lastSecondOfWeek)) << '\n';
}

} // namespace Kelvo::Tool
