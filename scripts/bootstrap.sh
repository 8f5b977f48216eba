#!/usr/bin/env bash
# Installs what Velmora needs from Debian (when missing) and builds it into
# build/. Safe to run again: it only installs what is not there.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(cmake ninja-build g++ ccache qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools
          libqt6uitools6 libqt6opengl6-dev libgl-dev designer-qt6 fonts-dejavu-core poppler-utils
          clang libclang-rt-14-dev llvm) # Clang, libFuzzer and llvm-symbolizer for scripts/fuzz.sh
bash scripts/install-packages.sh "${packages[@]}"

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}" >/dev/null
cmake --build build -j"$(nproc)"
