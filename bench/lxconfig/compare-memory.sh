#!/usr/bin/env bash
# What `lxconfig compare` holds in memory over a fleet: the peak resident set size (GNU time's
# "Maximum resident set size") of compare over 1,000 and 10,000 files, as text, with --all and as
# JSON, beside the baseline of the same run: `lxconfig check` of the same files, which reads them
# one at a time and holds nothing but its arguments. compare reads each file twice and keeps only
# each setting's value counts and a bounded block of groups, so its peak should stay near the
# baseline whatever the number of files.
# The fleet: 50 cards, each the editor's defaults with three settings set by lxconfig itself to
# seeded random values, copied round-robin into 10,000 files (kept in the results folder).
# Usage: compare-memory.sh LXCONFIG RESULTS-FOLDER; prints one line per size:
# "files=N check_kb=K compare_kb=K all_kb=K json_kb=K".
set -euo pipefail
lxconfig=$1
results=$2
folder="$results/compare-files"
count=10000

if [ "$(find "$folder" -name 'LXCONFIG.BIN' 2>/dev/null | wc -l)" -ne "$count" ]; then
    rm -rf "$folder"
    mkdir -p "$folder/cards"
    RANDOM=20261124
    fields=(gpsReceiver serialBaudrate serialParity esoHeating sbusZoom overlayMode
            isothermLower frameSkip recMaxFramesPerFile)
    values=(0 1 2 3 7 16 34 800 1000 9600 115200)
    for ((card = 0; card < 50; ++card)); do
        "$lxconfig" defaults -o "$folder/cards/$card"
        for _ in 1 2 3; do
            # A value the setting cannot hold is refused: the card keeps what it had.
            "$lxconfig" set -q "$folder/cards/$card" \
                "${fields[RANDOM % ${#fields[@]}]}=${values[RANDOM % ${#values[@]}]}" \
                2>/dev/null || true
        done
    done
    for ((i = 0; i < count; ++i)); do
        mkdir -p "$folder/cam$i"
        cp "$folder/cards/$((i % 50))" "$folder/cam$i/LXCONFIG.BIN"
    done
fi

mapfile -t files < <(find "$folder" -name 'LXCONFIG.BIN' | sort)
peak() {
    local size=$1
    shift
    /usr/bin/time -f '%M' -o "$results/compare-time.txt" "$lxconfig" "$@" "${files[@]:0:size}" \
        >/dev/null 2>&1 || true # differing files make the status 1
    tail -n 1 "$results/compare-time.txt" # after "Command exited with non-zero status 1"
}
for size in 1000 "$count"; do
    echo "files=$size check_kb=$(peak "$size" check) compare_kb=$(peak "$size" compare)" \
        "all_kb=$(peak "$size" compare --all) json_kb=$(peak "$size" compare --format json)"
done
rm -f "$results/compare-time.txt"
