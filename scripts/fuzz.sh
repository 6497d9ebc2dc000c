#!/usr/bin/env bash
# Fuzzes every target of tests/fuzz (or the ones named) for SECONDS each (default 60), one
# after the other, and prints one line per target: executions, coverage, corpus, findings.
#
#   scripts/fuzz.sh [SECONDS] [TARGET...]
#
# Builds the fuzz preset first (clang, libFuzzer, ASan, UBSan). New inputs go to
# build/fuzz/corpus/<target>/ beside the seeds of tests/fuzz/corpus/<target>/, which are
# read but never written; findings (crash-*, timeout-*, oom-*, leak-*) and each target's
# log go to build/fuzz/findings/<target>/. Exits with 1 when anything was found.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
shift || true
if ! [[ ${seconds} =~ ^[0-9]+$ ]] || ((seconds < 1)); then
    echo "usage: scripts/fuzz.sh [SECONDS] [TARGET...]" >&2
    exit 2
fi

scripts/install-deps.sh
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc)" >/dev/null

targets_file=build/fuzz/tests/fuzz/targets.txt
read -r -a limits < <(sed -n 's/^# limits\t//p' "${targets_file}")

total_findings=0
found_any_target=0
while IFS=$'\t' read -r name program seeds dict; do
    [[ ${name} == \#* ]] && continue
    if (($# > 0)) && [[ " $* " != *" ${name} "* ]]; then
        continue
    fi
    found_any_target=1
    # Absolute: a target may change its working folder (tool_arguments does).
    work=${PWD}/build/fuzz/corpus/${name}
    findings=${PWD}/build/fuzz/findings/${name}
    mkdir -p "${work}" "${findings}"
    log=${findings}/fuzz.log
    before=$(find "${findings}" -name 'crash-*' -o -name 'timeout-*' -o -name 'oom-*' -o -name 'leak-*' | wc -l)
    options=(-max_total_time="${seconds}" "${limits[@]}" -artifact_prefix="${findings}/" -print_final_stats=1)
    if [[ -n ${dict} ]]; then
        options+=(-dict="${dict}")
    fi
    "${program}" "${options[@]}" "${work}" "${seeds}" >"${log}" 2>&1 || true
    after=$(find "${findings}" -name 'crash-*' -o -name 'timeout-*' -o -name 'oom-*' -o -name 'leak-*' | wc -l)
    new_findings=$((after - before))
    total_findings=$((total_findings + new_findings))

    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "${log}" | tail -n 1)
    progress=$(grep -E '^#[0-9]+.*cov: ' "${log}" | tail -n 1 || true)
    coverage=$(sed -E -n 's/.* cov: ([0-9]+).*/\1/p' <<<"${progress}")
    features=$(sed -E -n 's/.* ft: ([0-9]+).*/\1/p' <<<"${progress}")
    corpus=$(sed -E -n 's/.* corp: ([0-9]+)\/.*/\1/p' <<<"${progress}")
    printf '%-28s %12s executions  cov %6s  ft %7s  corpus %6s  findings %s\n' "${name}" "${executions:-?}" \
        "${coverage:-?}" "${features:-?}" "${corpus:-?}" "${new_findings}"
done <"${targets_file}"

if ((found_any_target == 0)); then
    echo "no fuzz target named: $*" >&2
    exit 2
fi
if ((total_findings > 0)); then
    echo "==> ${total_findings} finding(s): see build/fuzz/findings/" >&2
    exit 1
fi
