#!/usr/bin/env bash
# Builds and runs the resize benchmarks offscreen and prints their tables:
# Velmora against a hand-written loop and grid layouts, events per widget,
# cost per widget by form size, a deeply nested form, heap per control.
# Arguments go to bench_compare (--quick for a shorter run).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/bootstrap.sh >/dev/null
cmake --build build --target bench_compare bench_resize >/dev/null
export QT_QPA_PLATFORM=offscreen
./build/bench/bench_compare "$@"
echo
./build/bench/bench_resize
