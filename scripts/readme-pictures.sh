#!/usr/bin/env bash
# Renders the README's pictures from the current code into docs/images/:
# the sample form at its design size and 1.5 times it (velmora-preview,
# offscreen), styled-form as designed and twice as large (the example's
# --grab), and Qt Designer with the plugin (scripts/designer-screenshots.sh,
# on a private X server).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/bootstrap.sh >/dev/null
out=docs/images
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen
build/tools/velmora-preview/velmora-preview --size 960x520 --size 1440x780 --screenshot "$work" >/dev/null 2>&1
cp "$work/SampleForm-960x520.png" "$out/sample-design.png"
cp "$work/SampleForm-1440x780.png" "$out/sample-scaled.png"
build/examples/styled-form/styled-form --grab 340x200 "$out/styled-design.png" >/dev/null 2>&1
build/examples/styled-form/styled-form --grab 680x400 "$out/styled-scaled.png" >/dev/null 2>&1
unset QT_QPA_PLATFORM
bash scripts/designer-screenshots.sh "$work/designer" >/dev/null
cp "$work/designer/designer-widgetbox.png" "$work/designer/designer-pages.png" \
   "$work/designer/designer-scalecontrols.png" "$out/"
echo "README pictures in $out"
