#!/usr/bin/env bash
# Starts the editor exactly as the desktop launcher does (its Exec line, run by the shell) on
# virtual X servers of 96 and 192 dpi, with the tabs probe style loaded into it, and checks that
# the window has the class the launcher names and shows every tab fully.
# Usage: launcher-dpi.sh DESKTOP_FILE EDITOR_DIR PLUGIN_DIR OUTPUT_DIR
set -euo pipefail
desktop_file=$1 editor_dir=$2 plugin_dir=$3 output_dir=$4

if ! command -v xvfb-run >/dev/null || ! command -v xprop >/dev/null ||
    ! command -v dbus-run-session >/dev/null; then
    echo "SKIP: xvfb-run, xprop and dbus-run-session are needed (scripts/install-deps.sh test)"
    exit 77
fi

# A desktop session has a session bus, and the toolkit connects to it when the window opens.
# Each editor gets a private one, as the desktop would give it: without any, the bus library
# tries to start one with dbus-launch and, when that is missing (as on a bare machine), loses
# the buffer it read the answer into, which the sanitizer build reports as a leak of the
# editor. Nor does the test then depend on the bus of whoever runs it.
unset DBUS_SESSION_BUS_ADDRESS

entry() { sed -n "s/^$1=//p" "$desktop_file"; }
exec_line=$(entry Exec)
window_class=$(entry StartupWMClass)
echo "launcher: Exec=$exec_line StartupWMClass=$window_class"
# Field codes (%f, %u, ...) stand for files the desktop passes; the editor takes none.
exec_line=${exec_line//%[fFuUick]/}

# A desktop session does not choose the platform; the X servers below are the display.
unset QT_QPA_PLATFORM
# In the sanitizer build: the X platform's libxkbcommon-x11 (Debian 12) copies atom names with
# strndup from buffers without a closing zero byte, which strndup allows and only
# AddressSanitizer's strict_string_checks reports.
if [ -n "${ASAN_OPTIONS:-}" ]; then
    export ASAN_OPTIONS=$ASAN_OPTIONS:strict_string_checks=0
fi
mkdir -p "$output_dir"
failed=0
# The same logical desktop of 1280x800 at both densities.
for dpi in 96 192; do
    size=$((1280 * dpi / 96))x$((800 * dpi / 96))
    log=$output_dir/dpi-$dpi.log
    status=0
    PATH=$editor_dir:$PATH QT_PLUGIN_PATH=$plugin_dir QT_STYLE_OVERRIDE=lumarex-tabs-probe \
        LUMAREX_PROBE_SCREENSHOT=$output_dir/dpi-$dpi.png \
        dbus-run-session -- xvfb-run -a -s "-screen 0 ${size}x24 -dpi $dpi" sh -c "$exec_line" \
        >"$log" 2>&1 || status=$?
    echo "== $dpi dpi ($size): editor ended with status $status"
    grep -v -e '^CRC' -e '^header' -e '^MainWindow' "$log" || true
    if [ "$status" -ne 0 ]; then
        failed=1
    fi
    if ! grep -q "^WM_CLASS(STRING) = \"[^\"]*\", \"$window_class\"$" "$log"; then
        echo "FAIL: the window's class is not the launcher's StartupWMClass \"$window_class\""
        failed=1
    fi
done
echo "screenshots: $output_dir/dpi-96.png $output_dir/dpi-192.png"
exit "$failed"
