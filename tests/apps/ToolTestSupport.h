// SPDX-License-Identifier: MIT
#pragma once

#include "Commands.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Kelvo::Testing {

/// What one run of the tool gave.
struct ToolResult {
    int code = -1;
    std::string out;
    std::string err;
};

/// Runs the tool in this process through run().
ToolResult runInProcess(const std::vector<std::string>& arguments);

/// Starts the built kelvo-geodesy program and waits for it.
ToolResult runProcess(const std::vector<std::string>& arguments);

/// A one-minute survey at 10 Hz, simulated once per test program into a folder that lives
/// until the program ends.
const Tool::SimulatedSurvey& simulatedSurvey();

/// The lines of `text`, without their line ends.
std::vector<std::string> lines(const std::string& text);

/// The CSV rows of `text` (header included), split at commas.
std::vector<std::vector<std::string>> csvRows(const std::string& text);

/// The value of the "  <label>   <value>" line of an info report; empty when there is none.
std::string infoValue(const std::string& report, const std::string& label);

/// The whole content of a file.
std::string fileBytes(const std::filesystem::path& path);

} // namespace Kelvo::Testing
