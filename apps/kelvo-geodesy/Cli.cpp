// SPDX-License-Identifier: MIT
#include "Cli.h"

#include "Commands.h"
#include "Diagnostics.h"
#include "Numbers.h"
#include "TimeText.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <new>

namespace Kelvo::Tool {
namespace {

using Geodesy::CoordinateSystem::CoordinateSystem;

// Numbers are read with from_chars (locale-independent) by these checks and by the
// conversions after them; CLI11's own conversions would follow the locale.
const CLI::Validator NUMBER(
    [](std::string& text) { return parseDouble(text) ? std::string() : "not a number: '" + text + "'"; }, "");
const CLI::Validator INTEGER(
    [](std::string& text) { return parseInteger(text) ? std::string() : "not a whole number: '" + text + "'"; },
    "");
const CLI::Validator ISO_UTC(
    [](std::string& text) {
        return parseIsoUtc(text) ? std::string() : "not a UTC date-time like 2024-06-24T08:20:00Z: '" + text + "'";
    },
    "");

std::optional<std::array<double, 3>> parseTriple(const std::string& text)
{
    std::array<double, 3> values{};
    std::size_t start = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t comma = text.find(',', start);
        if ((i < 2) == (comma == std::string::npos)) {
            return std::nullopt;
        }
        const auto value = parseDouble(std::string_view(text).substr(start, comma == std::string::npos ? comma : comma - start));
        if (!value || !std::isfinite(*value)) {
            return std::nullopt;
        }
        values[i] = *value;
        start = comma + 1;
    }
    return values;
}

const CLI::Validator TRIPLE(
    [](std::string& text) { return parseTriple(text) ? std::string() : "not LAT,LON,H: '" + text + "'"; }, "");

double number(const std::string& text) { return parseDouble(text).value_or(0.0); }

// ---- Option helpers ------------------------------------------------------------------

void addNumber(CLI::App& app, const std::string& name, double& target, const std::string& help)
{
    app.add_option_function<std::string>(name, [&target](const std::string& text) { target = number(text); }, help)
        ->check(NUMBER)
        ->type_name("NUMBER")
        ->default_str(shortest(target));
}

CLI::Option* addOptionalNumber(CLI::App& app, const std::string& name, std::optional<double>& target,
                               const std::string& help)
{
    return app.add_option_function<std::string>(name, [&target](const std::string& text) { target = number(text); }, help)
        ->check(NUMBER)
        ->type_name("SECONDS");
}

/// A list of numbers: several values after the option, or separated by commas.
CLI::Option* addNumbers(CLI::App& app, const std::string& name, std::vector<double>& target, const std::string& help)
{
    return app.add_option_function<std::vector<std::string>>(
           name,
           [&target](const std::vector<std::string>& texts) {
               for (const auto& text : texts) {
                   target.push_back(number(text));
               }
           },
           help)
        ->check(NUMBER)
        ->type_name("T")
        ->delimiter(',');
}

void addWeek(CLI::App& app, std::optional<std::int64_t>& week)
{
    app.add_option_function<std::string>(
           "--week", [&week](const std::string& text) { week = parseInteger(text); },
           "GPS week of the trajectory files, which hold seconds of week only")
        ->check(INTEGER)
        ->type_name("N");
}

void addOutput(CLI::App& app, std::optional<Path>& output)
{
    app.add_option_function<std::string>(
        "-o,--output", [&output](const std::string& text) { output = Path(text); },
        "write the data to FILE (complete or not at all) instead of the standard output")
        ->type_name("FILE");
}

/// How the answers of at and gnss are written.
void addAnswerOptions(CLI::App& app, bool& json, bool& keepMissing, std::optional<Path>& output)
{
    app.add_flag("--json", json, "write a JSON array instead of CSV");
    app.add_flag("--keep-missing", keepMissing, "write a row for times without a value too");
    addOutput(app, output);
}

/// An option whose value is one of the names of `choices` (in any letter case).
template <typename T>
CLI::Option* addChoice(CLI::App& app, const std::string& name, const std::map<std::string, T>& choices,
                       std::function<void(T)> store, const std::string& help)
{
    std::vector<std::string> names;
    for (const auto& entry : choices) {
        names.push_back(entry.first);
    }
    return app
        .add_option_function<std::string>(
            name, [choices, store](const std::string& text) { store(choices.at(CLI::detail::to_lower(text))); }, help)
        ->check(CLI::IsMember(names, CLI::ignore_case))
        ->type_name("NAME");
}

void addAlignment(CLI::App& app, Alignment& alignment)
{
    static const std::map<std::string, Alignment> names{
        {"no_solution", Alignment::NO_SOLUTION},         {"initial_solution", Alignment::INITIAL_SOLUTION},
        {"coarse_leveling", Alignment::COARSE_LEVELING}, {"coarse_alignment", Alignment::COARSE_ALIGNMENT},
        {"fine_alignment", Alignment::FINE_ALIGNMENT},   {"full_navigation", Alignment::FULL_NAVIGATION}};
    addChoice<Alignment>(app, "--alignment", names, [&alignment](Alignment value) { alignment = value; },
                         "IMU alignment from which raw APX records are usable")
        ->default_str("full_navigation");
}

void addFormat(CLI::App& app, std::optional<FileFormat>& format, bool withRtklib)
{
    std::map<std::string, FileFormat> names{
        {"sbet", FileFormat::sbet}, {"apx", FileFormat::apxRaw}, {"smrmsg", FileFormat::smrmsg}};
    if (withRtklib) {
        names.emplace("rtklib", FileFormat::rtklib);
    }
    addChoice<FileFormat>(app, "--format", names, [&format](FileFormat value) { format = value; },
                          "read every file in this format instead of the one its extension says");
}

std::vector<Path> paths(const std::vector<std::string>& texts) { return {texts.begin(), texts.end()}; }

// ---- The subcommands -----------------------------------------------------------------

/// The options of every subcommand, filled by the parser, and the one that ran.
struct Commands {
    InfoOptions info;
    AtOptions at;
    GnssOptions gnss;
    DumpOptions dump;
    ConvertOptions convert;
    UtmOptions utm;
    SimulateOptions simulate;
    std::vector<std::string> files;
    std::string file;
    std::string fromName;
    std::string toName;
    std::string start;
    std::string latitude;
    std::string longitude;
    std::vector<std::string> values;
    std::vector<std::pair<CLI::App*, std::function<void(Context&)>>> runners;
};

void defineInfo(CLI::App& app, Commands& c)
{
    auto* sub = app.add_subcommand("info", "what trajectory and GNSS files hold: format, records, time span, rate, "
                                           "first position with its UTM zone");
    sub->add_option("files", c.files, "SBET (any extension), raw APX (.stream), RTKLIB (.pos) files")
        ->required()
        ->type_name("FILE");
    addFormat(*sub, c.info.format, true);
    addNumber(*sub, "--velocity-threshold", c.info.velocityThreshold,
              "speed [m/s] from which an RTKLIB record counts as moving (used time interval)");
    addWeek(*sub, c.info.week);
    addAlignment(*sub, c.info.alignment);
    addOutput(*sub, c.info.output);
    c.runners.emplace_back(sub, [&c](Context& context) {
        c.info.files = paths(c.files);
        runInfo(c.info, context);
    });
}

void defineAt(CLI::App& app, Commands& c)
{
    auto* sub = app.add_subcommand("at", "position and attitude at UTC times, interpolated in SBET or raw APX files");
    sub->add_option("files", c.files, "trajectory files of one format: SBET (any extension) or raw APX (.stream)")
        ->required()
        ->type_name("FILE");
    auto* time = addNumbers(*sub, "--time", c.at.times,
                            "UTC times: seconds since 1970-01-01 (with --day: seconds of the UTC day)");
    auto* times = sub->add_option_function<std::string>(
        "--times", [&c](const std::string& text) { c.at.timesFile = Path(text); }, "a file of times, one a line")
                      ->type_name("FILE");
    auto* every = addOptionalNumber(*sub, "--every", c.at.every,
                                    "every SECONDS over the span of the files (needs --week unless --day)");
    time->excludes(times)->excludes(every);
    times->excludes(every);
    sub->add_flag("--day", c.at.day, "times are UTC seconds of the day");
    addWeek(*sub, c.at.week);
    addAlignment(*sub, c.at.alignment);
    addAnswerOptions(*sub, c.at.json, c.at.keepMissing, c.at.output);
    c.runners.emplace_back(sub, [&c](Context& context) {
        c.at.files = paths(c.files);
        runAt(c.at, context);
    });
}

void defineGnss(CLI::App& app, Commands& c)
{
    auto* sub = app.add_subcommand("gnss", "GNSS solutions of an RTKLIB position file at GPS seconds of week");
    sub->add_option("file", c.file, "RTKLIB position file (.pos) with velocities, in GPS week and seconds")
        ->required()
        ->type_name("FILE");
    auto* sow = addNumbers(*sub, "--sow", c.gnss.secondsOfWeek, "GPS seconds of week");
    auto* every = addOptionalNumber(*sub, "--every", c.gnss.every, "every SECONDS over the used time interval");
    sow->excludes(every);
    addNumber(*sub, "--velocity-threshold", c.gnss.velocityThreshold,
              "speed [m/s] from which a record counts as moving (used time interval)");
    addAnswerOptions(*sub, c.gnss.json, c.gnss.keepMissing, c.gnss.output);
    c.runners.emplace_back(sub, [&c](Context& context) {
        c.gnss.file = c.file;
        runGnss(c.gnss, context);
    });
}

void defineDump(CLI::App& app, Commands& c)
{
    auto* sub = app.add_subcommand("dump", "the records of an SBET, raw APX or SMRMSG file as CSV");
    sub->add_option("file", c.file, "SBET (any extension), raw APX (.stream) or, with --format smrmsg, SMRMSG file")
        ->required()
        ->type_name("FILE");
    sub->add_option_function<std::string>(
           "--limit", [&c](const std::string& text) { c.dump.limit = static_cast<std::uint64_t>(*parseInteger(text)); },
           "write the first N records only")
        ->check(INTEGER)
        ->type_name("N")
        ->check(CLI::Validator(
            [](std::string& text) { return *parseInteger(text) >= 0 ? std::string() : "must not be negative"; }, ""));
    addFormat(*sub, c.dump.format, false);
    sub->add_flag("--radians", c.dump.radians, "angles in radians instead of degrees");
    addAlignment(*sub, c.dump.alignment);
    addOutput(*sub, c.dump.output);
    c.runners.emplace_back(sub, [&c](Context& context) {
        c.dump.file = c.file;
        runDump(c.dump, context);
    });
}

void defineConvert(CLI::App& app, Commands& c)
{
    static const std::map<std::string, CoordinateSystem> systems{
        {"llh", CoordinateSystem::LLH}, {"trf", CoordinateSystem::TRF}, {"ned", CoordinateSystem::NED}};
    auto* sub = app.add_subcommand("convert", "convert positions between LLH (degrees), TRF (ECEF metres) and NED");
    addChoice<CoordinateSystem>(*sub, "--from", systems, [&c](CoordinateSystem value) { c.convert.from = value; },
                                "system of the values: llh, trf or ned")
        ->required();
    addChoice<CoordinateSystem>(*sub, "--to", systems, [&c](CoordinateSystem value) { c.convert.to = value; },
                                "system to convert to: llh, trf or ned")
        ->required();
    sub->add_option_function<std::string>(
           "--center", [&c](const std::string& text) { c.convert.center = parseTriple(text); },
           "NED centre: latitude and longitude [deg], height [m]")
        ->check(TRIPLE)
        ->type_name("LAT,LON,H");
    sub->add_option("values", c.values, "positions, three values each: lat lon [deg] h [m], or x y z [m]")
        ->required()
        ->check(NUMBER)
        ->type_name("NUMBER");
    addOutput(*sub, c.convert.output);
    c.runners.emplace_back(sub, [&c](Context& context) {
        for (const auto& text : c.values) {
            c.convert.values.push_back(number(text));
        }
        runConvert(c.convert, context);
    });
}

void defineUtm(CLI::App& app, Commands& c)
{
    auto* sub = app.add_subcommand("utm", "UTM zone and EPSG code (WGS84) of a latitude and longitude in degrees");
    sub->add_option("latitude", c.latitude, "latitude [deg]")->required()->check(NUMBER)->type_name("DEGREES");
    sub->add_option("longitude", c.longitude, "longitude [deg]")->required()->check(NUMBER)->type_name("DEGREES");
    c.runners.emplace_back(sub, [&c](Context& context) {
        c.utm.latitude = number(c.latitude);
        c.utm.longitude = number(c.longitude);
        runUtm(c.utm, context);
    });
}

void defineSimulate(CLI::App& app, Commands& c)
{
    auto* sub = app.add_subcommand("simulate", "write a synthetic survey drive as SBET, raw APX, SMRMSG and RTKLIB files");
    sub->add_option("outdir", c.file, "folder for survey.sbet, survey.stream, survey.smrmsg and survey.pos")
        ->required()
        ->type_name("FOLDER");
    addNumber(*sub, "--duration", c.simulate.duration, "length of the survey [s]");
    addNumber(*sub, "--rate", c.simulate.rate, "records per second of the SBET and raw APX files [Hz]");
    sub->add_option("--start", c.start, "UTC date-time of the first record")
        ->check(ISO_UTC)
        ->type_name("ISO-UTC")
        ->default_str("2024-06-24T08:20:00Z");
    c.runners.emplace_back(sub, [&c](Context& context) {
        c.simulate.directory = c.file;
        if (!c.start.empty()) {
            c.simulate.start = *parseIsoUtc(c.start);
        }
        runSimulate(c.simulate, context);
    });
}

void defineDemo(CLI::App& app, Commands& c)
{
    auto* sub = app.add_subcommand("demo", "simulate a short survey, read it back and print a report");
    c.runners.emplace_back(sub, [](Context& context) { runDemo(context); });
}

/// "error: <what>" for every failure, with the exit code it means.
int report(std::ostream& err, const std::string& message, int code)
{
    err << "error: " << message << '\n';
    return code;
}

} // namespace

