#!/usr/bin/env bash
# The save and load tests once more under valgrind's memcheck, built in build-vg/. Any error
# fails the run: an invalid read or write, a jump on an uninitialised value, an uninitialised
# byte handed to a system call such as write, a block definitely lost. Reports about the
# toolkit's own memory are suppressed, with reasons, in tests/sanitizers/valgrind.supp.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build-vg -DCMAKE_BUILD_TYPE=Debug >/dev/null
cmake --build build-vg -j "${JOBS:-2}" --target tst_save tst_load

# memcheck NAME: runs tests/NAME's test, its output and valgrind's report in build-vg/.
memcheck() {
    QT_QPA_PLATFORM=offscreen valgrind --tool=memcheck --error-exitcode=1 --leak-check=full \
        --show-leak-kinds=definite --errors-for-leak-kinds=definite --num-callers=30 \
        --suppressions=tests/sanitizers/valgrind.supp --log-file="build-vg/tst_$1.valgrind.log" \
        "build-vg/tests/$1/tst_$1" -silent >"build-vg/tst_$1.log" 2>&1
}

# Each run takes a minute or more, so the two share the two cores.
tests=(save load)
pids=()
for test in "${tests[@]}"; do
    memcheck "$test" &
    pids+=($!)
done
status=0
for i in "${!tests[@]}"; do
    test=tst_${tests[$i]}
    if wait "${pids[$i]}"; then
        summary=$(grep -o 'ERROR SUMMARY: [0-9]* errors' "build-vg/$test.valgrind.log")
        echo "valgrind memcheck $test: $summary"
    else
        status=1
        cat "build-vg/$test.log" "build-vg/$test.valgrind.log"
        echo "valgrind memcheck $test failed" >&2
    fi
done
exit "$status"
