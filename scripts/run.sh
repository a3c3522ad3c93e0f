#!/usr/bin/env bash
# Builds Karto and starts it. On an X11 desktop it starts there, with your own configuration. Without one it
# starts a private desktop of two displays with windows on it, has every command carried out by real key presses,
# and leaves pictures and the check log in build/showcase.
set -euo pipefail
source "$(dirname "$0")/common.sh"

if [[ -n ${DISPLAY:-} ]]; then
    scripts/install-packages.sh build
    say "Building Karto (build/release)"
    build release -- karto
    say "Starting build/release/karto on display $DISPLAY; end it with Ctrl+C"
    exec build/release/karto
fi

scripts/install-packages.sh test
say "There is no X11 display here: building Karto and a private desktop to show it on (build/release)"
build release -DKARTO_BUILD_TESTS=ON -- karto showcase
rm -rf build/showcase
say "Starting the private desktop"
exec build/release/Showcase/showcase build/showcase
