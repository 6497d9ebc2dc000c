#!/usr/bin/env bash
# Installs, from Debian's archive, whatever the build, the tests, the benchmarks and the tool
# need and this machine lacks. Does nothing when everything is there.
set -euo pipefail

packages=(
    g++ cmake ninja-build             # build
    libgtest-dev libgmock-dev         # tests
    libgeographiclib-dev              # reference for the coordinate tests
    libbenchmark-dev python3-numpy    # benchmarks
    libcli11-dev                      # the command-line tool
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "${package}" 2>/dev/null | grep -q "install ok installed" || missing+=("${package}")
done

if ((${#missing[@]} > 0)); then
    echo "==> installing ${missing[*]}"
    if [[ $(id -u) -ne 0 ]]; then
        sudo=sudo
    else
        sudo=
    fi
    ${sudo} apt-get update
    DEBIAN_FRONTEND=noninteractive ${sudo} apt-get install -y --no-install-recommends "${missing[@]}"
fi