int run(std::span<const std::string> arguments, std::ostream& out, std::ostream& err, bool errIsTerminal)
{
    try {
        CLI::App app("Geodesy on the command line: trajectory files, GNSS solutions, GPS/UTC time and WGS84 "
                     "coordinates. Run 'kelvo-geodesy demo' for an example.",
                     "kelvo-geodesy");
        app.set_version_flag("--version", "kelvo-geodesy " KELVO_GEODESY_VERSION);
        bool verbose = false;
        app.add_flag("--verbose", verbose, "show the library's log messages on the error stream");
        app.require_subcommand(1);
        app.fallthrough();

        Commands commands;
        defineInfo(app, commands);
        defineAt(app, commands);
        defineGnss(app, commands);
        defineDump(app, commands);
        defineConvert(app, commands);
        defineUtm(app, commands);
        defineSimulate(app, commands);
        defineDemo(app, commands);

        const auto named = [&arguments](CLI::App* sub) { return sub->check_name(arguments.front()); };
        if (!arguments.empty() && !arguments.front().starts_with("-") && app.get_subcommands(named).empty()) {
            return report(err, "unknown subcommand '" + arguments.front() + "' (see kelvo-geodesy --help)", BAD_USAGE);
        }
        try {
            // CLI11 takes the arguments last first.
            std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
            app.parse(reversed);
        } catch (const CLI::CallForHelp& help) {
            return app.exit(help, out, err);
        } catch (const CLI::CallForAllHelp& help) {
            return app.exit(help, out, err);
        } catch (const CLI::CallForVersion& version) {
            return app.exit(version, out, err);
        } catch (const CLI::ParseError& error) {
            return report(err, std::string(error.what()) + " (see kelvo-geodesy --help)", BAD_USAGE);
        }

        DiagnosticsScope diagnostics(err, verbose);
        Context context{out, err, errIsTerminal};
        for (auto& [sub, runner] : commands.runners) {
            if (sub->parsed()) {
                runner(context);
            }
        }
        return SUCCESS;
    } catch (const UsageError& error) {
        return report(err, error.what(), BAD_USAGE);
    } catch (const InputError& error) {
        return report(err, error.what(), BAD_INPUT);
    } catch (const std::bad_alloc&) {
        return report(err, "out of memory", BAD_INPUT);
    } catch (const std::exception& error) {
        return report(err, error.what(), BAD_INPUT);
    } catch (...) {
        return report(err, "unexpected failure", BAD_INPUT);
    }
}

} // namespace Kelvo::Tool
