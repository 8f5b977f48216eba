#!/usr/bin/env bash
# Builds Velmora (installing what it needs) and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/bootstrap.sh
cd build
QT_QPA_PLATFORM=offscreen ctest --output-on-failure "$@"
