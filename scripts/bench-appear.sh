#!/usr/bin/env bash
# How long the overlay takes to appear on 1, 3 and 6 displays of 3840x2160 with four zones each, and the switcher with
# ten windows, on a private X server that paints with the processor. Installs what is missing, builds, prints a table.
#
#   scripts/bench-appear.sh
set -euo pipefail
source "$(dirname "$0")/common.sh"
source Benchmarks/desktop.sh
karto=$PWD/build/release/karto
appear=$PWD/build/bench/Benchmarks/AppearLatency

{
    scripts/install-packages.sh bench
    build release -- karto
    build bench -- AppearLatency
} >&2

# One layout of four zones for each display; the overlay's delay in seconds.
write_config() {
    local display
    mkdir -p "$HOME/.config/karto"
    {
        printf '[profile]\nname = "Benchmark"\n[overlay]\ndelay = %s\n' "$1"
        for display in 1 2 3 4 5 6; do
            printf '[[display]]\nname = "d%s"\norientation = "landscape"\n' "$display"
            echo 'split = { axis = "vertical", at = 0.5,'\
                'first = { split = { axis = "horizontal", at = 0.5, first = {}, second = {} } },'\
                'second = { split = { axis = "horizontal", at = 0.5, first = {}, second = {} } } }'
        done
    } >"$HOME/.config/karto/config.toml"
}

# show_with DISPLAYS MODE WHAT...: a desktop of its own, so that the first time is the first time.
show_with() (
    displays=$1 mode=$2
    shift 2
    start_server 11520x4320
    in_background openbox --startup "touch $HOME/managed"
    wait_for test -e "$HOME/managed"
    for ((index = 0; index < displays; ++index)); do
        xrandr --setmonitor "d$((index + 1))" \
            "3840/1016x2160/571+$((index % 3 * 3840))+$((index / 3 * 2160))" "$([[ $index == 0 ]] && echo screen || echo none)"
    done >/dev/null
    if [[ $1 == switcher ]]; then
        write_config 2.0
        for ((index = 0; index < 10; ++index)); do
            in_background xterm -class "terminal$index" -geometry 80x24+100+100
        done
        sleep 2
    else
        write_config 0.3
    fi
    in_background "$karto"
    wait_for grep -q "all commands registered" "$HOME/Library/Logs/Karto/karto-check.log"
    sleep 1.5
    "$appear" "$@" "$mode"
)

echo "| shown | composited | first ms | again ms | longest ms |"
echo "|---|---|---:|---:|---:|"
for mode in plain composited; do
    for displays in 1 3 6; do
        show_with "$displays" "$mode" overlay "$displays"
    done
    show_with 1 "$mode" switcher
done
