#!/usr/bin/env bash
# Makes docs/images/report-page.png: the first sheet of lxconfig's settings sheet for an example
# file, printed on A4 by the documented command, `lxconfig report --pdf` (a headless Chromium),
# and rendered to PNG by pdftoppm. Installs what is missing and builds lxconfig first.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh build docs
cmake -S . -B build >/dev/null
cmake --build build -j "${JOBS:-2}" --target lxconfig >/dev/null
lxconfig=$PWD/build/src/cli/lxconfig
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The example of docs/lxconfig.md: a card with the GPS receiver switched off and three values
# the window cannot hold, in the folder of its camera. The date is fixed, so the picture is too.
mkdir "$work/cam1"
"$lxconfig" defaults -o "$work/cam1/LXCONFIG.BIN"
"$lxconfig" set -q --raw "$work/cam1/LXCONFIG.BIN" gpsReceiver=0 serialBaudrate=100000 esoHeating=1500 \
    sbusZoom=17
(cd "$work" && SOURCE_DATE_EPOCH=1795392000 "$lxconfig" report cam1/LXCONFIG.BIN \
    --pdf report.pdf) || true # the file has findings
pdftoppm -png -r 60 -f 1 -l 1 -singlefile "$work/report.pdf" docs/images/report-page
echo "docs/images/report-page.png is up to date"
