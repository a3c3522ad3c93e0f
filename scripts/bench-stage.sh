#!/usr/bin/env bash
# How long the overlay takes to appear on 1, 3 and 6 displays of 3840x2160 with four zones each, on a private X server
# that paints with the processor. Installs what is missing, builds, prints a table.
#
#   scripts/bench-stage.sh
set -euo pipefail
source "$(dirname "$0")/common.sh"
source Benchmarks/desktop.sh

{
    scripts/install-packages.sh bench
    build bench -- StageLatency
} >&2

start_server 11520x4320
echo "| displays | composited | first ms | again ms | longest ms | hiding ms |"
echo "|---:|---|---:|---:|---:|---:|"
for displays in 1 3 6; do
    for mode in plain composited; do
        build/bench/Benchmarks/StageLatency "$displays" "$mode"
    done
done
