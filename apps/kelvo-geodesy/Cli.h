// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <span>
#include <string>

namespace Kelvo::Tool {

/// Runs kelvo-geodesy with `arguments` (without the program name): data to `out`, messages
/// to `err`. Returns the exit code: 0 success, 1 bad input (a file or a value in it that
/// cannot be used), 2 bad usage (arguments that make no valid command). Every error is one
/// line "error: ..." on `err`; no exception leaves this function. Assertion reports of the
/// library appear on `err` as "warning: ...". A progress bar is drawn on `err` for long work
/// only when `errIsTerminal`.
int run(std::span<const std::string> arguments, std::ostream& out, std::ostream& err, bool errIsTerminal = false);

} // namespace Kelvo::Tool
