#!/usr/bin/env bash
# How closely a boundary between zones follows the pointer on three displays of 3840x2160 with four zones each, what
# moving the pointer over them costs, and whether 10,000 drags leave anything behind, on a private X server that paints
# with the processor. Installs what is missing, builds, prints a table.
#
#   scripts/bench-editing.sh
set -euo pipefail
source "$(dirname "$0")/common.sh"
source Benchmarks/desktop.sh
preview=$PWD/build/bench/Tests/DesktopTests/editing-preview
latency=$PWD/build/bench/Benchmarks/EditingLatency

{
    scripts/install-packages.sh bench
    build bench -DKARTO_BUILD_TESTS=ON -- editing-preview EditingLatency
} >&2

write_config() {
    local display
    echo -e '[profile]\nname = "Benchmark"'
    for display in 1 2 3; do
        printf '[[display]]\nname = "d%s"\norientation = "landscape"\n' "$display"
        echo 'split = { axis = "vertical", at = 0.5,'\
            'first = { split = { axis = "horizontal", at = 0.5, first = {}, second = {} } },'\
            'second = { split = { axis = "horizontal", at = 0.5, first = {}, second = {} } } }'
    done
}

# edit_with WHAT MODE
edit_with() (
    start_server 11520x2160
    in_background openbox --startup "touch $HOME/managed"
    wait_for test -e "$HOME/managed"
    for ((index = 0; index < 3; ++index)); do
        xrandr --setmonitor "d$((index + 1))" \
            "3840/1016x2160/571+$((index * 3840))+0" "$([[ $index == 0 ]] && echo screen || echo none)"
    done >/dev/null
    write_config >"$HOME/layouts.toml"
    in_background "$preview" "$HOME/layouts.toml" 100 1500 400 300
    wait_for grep -q begin "$HOME/editing-preview.out"
    sleep 1.5
    "$latency" "$1" "${background[-1]}" "$2"
)

echo "| what | composited | |"
echo "|---|---|---|"
for what in drag hover repeat; do
    for mode in plain composited; do
        edit_with "$what" "$mode"
    done
done
