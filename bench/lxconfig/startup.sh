#!/usr/bin/env bash
# lxconfig's start-up cost: instructions (callgrind) of `lxconfig check F` on a default record,
# against `cmp F F` on the same file, the floor of a small program that opens and reads a file.
# Usage: startup.sh LXCONFIG RESULTS-FOLDER; prints "lxconfig=N cmp=M".
set -euo pipefail
lxconfig=$1
results=$2
record="$results/LXCONFIG.BIN"
"$lxconfig" defaults -o "$record"

instructions() {
    local name=$1
    shift
    valgrind --tool=callgrind -q --callgrind-out-file="$results/callgrind.$name" "$@" >/dev/null
    awk '/^totals:/ {print $2}' "$results/callgrind.$name"
}

echo "lxconfig=$(instructions lxconfig-check "$lxconfig" check "$record")" \
    "cmp=$(instructions cmp cmp "$record" "$record")"
