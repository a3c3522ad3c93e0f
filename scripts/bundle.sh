#!/usr/bin/env bash
# Builds the Debian package of Karto, build/bundle/karto_VERSION_ARCHITECTURE.deb, with commit and date in the program.
# Equal sources make equal packages: all times in it are those of the commit.
#
#   scripts/bundle.sh [CMAKE OPTION]...          for example -DKARTO_UPDATE_FEED=ADDRESS -DKARTO_UPDATE_KEY=PUBLIC
set -euo pipefail
source "$(dirname "$0")/common.sh"

scripts/install-packages.sh bundle

commit=$(git describe --always --exclude '*' --abbrev=12 --dirty)
if [[ $commit == *-dirty ]]; then
    made=$(date +%s)
else
    made=$(git log -1 --format=%ct)
fi
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$made}

# The distribution's flags for a hardened program; what -g adds would be stripped again.
export DEB_BUILD_MAINT_OPTIONS=hardening=+all DEB_CXXFLAGS_MAINT_STRIP=-g

say "Building the package of commit $commit (build/bundle)"
rm -f build/bundle/karto_*.deb
build bundle -DKARTO_BUILD_COMMIT="$commit" -DKARTO_BUILD_DATE="$(date -u -d "@$SOURCE_DATE_EPOCH" +%F)" \
    -DCMAKE_CXX_FLAGS="$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS)" \
    -DCMAKE_EXE_LINKER_FLAGS="$(dpkg-buildflags --get LDFLAGS)" -DKARTO_UPDATE_FEED= -DKARTO_UPDATE_KEY= "$@" -- package
say "Install it with: sudo apt install --reinstall ./$(echo build/bundle/karto_*.deb)"
