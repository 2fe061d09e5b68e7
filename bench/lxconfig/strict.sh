#!/usr/bin/env bash
# What --strict costs: `lxconfig check` and `lxconfig check --strict` over the same 10,000 files
# in one process each, alternating, median wall time of RUNS runs of each. The files are the
# editor's defaults with three fields set by lxconfig itself to seeded random values, inside and
# outside the boxes' ranges, so that most have findings and some have none.
# Usage: strict.sh LXCONFIG RESULTS-FOLDER [RUNS]; prints "files=N check=NS strict=NS" (medians),
# then how many findings there were and how many files had none. Making the files takes a few
# minutes (a process each); they are kept in the results folder for the next run.
set -euo pipefail
lxconfig=$1
results=$2
runs=${3:-5}
folder="$results/strict-files"
count=10000

if [ "$(find "$folder" -name '*.bin' 2>/dev/null | wc -l)" -ne "$count" ]; then
    rm -rf "$folder"
    mkdir -p "$folder"
    "$lxconfig" defaults -o "$folder/defaults"
    RANDOM=20261123
    fields=(gpsReceiver serialBaudrate esoHeating esoOffset sbusZoom triggerPinMode gimbalRc
            externalShutter isothermSwitchMode sbusFfc)
    values=(0 1 2 3 7 16 17 255 800 1000 1500 9600 100000)
    for ((i = 0; i < count; ++i)); do
        file="$folder/$(printf '%05d' "$i").bin"
        cp "$folder/defaults" "$file"
        changes=()
        for _ in 1 2 3; do
            changes+=("${fields[RANDOM % ${#fields[@]}]}=${values[RANDOM % ${#values[@]}]}")
        done
        # A value wider than its field is refused: the file then stays the defaults.
        "$lxconfig" set "$file" "${changes[@]}" 2>/dev/null || true
    done
    rm "$folder/defaults"
fi

rm -f "$results/strict-check.ns" "$results/strict-strict.ns"
mapfile -t files < <(find "$folder" -name '*.bin' | sort)
elapsed() {
    local start end
    start=$(date +%s%N)
    "$lxconfig" "$@" "${files[@]}" >/dev/null || true
    end=$(date +%s%N)
    echo $((end - start))
}
median() { sort -n | awk '{v[NR] = $1} END {print v[int((NR + 1) / 2)]}'; }

for ((run = 0; run < runs; ++run)); do
    elapsed check >>"$results/strict-check.ns"
    elapsed check --strict >>"$results/strict-strict.ns"
done
echo "files=${#files[@]} check=$(median <"$results/strict-check.ns")" \
    "strict=$(median <"$results/strict-strict.ns")" \
    "findings=$("$lxconfig" check --strict "${files[@]}" | grep -c '^  ' || true)" \
    "clean=$("$lxconfig" check --strict "${files[@]}" | awk '/^[^ ]/ {if (f) c++; f = 1; next} {f = 0} END {if (f) c++; print c + 0}')"
