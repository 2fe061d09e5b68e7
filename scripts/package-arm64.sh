#!/usr/bin/env bash
# Builds the arm64 (64-bit ARM) Debian package on an amd64 Debian machine, for a release, and
# checks it: the cross build in build-arm64/ (cmake/toolchains/aarch64-linux-gnu.cmake), the
# format, lxconfig and round-trip suites run under qemu-user, the editor started offscreen under
# qemu with the tabs probe (it builds the window, checks every tab and ends), then
# lumarex-config_VERSION_arm64.deb made by cpack and checked by lintian as the amd64 one is.
# The package is left in build-arm64/. Usage: package-arm64.sh [--no-package]
#   --no-package  the build and the suites only (what CI runs on every change)
set -euo pipefail
cd "$(dirname "$0")/.."
package=true
[ "${1:-}" != --no-package ] || package=false

stage() {
    local name=$1 start=$SECONDS
    shift
    "$@"
    echo "package-arm64.sh: $name took $((SECONDS - start)) s" >&2
}

stage "installing packages" scripts/install-deps.sh build arm64
emulator=(qemu-aarch64-static -L /usr/aarch64-linux-gnu)
suites=(tst_format tst_cli tst_roundtrip)

build() {
    cmake -S . -B build-arm64 -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/aarch64-linux-gnu.cmake \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLUMAREX_WERROR=ON "$@" >/dev/null
    cmake --build build-arm64 -j "${JOBS:-2}" --target lxconfig lumarex-config lumarex_tabs_probe \
        "${suites[@]}"
}
stage "the arm64 build" build

# CTest runs the suites through the emulator (CMAKE_CROSSCOMPILING_EMULATOR).
suites_regex="^($(IFS='|'; echo "${suites[*]}"))\$"
stage "the arm64 suites under qemu" \
    ctest --test-dir build-arm64 --output-on-failure -j "${JOBS:-2}" -R "$suites_regex"

smoke() {
    local log=build-arm64/editor-smoke.log
    if ! QT_QPA_PLATFORM=offscreen QT_PLUGIN_PATH=build-arm64/tests/desktop/tabsprobe/plugins \
        QT_STYLE_OVERRIDE=lumarex-tabs-probe "${emulator[@]}" build-arm64/src/lumarex-config \
        >"$log" 2>&1; then
        cat "$log"
        echo "package-arm64.sh: the arm64 editor did not start and show its window; see $log" >&2
        return 1
    fi
    grep -E '^(tab|window|==)' "$log" || true
    echo "the arm64 editor built its window under qemu and showed every tab"
}
stage "the arm64 editor's start under qemu" smoke

$package || exit 0

make_package() {
    rm -f build-arm64/lumarex-config_*_arm64.deb
    # dpkg-shlibdeps, run by cpack, finds the arm64 libraries by the host architecture.
    (cd build-arm64 && DEB_HOST_ARCH=arm64 cpack -G DEB >/dev/null)
    local deb
    deb=$(ls build-arm64/lumarex-config_*_arm64.deb)
    echo "package: $deb"
    echo "Depends: $(dpkg-deb -f "$deb" Depends)"
    # The same tags as the amd64 package's check (tests/packaging/package-runs.sh) are allowed.
    local allowed
    allowed=$(sed -n "s/^allowed='\(.*\)'$/\1/p" tests/packaging/package-runs.sh)
    lintian --fail-on none --pedantic --display-info --display-experimental "$deb" \
        >build-arm64/lintian.log
    sed 's/^/  /' build-arm64/lintian.log
    if grep -E '^[A-Z]: ' build-arm64/lintian.log | grep -vqE "$allowed"; then
        echo "package-arm64.sh: lintian reports a tag not listed as unavoidable" >&2
        return 1
    fi
}
stage "the arm64 package" make_package
