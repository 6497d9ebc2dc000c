// SPDX-License-Identifier: MIT
#include "ToolTestSupport.h"

#include "Cli.h"
#include "support/TemporaryDirectory.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace Kelvo::Testing {

ToolResult runInProcess(const std::vector<std::string>& arguments)
{
    std::ostringstream out;
    std::ostringstream err;
    ToolResult result;
    result.code = Tool::run(arguments, out, err);
    result.out = out.str();
    result.err = err.str();
    return result;
}

ToolResult runProcess(const std::vector<std::string>& arguments)
{
    TemporaryDirectory folder;
    const std::string outPath = (folder.path() / "out").string();
    const std::string errPath = (folder.path() / "err").string();

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);

    std::vector<std::string> words{KELVO_GEODESY_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) {
        throw std::runtime_error("cannot start " + words.front());
    }
    int status = 0;
    waitpid(pid, &status, 0);

    ToolResult result;
    result.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = fileBytes(outPath);
    result.err = fileBytes(errPath);
    return result;
}

const Tool::SimulatedSurvey& simulatedSurvey()
{
    static const TemporaryDirectory folder;
    static const Tool::SimulatedSurvey survey = [] {
        std::ostringstream quiet;
        Tool::Context context{quiet, quiet, false};
        Tool::SimulateOptions options;
        options.directory = folder.path();
        options.duration = 60.0;
        options.rate = 10.0;
        return Tool::simulateSurvey(options, context);
    }();
    return survey;
}

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        result.push_back(line);
    }
    return result;
}

std::vector<std::vector<std::string>> csvRows(const std::string& text)
{
    std::vector<std::vector<std::string>> rows;
    for (const auto& line : lines(text)) {
        std::vector<std::string> cells;
        std::istringstream stream(line);
        for (std::string cell; std::getline(stream, cell, ',');) {
            cells.push_back(cell);
        }
        if (!line.empty() && line.back() == ',') {
            cells.emplace_back();
        }
        rows.push_back(cells);
    }
    return rows;
}

std::string infoValue(const std::string& report, const std::string& label)
{
    for (const auto& line : lines(report)) {
        if (line.rfind("  " + label + " ", 0) == 0) {
            const auto start = line.find_first_not_of(' ', label.size() + 2);
            return start == std::string::npos ? std::string() : line.substr(start);
        }
    }
    return {};
}

std::string fileBytes(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace Kelvo::Testing
