#!/usr/bin/env bash
# Checks the formatting of every source file, and lints with clang-tidy: every file (some ten seconds each), the
# files named, or with --changed the ones that differ from the last commit. Needs a configured build/dev.
set -euo pipefail
source "$(dirname "$0")/common.sh"

if [[ ! -f build/dev/compile_commands.json ]]; then
    echo "configure first: cmake --preset dev" >&2
    exit 1
fi
mapfile -t all < <(git ls-files -- '*.cpp' '*.h')
say "Checking the formatting of ${#all[@]} files"
clang-format-19 --dry-run --Werror "${all[@]}"

if [[ ${1:-} == --changed ]]; then
    mapfile -t sources < <(git diff --name-only --diff-filter=d HEAD -- '*.cpp')
elif [[ $# -gt 0 ]]; then
    sources=("$@")
else
    # Only what the development build compiles; headers are seen through the files that include them.
    mapfile -t sources < <(git ls-files -- 'Sources/*.cpp' 'Tests/*.cpp' 'Showcase/*.cpp' 'Benchmarks/*.cpp')
fi
if [[ ${#sources[@]} -gt 0 ]]; then
    say "Linting ${#sources[@]} files"
    printf '%s\0' "${sources[@]}" | xargs -0 -n 4 -P "$(nproc)" clang-tidy-19 -p build/dev --quiet
fi
