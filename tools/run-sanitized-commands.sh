#!/usr/bin/env bash
# Builds the random undo-command histories (tests/commands/tst_randomcommands.cpp) with clang under
# address, leak and undefined-behaviour checks, in the build folder that tools/run-fuzz.sh uses (the
# instrumented core library is shared), and runs them.
# Usage: run-sanitized-commands.sh [test arguments...]
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${VETRA_FUZZ_BUILD_DIR:-${VETRA_BUILD_DIR:-$root/build}/fuzz-build}"
if ! command -v clang++ >/dev/null 2>&1; then
    echo "run-sanitized-commands: clang++ is missing (tools/install-deps.sh installs it)" >&2
    exit 1
fi
generator=()
command -v ninja >/dev/null 2>&1 && generator=(-G Ninja)
# The same configuration as run-fuzz.sh, so that either script can set the folder up for both.
if [[ ! -f "$build/CMakeCache.txt" ]]; then
    cmake -S "$root" -B "$build" "${generator[@]}" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DVETRA_WITH_WEB=OFF -DVETRA_BUILD_TESTS=OFF -DVETRA_FUZZ=ON \
        -DCMAKE_CXX_FLAGS="-fsanitize=address,undefined,fuzzer-no-link -fno-omit-frame-pointer -fno-sanitize-recover=undefined" \
        >/dev/null
fi
home="$(mktemp -d)"
trap 'rm -rf "$home"' EXIT
if ! cmake --build "$build" --target sanitize_commands --parallel "$(nproc)" >"$home/build.log" 2>&1; then
    cat "$home/build.log" >&2
    exit 1
fi

# Leaks count; the suppressions name only what Qt and the system keep until exit.
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0:strict_string_checks=1:detect_stack_use_after_return=1"
export LSAN_OPTIONS="suppressions=$root/tests/fuzz/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
export QT_QPA_PLATFORM=offscreen
# Three of the test's seeds: what a sanitizer finds does not hang on a rare corner of the history,
# and each seed takes half a minute under the checks. VETRA_RANDOM_SEEDS chooses others.
export VETRA_RANDOM_SEEDS="${VETRA_RANDOM_SEEDS:-1,2,3}"
export XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" VETRA_SETTINGS_FILE="$home/settings.ini"
"$build/fuzz/sanitize_commands" "$@"
