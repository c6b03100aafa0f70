#!/usr/bin/env bash
# Installs what building and testing Vetra Studio needs on Debian 12, and only what is missing.
# Safe to run again: with everything present it changes nothing and needs no network.
set -euo pipefail

packages=(
    g++ clang cmake ninja-build ccache pkg-config
    qtbase5-dev qtbase5-dev-tools qtwebengine5-dev qtwebengine5-dev-tools
    libqt5websockets5-dev libqt5webchannel5-dev libqt5svg5-dev
    libquazip1-qt5-dev
    xvfb xauth fonts-dejavu-core
    chromium curl
)
# Node.js may come from elsewhere than Debian; only install Debian's when there is none.
command -v node >/dev/null 2>&1 || packages+=(nodejs)
command -v npm >/dev/null 2>&1 || packages+=(npm)

missing=()
for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
    [[ "$status" == "install ok installed" ]] || missing+=("$p")
done

if ((${#missing[@]} == 0)); then
    echo "install-deps: everything is installed"
    exit 0
fi

SUDO=""
if [[ $(id -u) -ne 0 ]]; then
    SUDO="sudo"
fi
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
