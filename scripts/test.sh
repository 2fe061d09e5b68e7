#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test; says how long each stage took, so that
# the run's cost stays visible as the suite grows.
set -euo pipefail
cd "$(dirname "$0")/.."

stage() {
    local name=$1 start=$SECONDS
    shift
    "$@"
    echo "test.sh: $name took $((SECONDS - start)) s" >&2
}

stage "installing packages" scripts/install-deps.sh build test asan fuzz valgrind debootstrap
stage "building" scripts/build.sh -DLUMAREX_WERROR=ON
stage "the suite" ctest --test-dir build --output-on-failure -j "${JOBS:-2}"
# Hardening (docs/testing.md): the save and load tests under valgrind, each fuzz target for a minute,
# then the suite again under the sanitizers.
stage "valgrind" scripts/valgrind.sh
stage "fuzzing" scripts/fuzz.sh
stage "the sanitizers" scripts/sanitize.sh
# 64-bit ARM: the cross build, lxconfig and three suites under qemu-user, the editor's start,
# and the package built and linted as a release makes it (about a minute more than the checks).
stage "arm64" scripts/package-arm64.sh
