#!/usr/bin/env bash
# Installs, from Debian's archive, whatever the build, the tests, the benchmarks and the tool
# need and this machine lacks. Does nothing when everything is there.
set -euo pipefail

packages=(
    g++ cmake ninja-build             # build
    libgtest-dev libgmock-dev         # tests
    libgeographiclib-dev              # reference for the coordinate tests
    libbenchmark-dev python3-numpy    # benchmarks
    libcli11-dev libgdal-dev gdal-bin # the command-line tool (gdal-bin: ogrinfo in its tests)
    libproj-dev proj-bin proj-data    # Kelvo::Projection
    pybind11-dev python3-dev python3-pybind11 python3-numpy python3-pandas
    python3-matplotlib python3-pytest python3-setuptools python3-pip python3-venv
    python3-dask python3-distributed  # the Python package and its Dask layer
    clang libfuzzer-14-dev libclang-rt-14-dev # fuzz targets
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
