#!/usr/bin/env bash
# Installs the Debian packages that Karto needs: "build" for building and running it, "bundle" for its own package,
# "test" for the private desktops, the tests and the checks as well, "all-managers" for these with every window manager
# and application of the large matrix, "bench" for building it and the benchmarks.
# Does nothing when all of them are there.
set -euo pipefail

build_packages=(
    g++ cmake ninja-build pkg-config ccache qt6-base-dev libqt6svg6
    libxau-dev libxcb1-dev libxcb-randr0-dev libxcb-xkb-dev libxcb-xinput-dev libxcb-res0-dev libxcb-icccm4-dev
    libxcb-render0-dev libxcb-shape0-dev libxcb-xfixes0-dev libxcb-cursor-dev x11proto-dev libtomlplusplus-dev libfmt-dev
    libutf8proc-dev libsystemd-dev libsodium-dev
)
bundle_packages=(dpkg-dev file openssl)
test_packages=(
    libgtest-dev libgmock-dev libbenchmark-dev librapidcheck-dev libxcb-xtest0-dev
    xvfb xserver-xorg-core xserver-xorg-video-dummy openbox xfwm4 metacity icewm blackbox picom trayer
    xterm x11-apps x11-utils x11-xkb-utils x11-xserver-utils xdotool imagemagick dbus-daemon dbus-x11
    python3-gi gir1.2-gtk-3.0 libgl1-mesa-dri weston qt6-wayland fonts-dejavu-core fonts-quicksand qt6-qpa-plugins
    qt6-gtk-platformtheme gnome-themes-extra
    clang-19 clang-format-19 clang-tidy-19 libclang-rt-19-dev
    fakeroot lintian desktop-file-utils appstream
)
manager_packages=(
    awesome fvwm3 jwm kwin-x11 marco mate-settings-daemon-common muffin cinnamon-settings-daemon mutter wmaker
    chromium featherpad gnome-text-editor jedit mousepad xfce4-terminal
)
bench_packages=(
    libbenchmark-dev libxcb-composite0-dev libxcb-damage0-dev libxcb-xtest0-dev xvfb openbox x11-xserver-utils dbus-daemon dbus-bin fonts-dejavu-core
    sxhkd wmctrl trayer xfce4-panel
)

case "${1:-test}" in
    build) wanted=("${build_packages[@]}") ;;
    bundle) wanted=("${build_packages[@]}" "${bundle_packages[@]}") ;;
    test) wanted=("${build_packages[@]}" "${bundle_packages[@]}" "${test_packages[@]}") ;;
    all-managers) wanted=("${build_packages[@]}" "${bundle_packages[@]}" "${test_packages[@]}" "${manager_packages[@]}") ;;
    bench) wanted=("${build_packages[@]}" "${bench_packages[@]}") ;;
    *)
        echo "usage: scripts/install-packages.sh [build|bundle|test|all-managers|bench]" >&2
        exit 2
        ;;
esac

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This is not a Debian-like system; please see to the equivalents of: ${wanted[*]}" >&2
    exit 0
fi

missing=()
for package in "${wanted[@]}"; do
    if [[ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]]; then
        missing+=("$package")
    fi
done
if [[ ${#missing[@]} -eq 0 ]]; then
    exit 0
fi

as_root=()
if [[ $EUID -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
        echo "These packages are missing and only root can install them: ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi
echo "==> Installing with apt-get: ${missing[*]}"
"${as_root[@]}" apt-get update -q
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -qy --no-install-recommends "${missing[@]}"
