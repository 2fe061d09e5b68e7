#!/usr/bin/env bash
# The whole test suite once more, built in build-asan/ with AddressSanitizer (leaks included)
# and UndefinedBehaviorSanitizer. Any report ends the test that provoked it, so the run fails.
# Leaks that belong to the toolkit are suppressed, with reasons, in tests/sanitizers/lsan.supp.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DLUMAREX_SANITIZE=address,undefined \
    -DLUMAREX_WERROR=ON >/dev/null
cmake --build build-asan -j "${JOBS:-2}"

# The toolkit is built without frame pointers: the slower unwinder finds the frames that the
# suppressions name, and eight frames reach them.
export ASAN_OPTIONS=detect_leaks=1:halt_on_error=1:detect_stack_use_after_return=1:strict_string_checks=1:fast_unwind_on_malloc=0:malloc_context_size=8
# Quiet about the suppressions it used: the shell tests hold the editor's standard error to be
# empty.
export LSAN_OPTIONS=suppressions=$PWD/tests/sanitizers/lsan.supp:print_suppressions=0
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
# Suppressions match function names, which only a symbolizer can give.
source scripts/llvm-tools.sh
[ -n "$LUMAREX_SYMBOLIZER" ] || { echo "sanitize.sh: llvm-symbolizer not found (scripts/install-deps.sh asan)" >&2; exit 1; }
export ASAN_SYMBOLIZER_PATH=$LUMAREX_SYMBOLIZER
# The screen-reader test (label atspi) is left out: it ends its editor with a signal, so no leak
# check runs in it, and its runs depend on the D-Bus and AT-SPI libraries outside this project.
# The tests that print with a real browser (label browser) are left out too: they check the
# printed page, which the sanitizers do not change, and cost a minute or two each.
ctest --test-dir build-asan --output-on-failure -j "${JOBS:-2}" -LE 'atspi|browser'
