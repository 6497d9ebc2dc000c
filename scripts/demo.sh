#!/usr/bin/env bash
# The tool's built-in example on a fresh machine: installs what the machine lacks, builds
# only the command-line tool (release preset) and runs `kelvo-geodesy demo`, which simulates
# a short survey drive, reads it back through the library and prints a report.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

echo "==> building kelvo-geodesy (release preset)"
cmake --preset release > /dev/null
cmake --build --preset release --target kelvo-geodesy -j "$(nproc)"
echo
exec build/release/apps/kelvo-geodesy demo
