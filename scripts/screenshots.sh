#!/usr/bin/env bash
# Installs what is missing, builds, and refreshes every picture in docs/images/ from the editor
# running on a virtual X server.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh build run
scripts/build.sh
mkdir -p docs/images
xvfb-run -a -s "-screen 0 1024x768x24" build/tools/screenshots/lumarex-screenshots docs/images
echo "Pictures written to docs/images/"
