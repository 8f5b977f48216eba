#!/usr/bin/env bash
# The Debian package as a user gets it (root): made, installed with apt-get
# (which brings what it depends on), an application of its own built
# against it with find_package(Velmora) and run offscreen, then removed,
# leaving none of its files behind.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
deb=$(bash scripts/package.sh | tail -n 1)
echo "check-package: installing $deb" >&2
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "$deb" >&2
files=$(dpkg -L velmora | while read -r f; do [ -f "$f" ] || [ -L "$f" ] && echo "$f"; done)
[ -n "$files" ] || { echo "check-package: the package installed no files" >&2; exit 1; }
grep -q '/designer/libvelmoradesigner.so$' <<<"$files" || { echo "check-package: no Designer plugin" >&2; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The consumer finds the package where Debian put it, with no hint.
cmake -S "$root/tests/consumer" -B "$work/build" -G Ninja -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF >/dev/null
grep -q '^Velmora_DIR:PATH=/usr/lib/' "$work/build/CMakeCache.txt" ||
    { echo "check-package: the consumer found another Velmora: $(grep '^Velmora_DIR' "$work/build/CMakeCache.txt")" >&2; exit 1; }
cmake --build "$work/build" >/dev/null
QT_QPA_PLATFORM=offscreen "$work/build/consumer" /usr/lib/

DEBIAN_FRONTEND=noninteractive apt-get remove -y -qq velmora >&2
left=$(while read -r f; do [ -e "$f" ] || [ -L "$f" ] && echo "$f"; done <<<"$files" || true)
if [ -n "$left" ]; then
    echo "check-package: left behind after removal:" >&2
    echo "$left" >&2
    exit 1
fi
dpkg --purge velmora >/dev/null
echo "check-package: installed, used and removed cleanly: $(basename "$deb")"
