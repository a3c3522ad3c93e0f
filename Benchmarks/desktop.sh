# Sourced by the benchmark scripts: a private desktop with two displays, left and right, under openbox, and a home
# directory of its own. All of it goes with the script.

# Everything needed to build, and what the caller adds.
installPackages() {
    local package missing=()
    for package in g++ cmake ninja-build pkg-config qt6-base-dev libxcb1-dev libxcb-randr0-dev libxcb-xkb-dev \
        libxcb-shape0-dev libxcb-xfixes0-dev libxcb-res0-dev libxcb-icccm4-dev libxcb-ewmh-dev libxcb-xtest0-dev \
        libtomlplusplus-dev libfmt-dev libutf8proc-dev libsodium-dev libbenchmark-dev "$@"; do
        dpkg -s "$package" >/dev/null 2>&1 || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    echo "Installing ${missing[*]}" >&2
    local asRoot=()
    [[ $EUID == 0 ]] || asRoot=(sudo)
    "${asRoot[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${asRoot[@]}" apt-get install -qq --no-install-recommends "${missing[@]}" >/dev/null
}

desktopPackages=(xvfb openbox dbus x11-xserver-utils fonts-dejavu-core)
background=()

# Runs a command until the end of the script; its output goes to a file of its name in the home directory.
inBackground() {
    "$@" >"$HOME/${1##*/}.out" 2>&1 &
    background+=($!)
}

# Tries a command every 50 ms for ten seconds.
waitFor() {
    local attempt
    for ((attempt = 0; attempt < 200; ++attempt)); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.05
    done
    echo "gave up waiting for: $*" >&2
    return 1
}

closeDesktop() {
    local index
    for ((index = ${#background[@]} - 1; index >= 0; --index)); do
        kill "${background[index]}" 2>/dev/null || continue
        wait "${background[index]}" 2>/dev/null || true
    done
    rm -rf "$privateHome"
}

# startDesktop: expects openbox's configuration on standard input.
startDesktop() {
    privateHome=$(mktemp -d)
    HOME=$privateHome
    XDG_RUNTIME_DIR=$privateHome
    export HOME XDG_RUNTIME_DIR
    unset WAYLAND_DISPLAY XDG_SESSION_TYPE XDG_CONFIG_HOME
    trap closeDesktop EXIT
    cat >"$HOME/openbox.xml"

    Xvfb -displayfd 3 -screen 0 3840x1080x24 -noreset -nolisten tcp 3>"$HOME/display" 2>"$HOME/Xvfb.out" &
    background+=($!)
    waitFor grep -q . "$HOME/display"
    DISPLAY=:$(<"$HOME/display")
    DBUS_SESSION_BUS_ADDRESS=unix:path=$HOME/bus
    export DISPLAY DBUS_SESSION_BUS_ADDRESS
    inBackground dbus-daemon --session --nofork --address="$DBUS_SESSION_BUS_ADDRESS"
    xrandr --setmonitor left 1920/508x1080/286+0+0 screen --setmonitor right 1920/508x1080/286+1920+0 none >/dev/null
    # Announces itself before it takes windows in, and runs the command afterwards.
    inBackground openbox --config-file "$HOME/openbox.xml" --startup "touch $HOME/managed"
    waitFor test -e "$HOME/managed"
}

# Two halves side by side on the left display, two above each other on the right one: zones 1 to 4.
writeKartoConfig() {
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
