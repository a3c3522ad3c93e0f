#!/usr/bin/env bash
# Checks the formatting of every source file, and lints them with clang-tidy (all of them, or the ones named).
# Needs a configured development build: build/dev.
set -euo pipefail
source "$(dirname "$0")/common.sh"

if [[ ! -f build/dev/compile_commands.json ]]; then
    echo "configure first: cmake --preset dev" >&2
    exit 1
fi
mapfile -t all < <(git ls-files -- '*.cpp' '*.h')
say "Checking the formatting of ${#all[@]} files"
clang-format-19 --dry-run --Werror "${all[@]}"

if [[ $# -gt 0 ]]; then
    sources=("$@")
else
    # Only what the development build compiles; headers are seen through the files that include them.
    mapfile -t sources < <(git ls-files -- 'Sources/*.cpp' 'Tests/*.cpp')
fi
if [[ ${#sources[@]} -gt 0 ]]; then
    say "Linting ${#sources[@]} files"
    printf '%s\0' "${sources[@]}" | xargs -0 -n 4 -P "$(nproc)" clang-tidy-19 -p build/dev --quiet
fi
