#!/usr/bin/env bash
# Builds the arm64 (64-bit ARM) Debian package on an amd64 Debian machine, for a release, and
# checks it: the cross build in build-arm64/ (cmake/toolchains/aarch64-linux-gnu.cmake), lxconfig
# run under qemu-user against the bytes the amd64 build writes, the editor started offscreen
# under qemu with the tabs probe (it builds the window and ends), the format, lxconfig and
# round-trip QTest suites under qemu, then lumarex-config_VERSION_arm64.deb made by cpack and
# checked by lintian as the amd64 one is.
# The package is left in build-arm64/. Usage: package-arm64.sh [--no-package]
#   --no-package  the build and the checks under qemu only, a minute sooner
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
# The suites that run under qemu: the file format, lxconfig's commands and the round trip.
suites=(tst_format tst_cli tst_roundtrip)
# As the toolchain file says why: the loader of libc6:arm64, not libc6-arm64-cross's.
emulator=(qemu-aarch64-static -L /)

build() {
    cmake -S . -B build-arm64 -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/aarch64-linux-gnu.cmake \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLUMAREX_WERROR=ON "$@" >/dev/null
    cmake --build build-arm64 -j "${JOBS:-2}" --target lxconfig lumarex-config lumarex_tabs_probe \
        "${suites[@]}"
}
stage "the arm64 build" build

# lxconfig under qemu, as a user runs it: its files must be the bytes the amd64 build writes,
# which tests/data/untouched-form.bin pins.
lxconfig_checks() {
    local dir=build-arm64/lxconfig-checks lx=("${emulator[@]}" build-arm64/src/cli/lxconfig)
    rm -rf "$dir" && mkdir -p "$dir"
    "${lx[@]}" --version
    "${lx[@]}" defaults -o "$dir/LXCONFIG.BIN"
    cmp "$dir/LXCONFIG.BIN" tests/data/untouched-form.bin
    "${lx[@]}" set "$dir/LXCONFIG.BIN" gpsReceiver=0 serialBaudrate=9600
    "${lx[@]}" check "$dir/LXCONFIG.BIN"
    "${lx[@]}" export "$dir/LXCONFIG.BIN" -o "$dir/form.json"
    "${lx[@]}" import "$dir/form.json" -o "$dir/IMPORTED.BIN"
    cmp "$dir/LXCONFIG.BIN" "$dir/IMPORTED.BIN"
    "${lx[@]}" diff tests/data/untouched-form.bin "$dir/LXCONFIG.BIN" >"$dir/diff.txt" || true
    grep -q . "$dir/diff.txt"
    echo "the arm64 lxconfig writes the amd64 bytes and reads its own files back"
}
stage "lxconfig under qemu" lxconfig_checks

# The QTest suites through CTest's emulator; the lxconfig they start runs under qemu too
# (build-arm64/tests/lxconfig-emulated). Qt starts a process with clone(CLONE_PIDFD) whenever the
# kernel has pidfds; qemu-user supports that flag from 8.0 on (Debian 13 has 10.0), Debian 12's
# 7.2 refuses it, so there the suites that start lxconfig are skipped, and say so.
arm64_suites() {
    local run=(tst_format) version
    version=$("${emulator[0]}" --version | sed -n 's/.*version \([0-9][0-9]*\)\..*/\1/p')
    if [ "${version:-0}" -ge 8 ]; then
        run=("${suites[@]}")
    else
        echo "SKIPPED: tst_cli, tst_roundtrip under qemu-user $version, which cannot start" \
            "a process for the emulated program (clone with CLONE_PIDFD needs qemu 8.0)" >&2
    fi
    ctest --test-dir build-arm64 --output-on-failure -j "${JOBS:-2}" \
        -R "^($(IFS='|'; echo "${run[*]}"))\$"
}
stage "the arm64 suites under qemu" arm64_suites

# The editor builds its window on the offscreen platform (which starts no thread), and the tabs
# probe reports its window and every tab, then ends it. The probe's fit checks fail on the
# offscreen platform's 800x600 screen on any architecture; desktop_launcher_dpi checks the fit.
smoke() {
    local log=build-arm64/editor-smoke.log
    QT_QPA_PLATFORM=offscreen QT_PLUGIN_PATH=build-arm64/tests/desktop/tabsprobe/plugins \
        QT_STYLE_OVERRIDE=lumarex-tabs-probe "${emulator[@]}" build-arm64/src/lumarex-config \
        >"$log" 2>&1 || true
    if ! grep -q '^window ' "$log" || [ "$(grep -c '^tab [0-9]' "$log")" -ne 8 ]; then
        cat "$log"
        echo "package-arm64.sh: the arm64 editor did not build its window; see $log" >&2
        return 1
    fi
    grep -E '^(window|tab [0-9])' "$log"
    echo "the arm64 editor built its window of eight tabs under qemu"
}
stage "the arm64 editor's start under qemu" smoke

$package || exit 0

make_package() {
    # What the package installs (the programs, icons, manual pages, the form's schema), not the
    # suites that did not run under qemu: installing then builds nothing more.
    cmake -S . -B build-arm64 -DCMAKE_SKIP_INSTALL_ALL_DEPENDENCY=ON >/dev/null
    cmake --build build-arm64 -j "${JOBS:-2}" --target lxconfig lumarex-config lumarex_data \
        lumarex_formschema >/dev/null
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
