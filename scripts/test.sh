#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh build test asan fuzz valgrind
scripts/build.sh -DLUMAREX_WERROR=ON
ctest --test-dir build --output-on-failure -j "${JOBS:-2}"
# Hardening (docs/testing.md): the save and load tests under valgrind, each fuzz target for a minute,
# then the suite again under the sanitizers.
scripts/valgrind.sh
scripts/fuzz.sh
scripts/sanitize.sh
