#!/usr/bin/env bash
# Runs, one after the other on the same data, the Release benchmarks and numpy's np.interp,
# then prints the throughputs side by side:
# - the provider (kelvo_bench_providers) beside bench/providers_numpy.py, in queries per
#   second of CPU time, and their ratio;
# - the batch engine (kelvo_bench_batch) beside bench/batch_numpy.py: poses at increasing and
#   shuffled UTC times on one and two threads, georeferencing, and the table load beside the
#   SBET reader alone. One-thread rates are per second of CPU time, as numpy's are, so that
#   other work on the machine does not count; two-thread rates are per second of wall time.
# Builds the benchmarks first if needed.
#
#     bench/compare_providers.sh
set -euo pipefail
cd "$(dirname "$0")/.."

python=/usr/bin/python3 # Debian's interpreter, which has python3-numpy
bench=build/release/bench

cmake --preset release >/dev/null
cmake --build --preset release --target kelvo_bench_providers kelvo_bench_batch >/dev/null

report=$(mktemp)
log=$(mktemp)
trap 'rm -f "${report}" "${log}"' EXIT

# run_benchmark <program> [options...]: three repetitions as JSON into ${report}.
run_benchmark() {
    "${bench}/$1" "${@:2}" --benchmark_repetitions=3 --benchmark_report_aggregates_only=true \
        --benchmark_format=json >"${report}" 2>"${log}" || {
        cat "${log}" >&2
        exit 1
    }
}

run_benchmark kelvo_bench_providers --benchmark_filter='^providerIncreasingUtcTimes$'
cpp=$("${python}" -c '
import json, sys
runs = json.load(open(sys.argv[1]))["benchmarks"]
print(round(next(r["items_per_second"] for r in runs if r.get("aggregate_name") == "median")))' "${report}")
numpy=$("${python}" bench/providers_numpy.py "${bench}/provider-bench-data/sbet-200hz-1m.sbet")

"${python}" -c '
import sys
cpp, numpy = float(sys.argv[1]), float(sys.argv[2])
print(f"SbetPositionAttitudeProvider<Sbet::Reader>: {cpp / 1e6:6.1f} M queries/s")
print(f"numpy np.interp, six values:               {numpy / 1e6:6.1f} M queries/s")
print(f"ratio provider / numpy:                    {cpp / numpy:6.2f}")' "${cpp}" "${numpy}"

echo
run_benchmark kelvo_bench_batch
numpy=$("${python}" bench/batch_numpy.py "${bench}/batch-bench-data/sbet-200hz-1m.sbet")
"${python}" - "${report}" ${numpy} <<'PYTHON'
import json, sys

runs = {r["run_name"]: r for r in json.load(open(sys.argv[1]))["benchmarks"] if r.get("aggregate_name") == "median"}
numpy_increasing, numpy_shuffled = float(sys.argv[2]), float(sys.argv[3])

def cpu(name):
    """Items per second of CPU time (the benchmark counts the calling thread only)."""
    run = runs[name]
    return run["items_per_second"] * run["real_time"] / run["cpu_time"]

def wall(name):
    return runs[name]["items_per_second"]

sorted1, sorted2 = cpu("posesIncreasingUtcTimes/1/real_time"), wall("posesIncreasingUtcTimes/2/real_time")
sorted1wall = wall("posesIncreasingUtcTimes/1/real_time")
shuffled1 = cpu("posesShuffledUtcTimes/1/real_time")
rows = [
    ("poses, 20M increasing UTC times, 1 thread", sorted1, f"{sorted1 / numpy_increasing:5.2f} x np.interp"),
    ("np.interp, six values, increasing", numpy_increasing, ""),
    ("poses, 20M increasing, 2 threads (wall)", sorted2, f"{sorted2 / sorted1wall:5.2f} x 1 thread (wall)"),
    ("poses, 10M shuffled UTC times, 1 thread", shuffled1, f"{shuffled1 / sorted1:5.2f} x increasing"),
    ("np.interp, six values, shuffled", numpy_shuffled, f"engine {shuffled1 / numpy_shuffled:5.2f} x"),
    ("poses, 10M shuffled, 2 threads (wall)", wall("posesShuffledUtcTimes/2/real_time"), ""),
    ("georeference to ECEF, 1 thread", cpu("georeferenceEcef/1/real_time"), ""),
    ("georeference to ECEF, 2 threads (wall)", wall("georeferenceEcef/2/real_time"), ""),
    ("georeference to geodetic, 1 thread", cpu("georeferenceGeodetic/1/real_time"), ""),
    ("table load, records", runs["tableLoad"]["items_per_second"], ""),
    ("Sbet::Reader::getNext alone, records", runs["readerGetNext"]["items_per_second"],
     f"load {runs['tableLoad']['items_per_second'] / runs['readerGetNext']['items_per_second']:5.2f} x reader"),
]
for name, value, note in rows:
    print(f"{name:44s} {value / 1e6:7.1f} M/s  {note}")
PYTHON
