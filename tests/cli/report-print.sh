#!/usr/bin/env bash
# Prints lxconfig's settings sheet as an operator does, `lxconfig report --pdf` (a real headless
# Chromium), on A4 and on Letter, and reads the PDF back with poppler: one camera takes two
# sheets at most; every sheet names the camera and the file and shows the date and "page N of
# M"; the first has the sign-off block; every number of the sheet is whole in the PDF's text;
# nothing is drawn in the left and right margins (nothing cut at the paper's edge); a second
# file starts a sheet of its own. Without a browser on PATH, --pdf says so and writes nothing.
# Usage: report-print.sh LXCONFIG; exit 77 (skipped) when Chromium or poppler-utils is missing.
set -euo pipefail
lxconfig=$1
for tool in chromium pdfinfo pdftotext pdftoppm python3; do
    if ! command -v "$tool" >/dev/null; then
        echo "SKIP: $tool is not installed (scripts/install-deps.sh test installs it)"
        exit 77
    fi
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir cam1 cam2
"$lxconfig" defaults -o cam1/LXCONFIG.BIN
"$lxconfig" defaults -o cam2/LXCONFIG.BIN
# The widest values there are: the 20 trigger values all different, the longest numbers.
triggers=()
for ((i = 0; i < 20; ++i)); do triggers+=("triggerLow[$i]=$((1001 + i * 47))"); done
"$lxconfig" set -q --raw cam2/LXCONFIG.BIN esoHeating=1500 sbusZoom=17 gimbalRc=1 \
    esoOffset=-2147483648 fixed134=4294967295 serialBaudrate=4294967295 "${triggers[@]}"
today=$(date +%Y-%m-%d)
failed=0
fail() { echo "FAIL: $*"; failed=1; }

# check PDF PAPER CAMERA FILE: the sheets of one file.
check() {
    local pdf=$1 paper=$2 camera=$3 file=$4
    local size pages
    size=$(pdfinfo "$pdf" | awk '/^Page size/ {printf "%.0fx%.0f", $3, $5}')
    pages=$(pdfinfo "$pdf" | awk '/^Pages/ {print $2}')
    echo "$pdf: $pages sheets of $size pt"
    case "$paper:$size" in
        letter:612x792 | a4:595x842) ;;
        *) fail "$pdf printed on $size pt, not $paper" ;;
    esac
    [ "$pages" -le 2 ] || fail "$pdf: one camera takes $pages sheets"
    for ((page = 1; page <= pages; ++page)); do
        text=$(pdftotext -f "$page" -l "$page" "$pdf" -)
        grep -qF "Camera $camera · $file" <<<"$text" || fail "$pdf sheet $page: no camera and file"
        grep -qF "page $page of $pages" <<<"$text" || fail "$pdf sheet $page: no page $page of $pages"
        grep -qF "printed $today" <<<"$text" || fail "$pdf sheet $page: no date"
    done
    pdftotext -f 1 -l 1 "$pdf" - | grep -q 'Checked by' || fail "$pdf: no sign-off on sheet 1"
    # Every number on the sheet as one word of the PDF's text.
    "$lxconfig" report "$file" --title "$camera" -o sheet.html || true
    pdftotext -raw "$pdf" - | tr -s ' \n' '\n\n' | sort -u >words.txt
    grep -o '<span class="n">[^<]*</span>' sheet.html | sed 's/<[^>]*>//g' | sort -u >numbers.txt
    missing=$(comm -23 numbers.txt words.txt)
    [ -z "$missing" ] || fail "$pdf: numbers not whole in the PDF's text: $(echo $missing)"
    # No ink within 10 mm of the left and right edges (the margins are 14 mm).
    pdftoppm -gray -r 50 "$pdf" sheet
    python3 - sheet-*.pgm <<'PY' || fail "$pdf: drawn in the margin"
import sys
bad = False
for name in sys.argv[1:]:
    data = open(name, 'rb').read()
    fields = data.split(maxsplit=4)
    width, height = int(fields[1]), int(fields[2])
    pixels = fields[4][-width * height:]
    edge = round(10 / 25.4 * 50)
    ink = [x for y in range(height) for x in list(range(edge)) + list(range(width - edge, width))
           if pixels[y * width + x] < 200]
    if ink:
        print(f"{name}: {len(ink)} dark pixels within 10 mm of the left or right edge")
        bad = True
sys.exit(1 if bad else 0)
PY
    rm -f sheet-*.pgm
}

# Without --paper the PDF is A4.
"$lxconfig" report cam1/LXCONFIG.BIN --pdf one-a4.pdf
"$lxconfig" report cam1/LXCONFIG.BIN --paper letter --pdf one-letter.pdf
for paper in a4 letter; do
    check "one-$paper.pdf" "$paper" cam1 cam1/LXCONFIG.BIN
    "$lxconfig" report cam2/LXCONFIG.BIN --title "North mast" --paper "$paper" \
        --pdf "two-$paper.pdf" || true # the file has findings
    check "two-$paper.pdf" "$paper" "North mast" cam2/LXCONFIG.BIN
done
# Two files: the second starts on a sheet of its own.
"$lxconfig" report cam1/LXCONFIG.BIN cam2/LXCONFIG.BIN --pdf both.pdf || true
first=$(pdfinfo one-a4.pdf | awk '/^Pages/ {print $2}')
second=$((first + 1))
pdftotext -f "$second" -l "$second" both.pdf - | grep -q 'Camera cam2' ||
    fail "the second file does not start sheet $second"

# No browser on PATH: a clear message, nothing written.
status=0
err=$(PATH=/nonexistent "$lxconfig" report cam1/LXCONFIG.BIN --pdf none.pdf 2>&1) || status=$?
[ "$status" -eq 1 ] || fail "no browser: exit status $status"
grep -q '^lxconfig: none.pdf: cannot print: no headless browser on PATH (chromium' <<<"$err" ||
    fail "no browser: $err"
[ ! -e none.pdf ] || fail "no browser: none.pdf was written"
exit "$failed"
