#!/usr/bin/env bash
# Builds the benchmarks (Release, build-bench/), runs them all and prints one table:
#   - the file format and the save/load commands, as ratios to copying the 167 bytes;
#   - lxconfig check --strict's work against the plain verdict, over 10,000 records, in the
#     library and as the program over 10,000 files;
#   - start-up to the first painted window, the editor against a bare QMainWindow of its size:
#     wall time and peak memory (medians of alternating runs) and instructions (callgrind);
#   - lxconfig's start-up instructions (callgrind), `lxconfig check F` against `cmp F F`;
#   - lxconfig report's peak memory (GNU time) over the same 10,000 files;
#   - lxconfig write (read back from the card) against cp and sync, on an exFAT card image;
#   - lxconfig apply over 10,000 files against the floor of a safe replacement of each.
#   - lxconfig compare's peak memory over 1,000 and 10,000 files, beside check of the same files.
# Benchmarks measure and report; they assert nothing. Knobs: STARTUP_RUNS (default 31),
# FILE_REPETITIONS (default 10), STRICT_RUNS (default 5), APPLY_RUNS (default 5), JOBS
# (default 2).
set -euo pipefail
cd "$(dirname "$0")/.."
build=build-bench
results="$build/bench-results"

scripts/install-deps.sh build bench
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF \
    -DLUMAREX_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build" -j "${JOBS:-2}" --target lumarex-filebench lumarex-config-startup \
    bare-window-startup lumarex-startup-bench lumarex-roundtripbench lxconfig \
    lumarex-safereplace >/dev/null
mkdir -p "$results"

echo "Running the file benchmarks..." >&2
"$build/bench/lumarex-filebench" --benchmark_repetitions="${FILE_REPETITIONS:-10}" \
    --benchmark_report_aggregates_only=true --benchmark_out="$results/file.json" \
    --benchmark_out_format=json >"$results/file.log" 2>&1

echo "Running the round-trip benchmarks..." >&2
"$build/bench/lumarex-roundtripbench" --benchmark_repetitions="${FILE_REPETITIONS:-10}" \
    --benchmark_report_aggregates_only=true --benchmark_out="$results/roundtrip.json" \
    --benchmark_out_format=json >"$results/roundtrip.log" 2>&1

echo "Timing start-up..." >&2
"$build/bench/lumarex-startup-bench" "${STARTUP_RUNS:-31}" \
    "bare=$build/bench/bare-window-startup" "editor=$build/bench/lumarex-config-startup" \
    >"$results/startup.txt"

echo "Counting start-up instructions under callgrind..." >&2
for program in bare-window-startup lumarex-config-startup; do
    QT_QPA_PLATFORM=offscreen valgrind --tool=callgrind -q \
        --callgrind-out-file="$results/callgrind.$program" "$build/bench/$program" 2>/dev/null
    awk '/^totals:/ {print $2}' "$results/callgrind.$program" >"$results/instructions.$program"
done

echo "Counting lxconfig's start-up instructions under callgrind..." >&2
bench/lxconfig/startup.sh "$build/src/cli/lxconfig" "$results" >"$results/lxconfig-startup.txt"

echo "Timing lxconfig check --strict against check over 10,000 files..." >&2
bench/lxconfig/strict.sh "$build/src/cli/lxconfig" "$results" "${STRICT_RUNS:-5}" \
    >"$results/lxconfig-strict.txt"

echo "Measuring lxconfig report's peak memory over the same 10,000 files..." >&2
bench/lxconfig/report-memory.sh "$build/src/cli/lxconfig" "$results" \
    >"$results/lxconfig-report-memory.txt"

echo "Timing lxconfig write with its read-back against cp and sync on a card image..." >&2
bench/lxconfig/cardwrite.sh "$build/src/cli/lxconfig" "$results" >"$results/lxconfig-cardwrite.txt"
echo "Timing lxconfig apply against a safe replacement over 10,000 files..." >&2
bench/lxconfig/apply.sh "$build/src/cli/lxconfig" "$build/bench/lumarex-safereplace" "$results" \
    "${APPLY_RUNS:-5}" >"$results/lxconfig-apply.txt"
