#!/bin/sh
# Makes the fuzzers' seeds that start from the untouched form's file, so that none of them keeps
# a copy of its bytes, start values or checksum: the data file is the one copy, and lxconfig
# writes the changed and sealed records and the JSON form. The seeds that do not start from the
# form stay in fuzz/corpus/.
# Usage: makeseeds.sh LXCONFIG UNTOUCHED-FORM-FILE OUTPUT-FOLDER
set -eu
lx=$1
data=$2
out=$3
rm -rf "$out"
mkdir -p "$out/record" "$out/import" "$out/json" "$out/report"
cd "$out"

# Record seeds: the file as it is, cut short, grown, damaged, and with values set and sealed.
cp "$data" record/default.bin
head -c 166 "$data" >record/one-byte-short.bin
head -c 12 "$data" >record/header-only.bin
{ cat "$data"; head -c 857 /dev/zero | tr '\0' '\356'; } >record/long-1024.bin
# One byte changed at an offset, the checksum left as it was.
damaged() {
    cp "$data" "record/$1"
    printf "$3" | dd of="record/$1" bs=1 seek="$2" conv=notrunc status=none
}
damaged bad-checksum.bin 100 '\001'
damaged bad-magic.bin 3 'X'
sealed() {
    name=$1
    shift
    cp "$data" "record/$name"
    "$lx" set --raw --force "record/$name" "$@" >/dev/null
}
sealed version-20180602.bin headerVersion=20180602
sealed gimbal-gps-shutter.bin ext0Mode=5 ext1Mode=6 triggerPinMode=5 gimbalRc=1 gpsReceiver=1 \
    externalShutter=1
sealed sbustrigger-25.bin sbusTrigger=25
sealed sbustrigger-4.bin 'triggerLow[4]=111' 'triggerHigh[4]=2222'
sealed unknown-codes.bin ext0Mode=2 ext1Mode=7 gpsReceiver=9 esoOffset=-125

# The report fuzzer's seeds: one length byte, a file name, then the file.
{ printf '\014LXCONFIG.BIN'; cat "$data"; } >report/default-named.bin
{ printf '\017a<b>&"c\377\300\274\355\240\200\001x'; cat "$data"; } >report/odd-name.bin

# The JSON form of the file, and that form with one key changed, removed or added.
"$lx" export record/default.bin >import/default.json
cp import/default.json json/form.json
head -c 300 import/default.json >import/truncated.json
changed() {
    sed "$2" import/default.json >"import/$1"
}
changed below-range.json 's/^\(    "esoOffset": \)[-0-9]*/\1-2147483649/'
changed fixed134-too-big.json 's/^\(    "fixed134": \)[0-9]*/\19007199254740993/'
changed fraction.json 's/^\(    "frameSkip": \)[0-9]*/\11.5/'
changed latin1-magic.json 's/^\(    "magic": \)"[^"]*"/\1"C\\u00d6NF"/'
changed wide-magic.json 's/^\(    "magic": \)"[^"]*"/\1"C\\u20acNF"/'
changed out-of-range.json 's/^\(    "gpsReceiver": \)[0-9]*/\1256/'
changed short-array.json 's/^\(    "triggerLow": \[\)[0-9]*, /\1/'
changed string-for-array.json 's/^\(    "triggerHigh": \)\[\([0-9]*\),[^]]*\]/\1"\2"/'
changed missing-key.json '/^    "crc": /d; s/^\(    "serialInverted": [0-9]*\),$/\1/'
changed unknown-key.json 's/^\(    "crc": [0-9]*\)$/\1,\n    "unknownField": 1/'
