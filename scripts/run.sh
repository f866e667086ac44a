#!/usr/bin/env bash
# Builds Vellumdock and starts it; every argument goes to the program.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/deps.sh"
"$root/scripts/build.sh" "$root/build" -DVD_BUILD_BENCH=OFF
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "No display found. Run the window under Xvfb:  xvfb-run $root/build/src/vellumdock $*"
    echo "or use the command line:                     $root/build/src/vellumdock-cli --help"
    exit 0
fi
exec "$root/build/src/vellumdock" "$@"
