#!/usr/bin/env bash
# Takes screenshots of the sample form on a private X server with a window
# manager (scripts/with-xvfb.sh): with a gradient background, and half way
# through its opening wipe. Writes them into build/screenshots/ (or DIR).
#
#   scripts/screenshots.sh [DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
out=$(realpath -m "${1:-build/screenshots}")
bash scripts/bootstrap.sh
mkdir -p "$out"
preview=$PWD/build/tools/velmora-preview/velmora-preview

# Both in one X session: one install check, one server.
bash scripts/with-xvfb.sh bash -c '
    set -e
    preview=$1 out=$2
    "$preview" --property GradientFill=true \
        --grab-screen "$out/gradient.png" --grab-after 800
    # A two-second wipe from the left, taken after one second.
    "$preview" --property FormOpen=FoWipeRight --property FormOpenTime=2 \
        --grab-screen "$out/wipe-half-way.png" --grab-after 1000
' screenshots "$preview" "$out"
echo "Screenshots in $out"
