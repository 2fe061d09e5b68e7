#!/usr/bin/env bash
# What the read-back costs: `lxconfig write FILE CARD` (check, replace, flush, drop the cache,
# read back from the card twice) against `cp FILE CARD/LXCONFIG.BIN && sync` on the same card
# image in the same run, alternating, median wall time of RUNS runs of each; on an exFAT card
# (mkfs.exfat image on a loop device, exfat-fuse), as tests/cli/card.cpp mounts it. Not on
# fusefat's FAT32: its daemon hung in the first `cp` over the file lxconfig had just written.
# Needs root and /dev/fuse; without them it says so and prints nothing.
# Usage: cardwrite.sh LXCONFIG RESULTS-FOLDER [RUNS]; prints one line per card:
# "card=exFAT runs=N write=NS cp=NS".
set -euo pipefail
lxconfig=$1
results=$2
runs=${3:-21}
work=$(mktemp -d)
trap 'umount "$work/card" 2>/dev/null || true; rm -rf "$work"' EXIT
mkdir "$work/card"

if [ "$(id -u)" -ne 0 ] || [ ! -e /dev/fuse ]; then
    echo "cardwrite.sh: the cards are FUSE mounts of images, which need root and /dev/fuse" >&2
    exit 0
fi
"$lxconfig" defaults -o "$work/LXCONFIG.BIN"

mount_card() {
    rm -f "$work/card.img"
    case $1 in
    exFAT)
        truncate -s 8M "$work/card.img"
        mkfs.exfat "$work/card.img" >/dev/null
        device=$(losetup -f --show "$work/card.img")
        mount.exfat-fuse "$device" "$work/card" </dev/null >/dev/null 2>&1
        losetup -d "$device"
        ;;
    FAT32)
        truncate -s 34M "$work/card.img"
        mkfs.vfat -F 32 "$work/card.img" >/dev/null
        fusefat -o rw+ "$work/card.img" "$work/card" </dev/null >/dev/null 2>&1
        ;;
    esac
}
elapsed() {
    local start end
    start=$(date +%s%N)
    "$@" >/dev/null
    end=$(date +%s%N)
    echo $((end - start))
}
median() { sort -n | awk '{v[NR] = $1} END {print v[int((NR + 1) / 2)]}'; }

for card in exFAT; do
    mount_card "$card"
    rm -f "$results/cardwrite-write.ns" "$results/cardwrite-cp.ns"
    for ((run = 0; run < runs; ++run)); do
        elapsed "$lxconfig" write "$work/LXCONFIG.BIN" "$work/card" >>"$results/cardwrite-write.ns"
        elapsed sh -c 'cp "$1" "$2/" && sync' sh "$work/LXCONFIG.BIN" "$work/card" \
            >>"$results/cardwrite-cp.ns"
    done
    umount "$work/card"
    echo "card=$card runs=$runs write=$(median <"$results/cardwrite-write.ns")" \
        "cp=$(median <"$results/cardwrite-cp.ns")"
done
rm -f "$results/cardwrite-write.ns" "$results/cardwrite-cp.ns"
