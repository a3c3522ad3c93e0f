# Shared by the scripts beside it: they run in the top folder of the source tree.
# shellcheck shell=bash
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

say() { printf '\n==> %s\n' "$*"; }

# build PRESET [cmake options] [-- targets]: configures and builds, with a compiler cache where there is one.
build() {
    local preset=$1 options=() targets=()
    shift
    while [[ $# -gt 0 && $1 != -- ]]; do
        options+=("$1")
        shift
    done
    if [[ $# -gt 1 ]]; then
        targets=(--target "${@:2}")
    fi
    if command -v ccache >/dev/null; then
        options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    cmake --preset "$preset" "${options[@]}" >/dev/null
    cmake --build "build/$preset" "${targets[@]}"
}
