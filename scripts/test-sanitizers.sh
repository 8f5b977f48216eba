#!/usr/bin/env bash
# Runs the test suite once more, built with AddressSanitizer (leak checks on)
# and UndefinedBehaviorSanitizer, in build-sanitize/. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

# The packages are the ordinary build's; when that tree is current the
# bootstrap costs seconds.
bash scripts/bootstrap.sh

# The benchmarks run no test; leaving them out saves minutes of a slow build.
cmake -S . -B build-sanitize -G Ninja -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" \
      -DVELMORA_SANITIZE=ON -DVELMORA_BUILD_BENCH=OFF >/dev/null
# Instrumented Qt units are heavy; two jobs at most leave the machine usable.
cmake --build build-sanitize -j"$(( $(nproc) < 2 ? $(nproc) : 2 ))"

# Qt and the libraries under it keep some allocations for the life of the
# process; the suppressions name only those libraries, so a leak whose
# allocation Velmora's code makes still fails.
export ASAN_OPTIONS="detect_leaks=1:halt_on_error=1:detect_stack_use_after_return=1:check_initialization_order=1:strict_init_order=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.supp:print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
cd build-sanitize
QT_QPA_PLATFORM=offscreen ctest --output-on-failure "$@"
