#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (C++ under a virtual X display, and the
# browser tests in Debian's Chromium). Prints the ctest summary.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${VETRA_BUILD_DIR:-$root/build}"
bash "$root/tools/install-deps.sh"
bash "$root/tools/build.sh"
cd "$build"
export QTWEBENGINE_DISABLE_SANDBOX=1
xvfb-run -a -s "-screen 0 1600x1000x24" ctest --output-on-failure --parallel "$(nproc)" --timeout 600
