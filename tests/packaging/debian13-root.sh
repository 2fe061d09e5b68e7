#!/usr/bin/env bash
# Installs the Debian package built here into a fresh Debian 13 ("trixie") root, as a user of
# that release would: a minimal root made by debootstrap, the package installed with apt, its
# dependencies resolved from Debian 13's archive; then lxconfig and the editor (offscreen, with
# the tabs probe loaded, which checks the window and ends it) are run from that root.
# Needs root, debootstrap and the Debian archive; without them it skips and says why.
# Making the root (some 45 MB downloaded, 150 MB unpacked) takes minutes; the fresh root is kept
# as build/debian13-root.tar (uncompressed: keeping it costs seconds) and later runs start from a
# copy of it. Delete it to make a new one.
# Usage: debian13-root.sh BUILD_DIR BUILD_TYPE PROBE_PLUGIN_DIR
set -euo pipefail
build_dir=$1 build_type=$2 plugin_dir=$3
suite=trixie

skip() {
    echo "SKIP: $*"
    exit 77
}
case "$build_type" in
    Release | RelWithDebInfo | MinSizeRel) ;;
    *) skip "packages are built from a release build type (this build: '$build_type')" ;;
esac
[ "$(id -u)" -eq 0 ] || skip "making a Debian 13 root and installing into it needs root"
command -v debootstrap >/dev/null || skip "debootstrap is missing (scripts/install-deps.sh debootstrap)"
command -v chroot >/dev/null || skip "chroot is missing"

# The Debian mirror this machine uses, from its apt sources; Debian's own otherwise.
mirror=$(sed -n -e 's/^URIs: *\([^ ]*debian\/*\)$/\1/p' -e 's/^deb  *\(http[^ ]*\/debian\/*\) .*/\1/p' \
    /etc/apt/sources.list /etc/apt/sources.list.d/*.sources /etc/apt/sources.list.d/*.list \
    2>/dev/null | head -n 1) || true
mirror=${mirror:-http://deb.debian.org/debian}
curl_or_wget() {
    if command -v curl >/dev/null; then curl -fsS -o /dev/null "$1"; else wget -q -O /dev/null "$1"; fi
}
cache=$build_dir/debian13-root.tar
if [ ! -s "$cache" ] && ! curl_or_wget "$mirror/dists/$suite/Release"; then
    skip "the Debian archive ($mirror) cannot be reached"
fi

work=$(mktemp -d /var/tmp/lumarex-debian13.XXXXXX)
trap 'rm -rf --one-file-system "$work"' EXIT
root=$work/root

(cd "$build_dir" && cpack -G DEB -B "$work/out" >/dev/null)
package=$(ls "$work"/out/*.deb)
echo "package: $(basename "$package")"

start=$SECONDS
if [ -s "$cache" ]; then
    mkdir "$root"
    tar -xf "$cache" -C "$root"
    echo "Debian 13 root from $cache"
else
    debootstrap --variant=minbase "$suite" "$root" "$mirror" >"$work/debootstrap.log" 2>&1 || {
        tail -n 20 "$work/debootstrap.log"
        echo "FAIL: debootstrap could not make a Debian 13 root from $mirror" >&2
        exit 1
    }
    tar -cf "$cache.part" -C "$root" . && mv "$cache.part" "$cache"
    echo "Debian 13 root made by debootstrap from $mirror, kept as $cache"
fi
echo "Debian $(cat "$root/etc/debian_version") root ready in $((SECONDS - start)) s"

# apt inside the new root resolves the package's dependencies from Debian 13's archive.
start=$SECONDS
cp "$package" "$root/tmp/"
in_root() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 "$@"; }
in_root apt-get update -qq >"$work/apt.log" 2>&1 &&
    in_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "/tmp/$(basename "$package")" >>"$work/apt.log" 2>&1 || {
    tail -n 30 "$work/apt.log"
    echo "FAIL: apt could not install $(basename "$package") on Debian 13" >&2
    exit 1
}
echo "installed with apt in $((SECONDS - start)) s; from Debian 13:"
in_root dpkg-query -W -f='  ${Package} ${Version}\n' libc6 libqt5core5t64 libqt5widgets5t64 2>/dev/null ||
    in_root dpkg-query -W -f='  ${Package} ${Version}\n' libc6 'libqt5core5*' 'libqt5widgets5*'

in_root lxconfig --version
in_root lxconfig defaults -o /tmp/LXCONFIG.BIN
in_root lxconfig check /tmp/LXCONFIG.BIN
cmp "$root/tmp/LXCONFIG.BIN" "$(dirname "$0")/../data/untouched-form.bin"
echo "lxconfig on Debian 13 writes the untouched form's file"

# The editor builds its window on the offscreen platform; the tabs probe reports the window and
# every tab, then ends it. Its fit checks fail on the offscreen platform's 800x600 screen on any
# system, so only the report is required here; desktop_launcher_dpi checks the fit under Xvfb.
cp -r "$plugin_dir" "$root/tmp/probe-plugins"
in_root env QT_QPA_PLATFORM=offscreen QT_PLUGIN_PATH=/tmp/probe-plugins \
    QT_STYLE_OVERRIDE=lumarex-tabs-probe lumarex-config >"$work/editor.log" 2>&1 || true
if ! grep -q '^window ' "$work/editor.log" || [ "$(grep -c '^tab [0-9]' "$work/editor.log")" -ne 8 ]; then
    cat "$work/editor.log"
    echo "FAIL: the editor on Debian 13 did not build its window of eight tabs" >&2
    exit 1
fi
grep -E '^(window|tab [0-9])' "$work/editor.log"
echo "the editor on Debian 13 built its window of eight tabs"
