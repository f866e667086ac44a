#!/usr/bin/env bash
# Installs the Debian packages that building, running and testing need, when they are missing.
set -euo pipefail
packages=(cmake g++ ninja-build ccache pkg-config
          qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev qt6-image-formats-plugins
          qt6-svg-dev libqt6svg6
          libsqlite3-dev libarchive-dev mdbtools-dev fonts-sixtyfour
          cc1541 cbmconvert xvfb p7zip-full gcab mdbtools clang libclang-rt-14-dev
          desktop-file-utils xdotool imagemagick)
missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing missing packages: ${missing[*]}"
    if [ "$(id -u)" -eq 0 ]; then SUDO=""; else SUDO="sudo"; fi
    export DEBIAN_FRONTEND=noninteractive
    $SUDO apt-get update -qq
    $SUDO apt-get install -y -qq "${missing[@]}"
fi
