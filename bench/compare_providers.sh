#!/usr/bin/env bash
# Runs, one after the other on the same data, the provider benchmark (kelvo_bench_providers,
# Release) and numpy's np.interp (bench/providers_numpy.py), then prints both throughputs in
# queries per second of CPU time and their ratio. Builds the benchmark first if needed.
#
#     bench/compare_providers.sh
set -euo pipefail
cd "$(dirname "$0")/.."

python=/usr/bin/python3 # Debian's interpreter, which has python3-numpy
bench=build/release/bench/kelvo_bench_providers
data=build/release/bench/provider-bench-data/sbet-200hz-1m.sbet

cmake --preset release >/dev/null
cmake --build --preset release --target kelvo_bench_providers >/dev/null

report=$(mktemp)
log=$(mktemp)
trap 'rm -f "${report}" "${log}"' EXIT
"${bench}" --benchmark_filter='^providerIncreasingUtcTimes$' --benchmark_repetitions=3 \
    --benchmark_report_aggregates_only=true --benchmark_format=json >"${report}" 2>"${log}" || {
    cat "${log}" >&2
    exit 1
}
cpp=$("${python}" -c '
import json, sys
runs = json.load(open(sys.argv[1]))["benchmarks"]
print(round(next(r["items_per_second"] for r in runs if r.get("aggregate_name") == "median")))' "${report}")
numpy=$("${python}" bench/providers_numpy.py "${data}")

"${python}" -c '
import sys
cpp, numpy = float(sys.argv[1]), float(sys.argv[2])
print(f"SbetPositionAttitudeProvider<Sbet::Reader>: {cpp / 1e6:6.1f} M queries/s")
print(f"numpy np.interp, six values:               {numpy / 1e6:6.1f} M queries/s")
print(f"ratio provider / numpy:                    {cpp / numpy:6.2f}")' "${cpp}" "${numpy}"
