#!/usr/bin/env bash
# Builds everything and runs every test: once in a normal build with warnings as errors, once
# under AddressSanitizer and UndefinedBehaviorSanitizer; then a short run of each fuzz target.
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
# The fuzz targets are built with clang and run for a few seconds each on their seeds, so they
# keep building and the seeds keep passing; the long runs are done by hand (fuzz/run.sh).
echo "== Fuzz targets (short run) =="
"$root/fuzz/run.sh" 3 || status=1
exit $status
