#!/usr/bin/env bash
# What Karto costs while it does nothing: time to start, memory, processor time and wake-ups; where its icon is docked
# in a tray (trayer), and where a tray reads it over the message bus (xfce4-panel).
# Installs what is missing, builds, starts Karto on a private desktop and prints a table.
#
#   scripts/bench-footprint.sh [STARTS]     20 starts by default
set -euo pipefail
source "$(dirname "$0")/common.sh"
source Benchmarks/desktop.sh
starts=${1:-20}
idle_seconds=10
karto=$PWD/build/release/karto

{
    scripts/install-packages.sh bench
    build release -- karto
} >&2

start_desktop <<<'<openbox_config xmlns="http://openbox.org/3.4/rc"/>'
write_karto_config
mkdir -p "$HOME/Library/Logs/Karto"
log=$HOME/Library/Logs/Karto/karto-check.log
: >"$log"

# The log as it grows; what is written wakes the reader at once.
exec {lines}< <(exec tail -n +1 -F "$log" 2>/dev/null)
background+=($!)

# Reads the log up to a line that holds the text; prints what was read where it never comes.
await_line() {
    local line read=""
    while read -r -t 10 -u "$lines" line; do
        [[ $line == *"$1"* ]] && return
        read+="$line"$'\n'
    done
    printf 'the log never says "%s"; it says:\n%s' "$1" "$read" >&2
    return 1
}
echo "reader ready" >>"$log"
await_line "reader ready"

# Microseconds since the epoch.
now() { echo "${EPOCHREALTIME//[.,]/}"; }

# Starts Karto as $pid and sets $elapsed to the microseconds until its shortcuts were claimed.
start_karto() {
    local begin
    begin=$(now)
    "$karto" >>"$HOME/karto.out" 2>&1 &
    pid=$!
    await_line "hotkey registration: "
    elapsed=$(($(now) - begin))
}

stop_karto() {
    kill "$pid"
    wait "$pid" 2>/dev/null || true
}

# Sets the row of figures $idle: resident and proportional kilobytes, nanoseconds and wake-ups.
measure_idle() {
    local time_before switches_before
    start_karto
    sleep 4
    time_before=$(processor_time "$pid")
    switches_before=$(switches "$pid")
    sleep "$idle_seconds"
    idle="$(kilobytes "$pid" Rss) $(kilobytes "$pid" Pss)"
    idle+=" $(($(processor_time "$pid") - time_before)) $(($(switches "$pid") - switches_before))"
    stop_karto
}

# Ends the last program started in the background.
end_tray() {
    kill "${background[-1]}"
    wait "${background[-1]}" 2>/dev/null || true
    unset 'background[-1]'
}

# A panel in its first session asks what to look like.
export XFCE_PANEL_MIGRATE_DEFAULT=1
in_background xfce4-panel --disable-wm-check
wait_for dbus-send --session --print-reply --dest=org.kde.StatusNotifierWatcher /StatusNotifierWatcher \
    org.freedesktop.DBus.Peer.Ping
times=()
for ((run = 0; run < starts; ++run)); do
    start_karto
    times+=("$elapsed")
    stop_karto
done
mapfile -t times < <(printf '%s\n' "${times[@]}" | sort -n)
measure_idle
read -ra on_bus <<<"$idle"
end_tray

in_background trayer --edge top --height 24
measure_idle
read -ra docked <<<"$idle"
end_tray

awk -v middle="${times[starts / 2]}" -v fastest="${times[0]}" -v slowest="${times[-1]}" -v starts="$starts" \
    -v bus="${on_bus[*]}" -v dock="${docked[*]}" -v seconds="$idle_seconds" 'BEGIN {
    split(bus, b, " "); split(dock, d, " ")
    print "| measured | value |\n|---|---:|"
    printf "| start to shortcuts claimed, median of %d | %.0f ms |\n", starts, middle / 1000
    printf "| fastest and slowest start | %.0f and %.0f ms |\n", fastest / 1000, slowest / 1000
    print "\n| measured | tray on the bus | docked in a tray |\n|---|---:|---:|"
    printf "| resident memory | %.1f MB | %.1f MB |\n", b[1] / 1024, d[1] / 1024
    printf "| proportional memory | %.1f MB | %.1f MB |\n", b[2] / 1024, d[2] / 1024
    printf "| processor time in %d s idle | %.2f ms | %.2f ms |\n", seconds, b[3] / 1e6, d[3] / 1e6
    printf "| wake-ups in %d s idle | %d | %d |\n", seconds, b[4], d[4]
}'
