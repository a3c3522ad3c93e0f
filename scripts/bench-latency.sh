#!/usr/bin/env bash
# From a key press to the window in its zone: Karto beside a minimal program, the window manager's own key binding
# and a shortcut daemon, taking turns on one private desktop. Then the processor time of 100 commands, for Karto and the
# minimal programs. Installs what is missing, builds, prints tables.
#
#   scripts/bench-latency.sh [MOVES]        200 moves each by default
set -euo pipefail
source "$(dirname "$0")/common.sh"
source Benchmarks/desktop.sh
moves=${1:-200}
karto=$PWD/build/release/karto
programs=$PWD/build/bench/Benchmarks

{
    scripts/install-packages.sh bench
    build release -- karto
    build bench -- MoveLatency MinimalMover
} >&2

# The zones of the Karto configuration, as frames: two of one size, then one of another on the other display.
zones=("0,0,960,1080" "960,0,960,1080" "1920,0,1920,540")

# One binding of the window manager: key, then the frame.
openbox_binding() {
    local x y width height
    IFS=, read -r x y width height <<<"$2"
    cat <<BINDING
    <keybind key="S-C-A-W-$1"><action name="MoveResizeTo">
      <monitor>all</monitor><x>$x</x><y>$y</y><width>$width</width><height>$height</height>
    </action></keybind>
BINDING
}

start_desktop <<RC
<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <keyboard>
$(openbox_binding z "${zones[0]}"; openbox_binding x "${zones[1]}"; openbox_binding c "${zones[2]}")
  </keyboard>
</openbox_config>
RC

# wmctrl takes the place of the frame and the size of the client.
read -r left right top bottom < <("$programs/MoveLatency" --extents)
daemon_binding() {
    local x y width height
    IFS=, read -r x y width height <<<"$2"
    printf 'shift + ctrl + alt + super + %s\n\twmctrl -r :ACTIVE: -e 1,%d,%d,%d,%d\n' \
        "$1" "$x" "$y" $((width - left - right)) $((height - top - bottom))
}
{
    daemon_binding u "${zones[0]}"
    daemon_binding i "${zones[1]}"
    daemon_binding o "${zones[2]}"
} >"$HOME/sxhkdrc"
export SXHKD_SHELL=/bin/sh
in_background sxhkd -c "$HOME/sxhkdrc"

in_background "$programs/MinimalMover" blind "q=${zones[0]}" "w=${zones[1]}" "e=${zones[2]}"
blind_pid=$!
in_background "$programs/MinimalMover" asking "j=${zones[0]}" "k=${zones[1]}" "l=${zones[2]}"
asking_pid=$!

write_karto_config
in_background "$karto"
karto_pid=$!

"$programs/MoveLatency" "$moves" "${zones[@]}" \
    "karto=123@$karto_pid" "minimal=qwe@$blind_pid" "minimal, asking first=jkl@$asking_pid" \
    "window manager's key=zxc" wmctrl=uio
