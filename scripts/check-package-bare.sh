#!/usr/bin/env bash
# Installs a package of Karto on a fresh minimal system in a folder, which has nothing of the build, starts it there for
# an ordinary person on a private desktop, has a window moved by real key presses, does the same after an upgrade where a
# newer package is given, and purges it. Needs root, the network, debootstrap and some minutes.
#
#   scripts/check-package-bare.sh FILE.deb [NEWER.deb]
set -euo pipefail

# Runs in the new system.
inside() {
    mount -t proc proc /proc
    export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
    installing=(apt-get install -qqy -o Dpkg::Use-Pty=false)

    echo "==> Installing a desktop"
    apt-get update -qq
    "${installing[@]}" --no-install-recommends xvfb openbox x11-apps xdotool x11-xserver-utils >/dev/null
    useradd --create-home person

    for package in /tmp/*.deb; do
        echo "==> Installing $(dpkg-deb --show "$package" | xargs)"
        "${installing[@]}" "$package" >/dev/null
        if ldd /usr/bin/karto | grep "not found"; then
            exit 1
        fi
        su person -c "bash /tmp/script --as-person"
    done

    echo "==> Removing and purging"
    apt-get remove -qqy -o Dpkg::Use-Pty=false karto >/dev/null
    dpkg --purge karto
    if find / -xdev \( -path /proc -o -path /tmp -o -path /home \) -prune -o -iname '*karto*' -print | grep . ||
        grep -rl karto /etc /usr/share/applications; then
        echo "These were left behind." >&2
        exit 1
    fi
    echo "The person keeps:"
    find /home/person -ipath '*karto*' -type f | sort
    test -s /home/person/.config/karto/config.toml
}

# await COMMAND...: until it succeeds.
await() {
    local tries
    for ((tries = 150; tries > 0; --tries)); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.2
    done
    echo "This never succeeds: $*" >&2
    return 1
}

as_person() {
    cd
    log=Library/Logs/Karto/karto-check.log
    trap 'cat "$log"; kill $(jobs -p)' EXIT
    mkdir -p .config/karto
    rm -f "$log" managed
    # The example of the manual page, for the display that there is.
    gzip -dc /usr/share/man/man1/karto.1.gz | sed -n '/^\.Bd/,/^\.Ed/{/^\./d;s/DELL U2720Q/screen/;p}' \
        >.config/karto/config.toml
    export DISPLAY=:7
    Xvfb "$DISPLAY" -screen 0 1000x800x24 -noreset 2>xvfb.err &
    await xrandr
    # It says so once it sees to windows.
    openbox --startup "touch managed" 2>openbox.err &
    await test -e managed
    # As the menu of a desktop starts it.
    sh -c "exec $(sed -n 's/^Exec=//p' /usr/share/applications/karto.desktop)" &
    await grep "startup: config loaded" "$log"
    xcalc 2>xcalc.err &
    await xdotool getactivewindow
    xdotool keydown shift keydown super keydown ctrl keydown alt key 3 keyup alt keyup ctrl keyup super keyup shift
    await grep "command moveToZone(3): target" "$log"
}

case ${1:?usage: scripts/check-package-bare.sh FILE.deb [NEWER.deb]} in
    --inside) inside; exit ;;
    --as-person) as_person; exit ;;
esac

system=$(mktemp -d /var/tmp/karto-bare.XXXXXX)
trap 'rm -rf --one-file-system "$system"' EXIT
chmod 755 "$system"
echo "==> Making a minimal system in $system"
debootstrap --variant=minbase "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$system" >/dev/null
cp "$@" "$system/tmp"
cp "$0" "$system/tmp/script"
# What it starts and mounts ends with it.
unshare --mount --pid --fork --kill-child chroot "$system" bash /tmp/script --inside
