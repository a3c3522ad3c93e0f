#!/usr/bin/env bash
# The cost of Karto's planners, of editing zones and of saving and reloading its configuration, from 10 to 10,000 zones, with fitted growth.
# Installs what is missing and builds; arguments go to Google Benchmark.
set -euo pipefail
source "$(dirname "$0")/common.sh"

{
    scripts/install-packages.sh bench
    build bench -- CoreBenchmarks
} >&2
build/bench/Benchmarks/CoreBenchmarks "$@"
