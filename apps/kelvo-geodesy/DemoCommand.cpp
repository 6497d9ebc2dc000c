// SPDX-License-Identifier: MIT
#include "Commands.h"

#include "Numbers.h"
#include "TimeText.h"

#include <sstream>
#include <vector>

#include <unistd.h>

namespace Kelvo::Tool {
namespace {

/// A scratch folder removed with its content when the demo ends, however it ends.
class ScratchFolder {
public:
    ScratchFolder()
        : path(std::filesystem::temp_directory_path() / ("kelvo-geodesy-demo-" + std::to_string(::getpid())))
    {
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path);
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const Path path;
};

/// `text` indented, with the scratch folder left out of the file names.
void indented(std::ostream& out, const std::string& text, const Path& folder)
{
    const std::string prefix = (folder / "").string();
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(prefix)) {
            line.erase(0, prefix.size());
        }
        out << (line.empty() ? "" : "    ") << line << '\n';
    }
}

} // namespace

void runDemo(Context& context)
{
    auto& out = context.out;
    ScratchFolder folder;
    std::ostringstream quiet;
    Context inner{quiet, context.err, false};

    SimulateOptions simulate;
    simulate.directory = folder.path;
    simulate.duration = 120.0;
    simulate.rate = 10.0;
    const SimulatedSurvey survey = simulateSurvey(simulate, inner);

    out << "kelvo-geodesy demo: a two-minute survey drive, simulated, written in four formats and read back\n"
           "through the library.\n\n";
    out << "1. The survey (kelvo-geodesy simulate DIR --duration 120 --rate 10)\n";
    out << "    " << survey.records << " SBET and raw APX records at 10 Hz, " << survey.posEpochs
        << " RTKLIB solutions and SMRMSG accuracies at 1 Hz,\n"
        << "    GPS week " << survey.week << ", UTC " << calendarText(gpsToUnix(survey.week, survey.firstSecondOfWeek), 0)
        << " to " << calendarText(gpsToUnix(survey.week, survey.lastSecondOfWeek), 0).substr(11) << ".\n\n";

    out << "2. What the files hold (kelvo-geodesy info survey.sbet survey.pos --week " << survey.week << ")\n";
    std::ostringstream info;
    Context infoContext{info, context.err, false};
    InfoOptions infoOptions;
    infoOptions.files = {survey.sbet, survey.pos};
    infoOptions.week = survey.week;
    runInfo(infoOptions, infoContext);
    indented(out, info.str(), folder.path);

    out << "\n3. Where the vehicle was, and how it was oriented (kelvo-geodesy at survey.sbet --every 15 --week "
        << survey.week << ")\n";
    std::ostringstream csv;
    Context atContext{csv, context.err, false};
    AtOptions atOptions;
    atOptions.files = {survey.sbet};
    atOptions.every = 15.0;
    atOptions.week = survey.week;
    runAt(atOptions, atContext);
    out << "    UTC time   latitude [deg]  longitude [deg]  height [m]  roll [deg]  pitch [deg]  yaw [deg]\n";
    std::istringstream rows(csv.str());
    std::string row;
    std::getline(rows, row); // the header
    while (std::getline(rows, row)) {
        std::vector<double> values;
        std::istringstream cells(row);
        for (std::string cell; std::getline(cells, cell, ',');) {
            values.push_back(parseDouble(cell).value_or(0.0));
        }
        out << "    " << calendarText(values[0], 0).substr(11) << fixedWidth(values[1], 16, 7)
            << fixedWidth(values[2], 17, 7) << fixedWidth(values[3], 12, 2) << fixedWidth(values[4], 12, 2)
            << fixedWidth(values[5], 13, 2) << fixedWidth(values[6], 11, 1) << '\n';
    }
    out << "\n    The vehicle stands, then turns by 90 degrees after each straight run (yaw), leans out of\n"
           "    the turns (roll) and pitches over gentle hills.\n\n"
           "Next: 'kelvo-geodesy --help' lists every subcommand; 'kelvo-geodesy simulate DIR' writes a\n"
           "survey like this one to try them on.\n";
}

} // namespace Kelvo::Tool
