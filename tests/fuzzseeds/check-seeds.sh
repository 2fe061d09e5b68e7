#!/bin/sh
# Makes the fuzz seeds as scripts/fuzz.sh does (fuzz/makeseeds.sh) and checks that they are the
# inputs they are named for: the sealed records valid, the damaged ones refused, the JSON form
# the untouched form's file again.
# Usage: check-seeds.sh LXCONFIG UNTOUCHED-FORM-FILE MAKESEEDS OUTPUT-FOLDER
set -eu
lx=$1
data=$2
sh "$3" "$lx" "$data" "$4"
cd "$4"
for seed in default gimbal-gps-shutter sbustrigger-25 sbustrigger-4 unknown-codes; do
    "$lx" check "record/$seed.bin" >/dev/null
done
for seed in bad-checksum bad-magic version-20180602 one-byte-short header-only; do
    if "$lx" check "record/$seed.bin" >/dev/null 2>&1; then
        echo "record/$seed.bin: the editor would accept it" >&2
        exit 1
    fi
done
"$lx" import import/default.json -o imported.bin
cmp imported.bin "$data"
# A magic of four characters up to U+00FF is a magic the file can hold.
"$lx" import import/latin1-magic.json -o imported.bin 2>/dev/null
for seed in below-range fixed134-too-big fraction wide-magic out-of-range \
    short-array string-for-array missing-key unknown-key truncated; do
    if "$lx" import "import/$seed.json" -o refused.bin 2>/dev/null; then
        echo "import/$seed.json: import accepts it" >&2
        exit 1
    fi
done
echo "fuzz seeds made and checked in $4"
