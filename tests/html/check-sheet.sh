#!/usr/bin/env bash
# lxconfig's settings sheet checked by tools written elsewhere: the Nu HTML Checker (vnu-jar, on
# Debian's Java) finds no error, CSS included, and axe-core in Chromium (puppeteer-core) no
# accessibility violation. The sheet holds a valid file, one with findings, a refused one and one
# that cannot be read; so does compare's page of the same files. The checkers come from
# tests/html/package-lock.json (`npm ci`, which scripts/install-deps.sh test runs).
# Usage: check-sheet.sh LXCONFIG; exit 77 (skipped) when a checker or its runtime is missing.
set -euo pipefail
lxconfig=$1
here=$(cd "$(dirname "$0")" && pwd)
vnu=$here/node_modules/vnu-jar/build/dist/vnu.jar
for tool in java node chromium; do
    if ! command -v "$tool" >/dev/null; then
        echo "SKIP: $tool is not installed (scripts/install-deps.sh test installs it)"
        exit 77
    fi
done
if [ ! -f "$vnu" ] || [ ! -d "$here/node_modules/axe-core" ] ||
    [ ! -d "$here/node_modules/puppeteer-core" ]; then
    echo "SKIP: the checkers are not installed (scripts/install-deps.sh test runs npm ci in $here)"
    exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir cam1 cam2
"$lxconfig" defaults -o cam1/LXCONFIG.BIN
cp cam1/LXCONFIG.BIN cam2/LXCONFIG.BIN
"$lxconfig" set --raw cam2/LXCONFIG.BIN esoHeating=1500 sbusZoom=17 'triggerLow[2]=700'
cp cam1/LXCONFIG.BIN refused.bin
printf 'X' | dd of=refused.bin bs=1 conv=notrunc status=none # the magic "XONF"
"$lxconfig" report cam1/LXCONFIG.BIN cam2/LXCONFIG.BIN refused.bin missing.bin \
    -o sheet.html 2>/dev/null || true # refused and missing files make the status 1
# compare's page of the same files: its frame and style are the sheet's.
"$lxconfig" compare --format html cam1/LXCONFIG.BIN cam2/LXCONFIG.BIN refused.bin missing.bin \
    >compare.html 2>/dev/null || true # the files differ, and two are not compared
failed=0
java -jar "$vnu" --errors-only --also-check-css sheet.html compare.html || failed=1
node "$here/axe-sheet.js" sheet.html || failed=1
node "$here/axe-sheet.js" compare.html || failed=1
exit "$failed"
