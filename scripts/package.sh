#!/usr/bin/env bash
# Builds Velmora (scripts/bootstrap.sh) and makes its Debian package,
# build/velmora_<version>_<arch>.deb (cpack; dpkg-shlibdeps finds what it
# runs on). Prints the package's path.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/bootstrap.sh
bash scripts/install-packages.sh dpkg-dev file
cd build
cpack -G DEB >cpack.log 2>&1 || { cat cpack.log >&2; exit 1; }
deb=$(ls -t "$PWD"/velmora_*.deb | head -n 1)
echo "$deb"
