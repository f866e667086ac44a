#!/usr/bin/env bash
# Builds everything and runs every test: once in a normal build with warnings as errors, once
# under AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/deps.sh"
jobs="$(nproc)"
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1"
export LSAN_OPTIONS="suppressions=$root/tests/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"

"$root/scripts/build.sh" "$root/build" -DVD_WERROR=ON
"$root/scripts/build.sh" "$root/build-asan" -DVD_WERROR=ON -DVD_SANITIZE=ON -DVD_BUILD_BENCH=OFF

status=0
echo "== Tests (sanitizers) =="
ctest --test-dir "$root/build-asan" --output-on-failure -j"$jobs" || status=1
echo "== Tests =="
ctest --test-dir "$root/build" --output-on-failure -j"$jobs" || status=1
exit $status
