#!/usr/bin/env bash
# Has Karto live through a storm on private desktops, without and with a compositor: commands, overlays and switcher
# sessions by real key presses while displays, windows, the configuration, the keyboard and the window manager change.
# Installs what is missing, builds, and prints what happened and what Karto held before and after. The status is 1 and
# a sentence says why when Karto did not stand it.
#
#   scripts/soak.sh [--sanitize] [--settings] [--seed NUMBER] [MINUTES]     5 minutes on each desktop by default
#
# --settings has the storm go over the settings window and its preview alone: clicks, drags and keys.
set -euo pipefail
source "$(dirname "$0")/common.sh"

preset=release
options=(-DKARTO_BUILD_TESTS=ON)
seed=$RANDOM
minutes=5
place=everywhere
while [[ $# -gt 0 ]]; do
    case "$1" in
        --sanitize) preset=asan options=() ;;
        --settings) place=settings ;;
        --seed) seed=${2:?a number is missing after --seed} && shift ;;
        -*) echo "usage: scripts/soak.sh [--sanitize] [--settings] [--seed NUMBER] [MINUTES]" >&2 && exit 2 ;;
        *) minutes=$1 ;;
    esac
    shift
done

scripts/install-packages.sh test
say "Building Karto and the storm (build/$preset)"
build "$preset" "${options[@]}" -- karto soak

failed=0
for desktop in plain composited; do
    say "A storm of $minutes minute(s) on a $desktop desktop; again with: --seed $seed"
    "build/$preset/Tests/DesktopTests/soak" "$minutes" "$seed" "$desktop" "$place" || failed=1
done
exit "$failed"
