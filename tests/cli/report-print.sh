#!/usr/bin/env bash
# Prints lxconfig's settings sheet with a real browser (headless Chromium) on Letter and on A4
# and checks the PDF: each file starts a new sheet, one file takes 3 sheets at most, and the
# last column (the field names) is on the paper, not cut off at its edge.
# Usage: report-print.sh LXCONFIG; exit 77 (skipped) when Chromium or poppler-utils is missing.
set -euo pipefail
lxconfig=$1
for tool in chromium pdfinfo pdftotext; do
    if ! command -v "$tool" >/dev/null; then
        echo "SKIP: $tool is not installed (scripts/install-deps.sh test installs it)"
        exit 77
    fi
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$lxconfig" defaults -o one.bin
"$lxconfig" defaults -o two.bin
"$lxconfig" set -q two.bin esoHeating=1500 sbusZoom=17 gimbalRc=1

# print HTML PDF: the page as a browser prints it, without the browser's own header and footer.
print() {
    chromium --headless --no-sandbox --disable-gpu --no-pdf-header-footer \
        --user-data-dir="$work/profile" --print-to-pdf="$2" "file://$work/$1" 2>/dev/null
}

"$lxconfig" report one.bin -o one.html
"$lxconfig" report one.bin two.bin -o both.html
sed 's/size: auto/size: A4/' one.html >one-a4.html

failed=0
for paper in letter a4; do
    html=one.html
    [ "$paper" = a4 ] && html=one-a4.html
    print "$html" "one-$paper.pdf"
    size=$(pdfinfo "one-$paper.pdf" | awk '/^Page size/ {printf "%.0fx%.0f", $3, $5}')
    pages=$(pdfinfo "one-$paper.pdf" | awk '/^Pages/ {print $2}')
    echo "$paper: $pages sheets of $size pt"
    case "$paper:$size" in
        letter:612x792 | a4:595x842) ;;
        *) echo "FAIL: $paper printed on $size pt"; failed=1 ;;
    esac
    if [ "$pages" -gt 3 ]; then
        echo "FAIL: one file takes $pages sheets on $paper"
        failed=1
    fi
    # Every field's name is in the last column; a name cut at the paper's edge would be missing.
    text=$(pdftotext -layout "one-$paper.pdf" -)
    for field in gimbalRc serialBaudrate sbusColorMapSwitchMode serialInverted crc; do
        if ! grep -q "$field" <<<"$text"; then
            echo "FAIL: $field is not on the $paper sheets"
            failed=1
        fi
    done
done

# Two files: the second starts on a sheet of its own.
print both.html both.pdf
first=$(pdfinfo one-letter.pdf | awk '/^Pages/ {print $2}')
second_starts=$(( first + 1 ))
if ! pdftotext -f "$second_starts" -l "$second_starts" both.pdf - | head -3 | grep -q 'two.bin'; then
    echo "FAIL: the second file does not start sheet $second_starts"
    failed=1
fi
exit "$failed"
