#!/usr/bin/env bash
# How long the settings window takes to open, how closely it and the preview follow the hand, and what it leaves behind,
# on a private desktop of two displays and on one of ten displays with 100 zones, painted by the processor.
# Installs what is missing, builds, prints tables.
#
#   scripts/bench-settings.sh [OPENINGS]     200 by default, for the memory
set -euo pipefail
source "$(dirname "$0")/common.sh"
source Benchmarks/desktop.sh
openings=${1:-200}
karto=$PWD/build/release/karto
latency=$PWD/build/bench/Benchmarks/SettingsLatency
idle_seconds=10

{
    scripts/install-packages.sh bench
    build release -- karto
    build bench -- SettingsLatency
} >&2

# tree ZONES AXIS OTHER: as wide as it is high, as far as the number allows.
tree() {
    if [[ $1 == 1 ]]; then
        echo "{}"
    else
        echo "{ split = { axis = \"$2\", at = 0.5, first = $(tree $(($1 / 2)) "$3" "$2")," \
            "second = $(tree $(($1 - $1 / 2)) "$3" "$2") } }"
    fi
}

# Ten displays in two rows, each with ten zones.
write_large_config() {
    local display root
    root=$(tree 10 vertical horizontal)
    mkdir -p "$HOME/.config/karto"
    {
        echo -e '[profile]\nname = "Benchmark"'
        for ((display = 1; display <= 10; ++display)); do
            printf '[[display]]\nname = "d%d"\norientation = "landscape"\n' "$display"
            # The root's split without the braces around it.
            sed 's/^{ //; s/ }$//' <<<"$root"
        done
    } >"$HOME/.config/karto/config.toml"
}

start_karto() {
    in_background "$karto"
    wait_for grep -q "all commands registered" "$HOME/Library/Logs/Karto/karto-check.log"
    # Its warming up is over.
    sleep 2
}

with_two_displays() (
    start_desktop <<<'<openbox_config xmlns="http://openbox.org/3.4/rc"/>'
    write_karto_config
    start_karto
    "$@"
)

with_ten_displays() (
    start_server 9600x2160
    in_background openbox --startup "touch $HOME/managed"
    wait_for test -e "$HOME/managed"
    for ((index = 0; index < 10; ++index)); do
        xrandr --setmonitor "d$((index + 1))" "1920/508x1080/286+$((index % 5 * 1920))+$((index / 5 * 1080))" \
            "$([[ $index == 0 ]] && echo screen || echo none)"
    done >/dev/null
    write_large_config
    start_karto
    "$@"
)

# Resident kilobytes: before the first opening, ten seconds after it, and as long after many more.
measure_memory() {
    local pid=${background[-1]} before once
    before=$(kilobytes "$pid" Rss)
    "$latency" repeat "$karto" 1
    sleep 10
    once=$(kilobytes "$pid" Rss)
    "$latency" repeat "$karto" "$openings"
    sleep 10
    awk -v before="$before" -v once="$once" -v after="$(kilobytes "$pid" Rss)" -v openings="$openings" 'BEGIN {
        printf "| resident memory before the first opening | %.1f MB |\n", before / 1024
        printf "| 10 s after closing | %+.1f MB |\n", (once - before) / 1024
        printf "| 10 s after %d more openings | %+.1f MB |\n", openings, (after - before) / 1024
    }'
}

measure_idle() {
    local pid=${background[-1]} time_before switches_before
    "$latency" show "$karto"
    sleep 4
    time_before=$(processor_time "$pid")
    switches_before=$(switches "$pid")
    sleep "$idle_seconds"
    awk -v time=$(($(processor_time "$pid") - time_before)) -v switches=$(($(switches "$pid") - switches_before)) \
        -v seconds="$idle_seconds" 'BEGIN {
        printf "| processor time in %d s open and untouched | %.2f ms |\n", seconds, time / 1e6
        printf "| wake-ups in %d s open and untouched | %d |\n", seconds, switches
    }'
    "$latency" hide "$karto"
}

echo -e "\n| two displays | median ms | p95 ms | longest ms |\n|---|---:|---:|---:|"
with_two_displays "$latency" open "$karto" 21
with_two_displays "$latency" drag "$karto"
echo -e "\n| ten displays with 100 zones | median ms | p95 ms | longest ms |\n|---|---:|---:|---:|"
with_ten_displays "$latency" open "$karto" 21
with_ten_displays "$latency" layout "$karto"
echo -e "\n| measured | value |\n|---|---:|"
with_two_displays measure_idle
with_two_displays measure_memory
