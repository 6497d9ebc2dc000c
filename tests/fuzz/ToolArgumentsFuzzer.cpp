// SPDX-License-Identifier: MIT
// kelvo-geodesy's run() in process, over any argument list, in a scratch folder that holds
// small files of every format (named in the dictionary). Arguments that could write files
// are refused: simulate, demo, -o/--output and any path with a '/', so that a run only reads
// the scratch files and writes to memory. Every run must end with an exit code of 0, 1 or 2,
// one "error: " line exactly when it fails, and no unexpected failure.
// Input: the arguments, one a line.
#include "FuzzSupport.h"

#include "Cli.h"

#include "Geodesy/ApxRaw/Writer.h"
#include "Geodesy/Sbet/Writer.h"
#include "Geodesy/Smrmsg/Writer.h"

#include <cstdio>
#include <filesystem>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

using namespace Kelvo;
using namespace Kelvo::Fuzzing;

namespace {

/// An output that takes everything and keeps nothing.
class Discard : public std::streambuf {
protected:
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

/// Five records a millisecond apart from 116418 s of week (2024-06-24 08:20 UTC, week 2320),
/// so that even a grid of microseconds over them stays small.
void writeScratchFiles()
{
    constexpr double START = 116418.0;
    {
        Geodesy::Sbet::Writer sbet("s.sbet");
        Geodesy::ApxRaw::Writer apx("t.stream");
        Geodesy::Smrmsg::Writer smrmsg("m.smrmsg");
        for (int i = 0; i < 5; ++i) {
            const double time = START + 0.001 * i;
            sbet.write({Geodesy::Trajectory::Record::VALID, time, 0.84, 0.2, 560.0 + i, 1.0, 2.0, 0.0, 0.01, 0.02, 1.0,
                        0.0, 0.1, 0.2, 9.8, 0.001, 0.002, 0.003});
            apx.write({static_cast<std::uint32_t>(116418000 + i), 5, 1, 48.1, 11.5, 560.0 + i, {1.0f, 2.0f, 0.0f}, 0.5,
                       1.0, 35.0, {0.1f, 0.2f, 0.3f}, {0.01f, 0.02f, 0.03f}});
            smrmsg.write({time, 0.05, 0.05, 0.07, 0.006, 0.008, 0.008, 0.23, 0.24, 3.0});
        }
        sbet.flush();
        apx.flush();
        smrmsg.flush();
    }
    std::string pos = "% program   : RTKLIB ver.2.4.3\n"
                      "%  GPST          latitude(deg) longitude(deg)  height(m)   Q  ns   sdn(m)   sde(m)   sdu(m)  "
                      "sdne(m)  sdeu(m)  sdun(m) age(s)  ratio    vn(m/s)    ve(m/s)    vu(m/s)      sdvn     sdve     "
                      "sdvu    sdvne    sdveu    sdvun\r\n";
    for (int i = 0; i < 5; ++i) {
        char line[256];
        std::snprintf(line, sizeof(line),
                      "2320 %10.3f   48.780735774    9.173352864   320.0009   1   6   0.0070   0.0045   0.0162  "
                      "-0.0021  -0.0012  -0.0075   0.00  999.9    5.24067    0.00081   -0.00557  10.00000 10.00000 "
                      "10.00000  0.00000 -0.00000 -0.00000\r\n",
                      START + 0.001 * i);
        pos += line;
    }
    scratchFile("g.pos", pos);
    scratchFile("times.txt", "1719217200.001\n# a comment\n\n1719217200.0035\n");
    scratchFile("day.txt", "30000.002\n");
    scratchFile("e.sbet", "");
    scratchFile("x.sbet", std::string(137, 'x'));
}

/// Whether an argument could make the tool write a file: the commands that write, the
/// output option in any spelling CLI11 takes, and any path that leaves the scratch folder.
bool mayWrite(const std::string& argument)
{
    const bool shortOptions = argument.size() > 1 && argument[0] == '-' && argument[1] != '-';
    return argument == "simulate" || argument == "demo" || argument.find('/') != std::string::npos
           || argument.starts_with("--o") || (shortOptions && argument.find('o') != std::string::npos);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // The scratch folder becomes the working folder: the runs name its files alone.
    std::filesystem::current_path(scratchFolder());
    writeScratchFiles();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::vector<std::string> arguments;
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    for (std::string argument; std::getline(lines, argument);) {
        if (mayWrite(argument) || arguments.size() == 64) {
            return -1; // not worth keeping in the corpus
        }
        arguments.push_back(argument);
    }

    Discard discard;
    std::ostream out(&discard);
    std::ostringstream err;
    int code = -1;
    completes([&] { code = Tool::run(arguments, out, err); }, [](const std::exception&) { return false; });
    expect(code >= 0 && code <= 2, "an exit code other than 0, 1 or 2");

    std::istringstream messages(err.str());
    std::uint64_t errors = 0;
    std::string lastLine;
    for (std::string line; std::getline(messages, line);) {
        errors += line.starts_with("error: ") ? 1 : 0;
        lastLine = line;
    }
    expect(errors == (code == 0 ? 0u : 1u), "a run that fails without one error line, or succeeds with one");
    expect(code == 0 || lastLine.starts_with("error: "), "the error line of a failed run is not its last message");
    // What run() says when something it did not foresee escapes a command.
    expect(lastLine != "error: unexpected failure", "an unexpected failure");
    expect(lastLine != "error: out of memory", "the tool ran out of memory");
    return 0;
}
