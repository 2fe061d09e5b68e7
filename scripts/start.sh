#!/usr/bin/env bash
# Installs what is missing, builds, and starts the editor. Without a display it says so and
# runs the editor on a virtual X server (Xvfb).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh build run
scripts/build.sh
# As the desktop launcher starts it: the toolkit scales the whole window on a high-density
# screen, not only its fonts (unless the caller chose otherwise).
export QT_AUTO_SCREEN_SCALE_FACTOR=${QT_AUTO_SCREEN_SCALE_FACTOR:-1}
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "No display found: running the editor under Xvfb (a virtual X server)."
    exec xvfb-run -a -s "-screen 0 1280x800x24" build/src/lumarex-config "$@"
fi
exec build/src/lumarex-config "$@"
