#!/usr/bin/env bash
# Builds the Debian package, unpacks it into a temporary root and runs both programs from there.
set -euo pipefail
build_dir=$1
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

(cd "$build_dir" && cpack -G DEB -B "$root/out" >/dev/null)
package=$(ls "$root"/out/*.deb)
echo "package: $(basename "$package")"

depends=$(dpkg-deb -f "$package" Depends)
echo "Depends: $depends"
case "$depends" in
    *libqt5widgets5*) ;;
    *) echo "the computed dependencies do not name the Qt widgets library" >&2; exit 1 ;;
esac

dpkg-deb -x "$package" "$root/fs"
for file in usr/bin/lumarex-config usr/bin/lxconfig \
    usr/share/applications/org.lumarex.config.desktop \
    usr/share/icons/hicolor/scalable/apps/org.lumarex.config.svg \
    usr/share/metainfo/org.lumarex.config.metainfo.xml \
    usr/share/man/man1/lumarex-config.1 usr/share/man/man1/lxconfig.1; do
    [ -e "$root/fs/$file" ] || { echo "missing from the package: $file" >&2; exit 1; }
done

"$root/fs/usr/bin/lxconfig" --version

# The editor runs until its window is closed; still running after a few seconds means it
# started, an earlier exit means it failed.
status=0
QT_QPA_PLATFORM=offscreen timeout 5 "$root/fs/usr/bin/lumarex-config" || status=$?
if [ "$status" -ne 124 ]; then
    echo "the packaged editor ended with status $status instead of running" >&2
    exit 1
fi
echo "the packaged editor started headless"
