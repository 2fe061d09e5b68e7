#!/usr/bin/env bash
# What `lxconfig report` of many files holds in memory: the peak resident set size (GNU time's
# "Maximum resident set size") of one report of the strict benchmark's 10,000 files, to standard
# output and with -o, and the size of the page. The page is written a file at a time, so the
# peak should not grow with the number of files.
# Usage: report-memory.sh LXCONFIG RESULTS-FOLDER; the files are strict.sh's (made by it first).
# Prints "files=N stdout_kb=K output_kb=K page_bytes=B".
set -euo pipefail
lxconfig=$1
results=$2
folder="$results/strict-files"
mapfile -t files < <(find "$folder" -name '*.bin' | sort)
peak() {
    /usr/bin/time -f '%M' -o "$results/report-time.txt" "$lxconfig" report "$@" "${files[@]}" \
        >/dev/null 2>&1 || true # files with findings or refused make the status 1
    cat "$results/report-time.txt"
}
stdout_kb=$(peak)
output_kb=$(peak -o "$results/report.html")
echo "files=${#files[@]} stdout_kb=$stdout_kb output_kb=$output_kb" \
    "page_bytes=$(stat -c %s "$results/report.html")"
rm -f "$results/report.html" "$results/report-time.txt"
