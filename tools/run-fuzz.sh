#!/usr/bin/env bash
# Builds the project-loader fuzz target with clang (libFuzzer, address and undefined-behaviour
# checks) in a build folder of its own, and runs it for a bounded time on our own project files.
# Usage: run-fuzz.sh [SECONDS]   (default 60)
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
seconds="${1:-60}"
build="${VETRA_FUZZ_BUILD_DIR:-${VETRA_BUILD_DIR:-$root/build}/fuzz-build}"
if ! command -v clang++ >/dev/null 2>&1; then
    echo "run-fuzz: clang++ is missing (tools/install-deps.sh installs it)" >&2
    exit 1
fi
generator=()
command -v ninja >/dev/null 2>&1 && generator=(-G Ninja)
if [[ ! -f "$build/CMakeCache.txt" ]]; then
    cmake -S "$root" -B "$build" "${generator[@]}" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DVETRA_WITH_WEB=OFF -DVETRA_BUILD_TESTS=OFF -DVETRA_FUZZ=ON \
        -DCMAKE_CXX_FLAGS="-fsanitize=address,undefined,fuzzer-no-link -fno-omit-frame-pointer -fno-sanitize-recover=undefined" \
        >/dev/null
fi
cmake --build "$build" --target fuzz_projectload --parallel "$(nproc)" >/dev/null

# The fuzzer adds what it finds to its first folder: never the seeds in the repository.
corpus="$(mktemp -d)"
trap 'rm -rf "$corpus"' EXIT
cp "$root"/tests/fuzz/corpus/*.json "$corpus"/
find "$root/examples" -name '*.vetra' -exec cp {} "$corpus"/ \;
cd "$build"
log="$corpus/fuzz.log"
status=0
ASAN_OPTIONS=detect_leaks=0 "$build/fuzz/fuzz_projectload" -max_total_time="$seconds" -timeout=20 \
    -rss_limit_mb=2048 -max_len=65536 "$corpus" >"$log" 2>&1 || status=$?
if ((status != 0)); then
    # The whole report, and the input that broke the loader (libFuzzer leaves it in this folder).
    cat "$log"
    ls "$build"/crash-* "$build"/timeout-* "$build"/oom-* 2>/dev/null || true
    exit "$status"
fi
grep -E "DONE|^Done" "$log" || true
