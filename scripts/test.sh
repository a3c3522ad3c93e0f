#!/usr/bin/env bash
# Builds and tests everything: installs what is missing, checks the sources, runs the pure and the service tests
# under the sanitizers, the package, and last of all every test, those on private desktops included.
#
#   scripts/test.sh                 what every change should pass; on three window managers, and on others that are there
#   scripts/test.sh all-managers    many window managers with many applications instead, and a table of what is exact;
#                                   some twenty minutes
set -euo pipefail
source "$(dirname "$0")/common.sh"

if [[ ${1:-} == all-managers ]]; then
    scripts/install-packages.sh all-managers
    say "Building the program and the matrix (build/dev)"
    build dev -- karto manager-matrix
    say "Trying every window manager"
    exec build/dev/Tests/DesktopTests/manager-matrix
fi

scripts/install-packages.sh test

say "Building the program and its tests (build/dev)"
build dev

say "Building the tests under the address and undefined-behaviour sanitizers (build/asan)"
build asan -- KartoCoreTests KartoTests

scripts/lint.sh --changed

say "Running the core and service tests under the sanitizers"
ctest --test-dir build/asan --output-on-failure -j 2 --no-tests=error -LE desktop -E _NOT_BUILT

say "Packing the development build (build/dev/package)"
rm -rf build/dev/package
cpack --config build/dev/CPackConfig.cmake -B build/dev/package >/dev/null
scripts/check-package.sh build/dev/package/karto_*.deb

say "Running all tests; those on private desktops start X servers and window managers of their own"
ctest --preset dev -j 2 --no-tests=error
