#!/usr/bin/env bash
# Makes docs/images/report-page.png: the first sheet of lxconfig's settings sheet for an example
# file, printed on A4 by a real headless browser (Chromium) and rendered to PNG by pdftoppm.
# Installs what is missing and builds lxconfig first.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh build docs
cmake -S . -B build >/dev/null
cmake --build build -j "${JOBS:-2}" --target lxconfig >/dev/null
lxconfig=$PWD/build/src/cli/lxconfig
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The example of docs/lxconfig.md: a card with the GPS receiver switched off and three values
# the window cannot hold.
"$lxconfig" defaults -o "$work/LXCONFIG.BIN"
"$lxconfig" set -q "$work/LXCONFIG.BIN" gpsReceiver=0 serialBaudrate=100000 esoHeating=1500 \
    sbusZoom=17
(cd "$work" && "$lxconfig" report LXCONFIG.BIN -o report.html) || true # the file has findings
sed -i 's/size: auto/size: A4/' "$work/report.html"
chromium --headless --no-sandbox --disable-gpu --no-pdf-header-footer \
    --user-data-dir="$work/profile" --print-to-pdf="$work/report.pdf" \
    "file://$work/report.html" 2>/dev/null
pdftoppm -png -r 60 -f 1 -l 1 -singlefile "$work/report.pdf" docs/images/report-page
echo "docs/images/report-page.png is up to date"
