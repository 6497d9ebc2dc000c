#!/usr/bin/env bash
# The project's one test command: installs what a fresh Debian machine lacks, then builds and
# runs every test in the dev preset, again under AddressSanitizer + UBSan (asan preset), once
# more optimised (release preset, which also builds the benchmarks), and last replays the
# corpus of every fuzz target (fuzz preset: clang, libFuzzer, ASan, UBSan), a second or two
# each, so that an input that once broke the code fails here.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh

jobs=$(nproc)
for preset in dev asan release fuzz; do
    echo "==> ${preset}: configure, build, test"
    cmake --preset "${preset}"
    cmake --build --preset "${preset}" -j "${jobs}"
    ctest --preset "${preset}" -j "${jobs}"
done
echo "==> all tests passed (dev, asan, release and the fuzz corpora)"
