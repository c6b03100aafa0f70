#!/usr/bin/env bash
# Configures and builds Vetra Studio into ./build (or $VETRA_BUILD_DIR).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${VETRA_BUILD_DIR:-$root/build}"
generator=()
command -v ninja >/dev/null 2>&1 && generator=(-G Ninja)
if [[ ! -f "$build/CMakeCache.txt" ]]; then
    cmake -S "$root" -B "$build" "${generator[@]}" -DCMAKE_BUILD_TYPE="${VETRA_BUILD_TYPE:-RelWithDebInfo}"
fi
cmake --build "$build" --parallel "$(nproc)"
