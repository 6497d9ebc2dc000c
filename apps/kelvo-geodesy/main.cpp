// SPDX-License-Identifier: MIT
// kelvo-geodesy: the library's trajectory, GNSS, time and coordinate services on the
// command line. Everything happens in run(); main() only hands it the process's streams.
#include "Cli.h"

#include <iostream>
#include <string>
#include <vector>

#include <unistd.h>

int main(int argc, char** argv)
{
    try {
        std::ios::sync_with_stdio(false);
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        return Kelvo::Tool::run(arguments, std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1);
    } catch (...) {
        std::cerr << "error: unexpected failure\n";
        return 1;
    }
}
