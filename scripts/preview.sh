#!/usr/bin/env bash
# Builds Velmora (installing what it needs) and runs velmora-preview on its
# built-in sample form. With a display it opens a window to resize by hand;
# without one it renders the form at a few sizes into build/preview/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/bootstrap.sh
preview=build/tools/velmora-preview/velmora-preview
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec "$preview" "$@"
fi
out=build/preview
mkdir -p "$out"
"$preview" --size 1080x780 --size 1440x1040 --size 500x420 --screenshot "$out" --report "$@" > "$out/report.json"
echo "No display: rendered the sample form into $out/ (screenshots and report.json)."
