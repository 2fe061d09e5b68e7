#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in build-fuzz/ and runs each one, from its seeds in
# fuzz/corpus/ and those made from the untouched form's file (fuzz/makeseeds.sh), for
# FUZZ_SECONDS seconds (60 by default). A crash, a leak, a sanitizer report or a hang fails the
# run; the input that caused it is kept in build-fuzz/artifacts/.
# Usage: fuzz.sh [target...]   (default: every target)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${FUZZ_SECONDS:-60}
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(record load import json roundtrip report)

source scripts/llvm-tools.sh
[ -n "$LUMAREX_CLANGXX" ] || { echo "fuzz.sh: clang++ not found (scripts/install-deps.sh fuzz)" >&2; exit 1; }
CC=$LUMAREX_CLANG CXX=$LUMAREX_CLANGXX cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DBUILD_TESTING=OFF -DLUMAREX_FUZZ=ON -DLUMAREX_SANITIZE=address,undefined,fuzzer-no-link \
    >/dev/null
cmake --build build-fuzz -j "${JOBS:-2}" --target "${targets[@]/%/_fuzzer}" fuzz_seeds

export LSAN_OPTIONS=suppressions=$PWD/tests/sanitizers/lsan.supp
# Suppressions match function names, which only a symbolizer can give.
[ -n "$LUMAREX_SYMBOLIZER" ] || { echo "fuzz.sh: llvm-symbolizer not found (scripts/install-deps.sh fuzz)" >&2; exit 1; }
export ASAN_SYMBOLIZER_PATH=$LUMAREX_SYMBOLIZER
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
mkdir -p build-fuzz/artifacts
for target in "${targets[@]}"; do
    # New inputs go to the first folder, so the seeds in the tree stay as they are.
    corpus=build-fuzz/corpus/$target
    mkdir -p "$corpus"
    log=build-fuzz/$target.log
    # The seeds made from the untouched form's file; load and roundtrip read records too.
    seeds=build-fuzz/fuzz/seeds/$target
    case "$target" in
        load | roundtrip) seeds=build-fuzz/fuzz/seeds/record ;;
    esac
    echo "fuzzing $target for ${seconds}s"
    if ! ASAN_OPTIONS=detect_leaks=1:fast_unwind_on_malloc=1 "build-fuzz/fuzz/${target}_fuzzer" \
        -max_total_time="$seconds" -timeout=30 -print_final_stats=1 \
        -artifact_prefix="build-fuzz/artifacts/$target-" \
        "$corpus" "fuzz/corpus/$target" "$seeds" >"$log" 2>&1; then
        tail -n 60 "$log"
        echo "fuzz target $target failed; see $log" >&2
        exit 1
    fi
    grep -E '^stat::number_of_executed_units|^Done ' "$log"
done
