#!/usr/bin/env bash
# Configures and builds the project in build/ (two parallel jobs by default).
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" "$@" >/dev/null
cmake --build build -j "${JOBS:-2}"