echo "Measuring lxconfig compare's peak memory over a fleet of 10,000 files..." >&2
bench/lxconfig/compare-memory.sh "$build/src/cli/lxconfig" "$results" \
    >"$results/lxconfig-compare-memory.txt"

awk -f bench/table.awk \
    -v bareInstructions="$(cat "$results/instructions.bare-window-startup")" \
    -v editorInstructions="$(cat "$results/instructions.lumarex-config-startup")" \
    -v runs="${STARTUP_RUNS:-31}" -v repetitions="${FILE_REPETITIONS:-10}" \
    "$results/file.json" "$results/startup.txt" "$results/lxconfig-startup.txt"
echo
awk -f bench/roundtrip/table.awk -v repetitions="${FILE_REPETITIONS:-10}" "$results/roundtrip.json"
echo
awk '{
    for (i = 1; i <= NF; ++i) { split($i, pair, "="); v[pair[1]] = pair[2] }
    printf "lxconfig over %d files, one process (median of '"${STRICT_RUNS:-5}"' runs)\n", v["files"]
    printf "  check            %8.1f ms   1.00\n", v["check"] / 1e6
    printf "  check --strict   %8.1f ms   %.2f\n", v["strict"] / 1e6, v["strict"] / v["check"]
    printf "  %d findings; %d files with none\n", v["findings"], v["clean"]
}' "$results/lxconfig-strict.txt"
echo
awk '{
    for (i = 1; i <= NF; ++i) { split($i, pair, "="); v[pair[1]] = pair[2] }
    printf "lxconfig report of %d files, peak resident memory\n", v["files"]
    printf "  to standard output   %8.1f MB\n", v["stdout_kb"] / 1024
    printf "  with -o              %8.1f MB   (a page of %.0f MB)\n", v["output_kb"] / 1024, v["page_bytes"] / 1048576
}' "$results/lxconfig-report-memory.txt"
echo
awk '{
    for (i = 1; i <= NF; ++i) { split($i, pair, "="); v[pair[1]] = pair[2] }
    printf "lxconfig write on an %s card image (median of %d alternating runs; goal: 2x)\n", v["card"], v["runs"]
    printf "  cp FILE CARD/ && sync     %8.1f ms   1.00\n", v["cp"] / 1e6
    printf "  lxconfig write FILE CARD  %8.1f ms   %.2f\n", v["write"] / 1e6, v["write"] / v["cp"]
}' "$results/lxconfig-cardwrite.txt"
awk '{
    for (i = 1; i <= NF; ++i) { split($i, pair, "="); v[pair[1]] = pair[2] }
    printf "lxconfig apply over %d files, one process (median of '"${APPLY_RUNS:-5}"' runs)\n", v["files"]
    printf "  read, write a temporary, fsync, rename (floor)   %8.1f ms  %6.2f ms/file   1.00\n", v["floor"] / 1e6, v["floor"] / 1e6 / v["files"]
    printf "  the same, the folder synced after each rename    %8.1f ms  %6.2f ms/file   %.2f\n", v["durable"] / 1e6, v["durable"] / 1e6 / v["files"], v["durable"] / v["floor"]
    printf "  lxconfig apply of a fleet template               %8.1f ms  %6.2f ms/file   %.2f\n", v["apply"] / 1e6, v["apply"] / 1e6 / v["files"], v["apply"] / v["floor"]
}' "$results/lxconfig-apply.txt"
awk 'BEGIN { print "lxconfig compare, peak resident memory (check of the same files: the baseline)" }
{
    for (i = 1; i <= NF; ++i) { split($i, pair, "="); v[pair[1]] = pair[2] }
    printf "  %6d files: check %6.1f MB, compare %6.1f MB (%.2f), --all %6.1f MB, json %6.1f MB\n",
        v["files"], v["check_kb"] / 1024, v["compare_kb"] / 1024, v["compare_kb"] / v["check_kb"],
        v["all_kb"] / 1024, v["json_kb"] / 1024
}' "$results/lxconfig-compare-memory.txt"
