#!/usr/bin/env bash
# The project's one test command: installs what a fresh Debian machine lacks, then builds and
# runs every test twice, in the dev preset and under AddressSanitizer + UBSan (asan preset).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

jobs=$(nproc)
for preset in dev asan; do
    echo "==> ${preset}: configure, build, test"
    cmake --preset "${preset}"
    cmake --build --preset "${preset}" -j "${jobs}"
    ctest --preset "${preset}" -j "${jobs}"
done
echo "==> all tests passed (dev and asan)"
