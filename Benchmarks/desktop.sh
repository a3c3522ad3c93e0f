# shellcheck shell=bash
# Sourced by the benchmark scripts: a private desktop with two displays, left and right, under openbox, or a bare X
# server, and a home directory of its own. All of it goes with the script.

background=()

# Runs a command until the end of the script; its output goes to a file of its name in the home directory.
in_background() {
    "$@" >"$HOME/${1##*/}.out" 2>&1 &
    background+=($!)
}

# Tries a command every 50 ms for ten seconds.
wait_for() {
    local attempt
    for ((attempt = 0; attempt < 200; ++attempt)); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.05
    done
    echo "gave up waiting for: $*" >&2
    return 1
}

close_desktop() {
    local index
    for ((index = ${#background[@]} - 1; index >= 0; --index)); do
        kill "${background[index]}" 2>/dev/null || continue
        wait "${background[index]}" 2>/dev/null || true
    done
    rm -rf "$private_home"
}

# start_server WIDTHxHEIGHT: an X server without a window manager.
start_server() {
    private_home=$(mktemp -d)
    HOME=$private_home
    XDG_RUNTIME_DIR=$private_home
    export HOME XDG_RUNTIME_DIR
    unset WAYLAND_DISPLAY XDG_SESSION_TYPE XDG_CONFIG_HOME
    trap close_desktop EXIT

    # Ahead of everything else that the machine does. All that is started from here on inherits it.
    chrt --fifo --pid 5 "$BASHPID" 2>/dev/null ||
        echo "No real-time priority here: whatever else the machine does shows in the figures." >&2
    Xvfb -displayfd 3 -screen 0 "$1x24" -noreset -nolisten tcp 3>"$HOME/display" 2>"$HOME/Xvfb.out" &
    background+=($!)
    wait_for grep -q . "$HOME/display"
    DISPLAY=:$(<"$HOME/display")
    export DISPLAY
    # The memory of the screen comes to be when it is first written to, which is nobody's time but the server's.
    xsetroot -solid '#505860'
}

# start_desktop: expects openbox's configuration on standard input.
start_desktop() {
    start_server 3840x1080
    cat >"$HOME/openbox.xml"
    DBUS_SESSION_BUS_ADDRESS=unix:path=$HOME/bus
    export DBUS_SESSION_BUS_ADDRESS
    in_background dbus-daemon --session --nofork --address="$DBUS_SESSION_BUS_ADDRESS"
    xrandr --setmonitor left 1920/508x1080/286+0+0 screen --setmonitor right 1920/508x1080/286+1920+0 none >/dev/null
    # Announces itself before it takes windows in, and runs the command afterwards.
    in_background openbox --config-file "$HOME/openbox.xml" --startup "touch $HOME/managed"
    wait_for test -e "$HOME/managed"
}

# Two halves side by side on the left display, two above each other on the right one: zones 1 to 4.
write_karto_config() {
    mkdir -p "$HOME/.config/karto"
    cat >"$HOME/.config/karto/config.toml" <<'CONFIG'
[profile]
name = "Benchmark"

[[display]]
name = "left"
orientation = "landscape"
split = { axis = "vertical", at = 0.5, first = {}, second = {} }

[[display]]
name = "right"
orientation = "landscape"
split = { axis = "horizontal", at = 0.5, first = {}, second = {} }
CONFIG
}

# What a process took so far, summed over its threads: nanoseconds on a processor, and switches away from it, each of
# which took a wake-up.
processor_time() { cat /proc/"$1"/task/*/schedstat | awk '{ sum += $1 } END { print sum }'; }
switches() { awk '/ctxt_switches/ { sum += $2 } END { print sum }' /proc/"$1"/task/*/status; }

# kilobytes PID Rss|Pss: the memory that it holds.
kilobytes() { awk -v key="$2:" '$1 == key { print $2 }' /proc/"$1"/smaps_rollup; }
