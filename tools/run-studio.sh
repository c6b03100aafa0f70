#!/usr/bin/env bash
# Installs what is missing, builds, and opens the bundled sample in the studio. Without a
# display it checks the sample headlessly instead and says where the result went.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${VETRA_BUILD_DIR:-$root/build}"
bash "$root/tools/install-deps.sh"
bash "$root/tools/build.sh"

# Work on a copy, so that the sample in the repository stays as it is. A copy older than the
# repository's sample is replaced, so a new version of the sample is what opens.
work="$build/samples/welcome"
if [[ ! -f "$work/welcome.vetra" || "$root/examples/welcome/welcome.vetra" -nt "$work/welcome.vetra" ]]; then
    rm -rf "$work"
    mkdir -p "$build/samples"
    cp -r "$root/examples/welcome" "$build/samples/"
fi

if [[ -n "${DISPLAY:-}" || -n "${WAYLAND_DISPLAY:-}" ]]; then
    exec "$build/bin/vetra-studio" "$work/welcome.vetra"
fi
echo "No display: checking the sample headlessly."
"$build/bin/vetra" check "$work/welcome.vetra"
echo "Sample project checked: $work/welcome.vetra"
