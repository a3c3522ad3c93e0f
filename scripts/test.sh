#!/usr/bin/env bash
# Builds and tests everything: installs what is missing, checks the sources, runs the pure and the service tests
# under the sanitizers, the package, and last of all every test, those on private desktops included.
set -euo pipefail
source "$(dirname "$0")/common.sh"

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
