#!/usr/bin/env bash
# The cost of Karto's planners and of reading its configuration, from 10 to 10,000 zones, with fitted growth.
# Installs what is missing and builds; arguments go to Google Benchmark.
set -euo pipefail
cd "$(dirname "$0")/.."
source Benchmarks/desktop.sh

installPackages
{
    cmake --preset bench
    cmake --build --preset bench --target CoreBenchmarks
} >&2
build/bench/Benchmarks/CoreBenchmarks "$@"
