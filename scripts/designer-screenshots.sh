#!/usr/bin/env bash
# Takes screenshots of Qt Designer with the Velmora plugin from the build
# tree, on a private X server with a window manager (scripts/with-xvfb.sh):
# the widget box with the Velmora group, a VelmoraControl dragged from it
# onto a form, and the settings pages opened by a double-click on the form's
# VelmoraControl. Writes designer-widgetbox.png, designer-dropped.png,
# designer-pages.png and designer-scalecontrols.png into build/screenshots/
# (or DIR).
#
#   scripts/designer-screenshots.sh [DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
out=$(realpath -m "${1:-build/screenshots}")
bash scripts/bootstrap.sh
mkdir -p "$out"
bash scripts/with-xvfb.sh env VELMORA_SCREENSHOT_DIR="$out" "$PWD/build/tests/tst_designerapp"
echo "Screenshots in $out"
