#!/usr/bin/env bash
# What apply costs against the floor of a safe replacement: one `lxconfig apply` of a fleet
# template (a camera's whole export that keeps each camera's serial and trigger settings) over
# 10,000 files in one process, and lumarex-safereplace (bench/apply/) doing the least a safe
# replacement does to the same files (read, write a temporary, fsync, rename; and again with the
# folder synced after each rename, as lxconfig does), alternating, median wall time of RUNS runs
# of each. Two templates take turns, so that every file changes in every
# run and is rewritten (apply leaves an unchanged file alone).
# Usage: apply.sh LXCONFIG SAFEREPLACE RESULTS-FOLDER [RUNS]; prints
# "files=N apply=NS floor=NS durable=NS" (medians).
set -euo pipefail
lxconfig=$1
safereplace=$2
results=$3
runs=${4:-5}
folder="$results/apply-files"
count=10000

rm -rf "$folder"
mkdir -p "$folder"
"$lxconfig" defaults -o "$results/apply-defaults.bin"
"$safereplace" make "$results/apply-defaults.bin" "$folder" "$count"
for turn in 0 1; do
    cp "$results/apply-defaults.bin" "$results/apply-cam1.bin"
    "$lxconfig" set -q "$results/apply-cam1.bin" gpsReceiver=Custom "Trigger Mode=PPM" externalShutter=on \
        "esoOffset=$((2 + turn)).5"
    "$lxconfig" export "$results/apply-cam1.bin" |
        sed 's/^{/{\n    "keep": ["serial*", "trigger*"],/' >"$results/apply-$turn.json"
done
rm "$results/apply-defaults.bin" "$results/apply-cam1.bin"

rm -f "$results/apply.ns" "$results/apply-floor.ns" "$results/apply-durable.ns"
mapfile -t files < <(find "$folder" -name '*.bin' | sort)
median() { sort -n | awk '{v[NR] = $1} END {print v[int((NR + 1) / 2)]}'; }
for ((run = 0; run < runs; ++run)); do
    template="$results/apply-$((run % 2)).json"
    start=$(date +%s%N)
    "$lxconfig" apply -q "$template" "${files[@]}"
    end=$(date +%s%N)
    echo $((end - start)) >>"$results/apply.ns"
    "$safereplace" replace "${files[@]}" >>"$results/apply-floor.ns"
    "$safereplace" replace-durably "${files[@]}" >>"$results/apply-durable.ns"
done
echo "files=${#files[@]} apply=$(median <"$results/apply.ns")" \
    "floor=$(median <"$results/apply-floor.ns")" "durable=$(median <"$results/apply-durable.ns")"
rm -rf "$folder"
