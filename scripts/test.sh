#!/usr/bin/env bash
# The project's one test command: installs what a fresh Debian machine lacks, then builds and
# runs every test in the dev preset, again under AddressSanitizer + UBSan (asan preset), once
# more optimised (release preset, which also builds the benchmarks), then replays the
# corpus of every fuzz target (fuzz preset: clang, libFuzzer, ASan, UBSan), a second or two
# each, so that an input that once broke the code fails here; last, the threaded tests
# (`*Threads.*`) under ThreadSanitizer (tsan preset, which builds only the test programs
# that hold them).
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
echo "==> tsan: configure, build the Geodesy and Projection tests, run the threaded ones"
cmake --preset tsan
cmake --build --preset tsan -j "${jobs}"
ctest --preset tsan -j "${jobs}"
echo "==> all tests passed (dev, asan, release, the fuzz corpora and tsan)"
