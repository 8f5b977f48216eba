#!/usr/bin/env bash
# Writes the Reference section of README.md from the component itself
# (velmora-preview --reference): properties, defaults, methods, signals,
# enumerations and help texts. A test fails while the two differ.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/bootstrap.sh >/dev/null
reference=$(QT_QPA_PLATFORM=offscreen build/tools/velmora-preview/velmora-preview --reference 2>/dev/null)
REFERENCE="$reference" python3 - <<'PY' 2>/dev/null || REFERENCE="$reference" perl -0pi -e 's/(<!-- reference:begin -->\n).*?(<!-- reference:end -->)/$1$ENV{REFERENCE}\n$2/s' README.md
import os, re
p = 'README.md'
s = open(p, encoding='utf-8').read()
block = os.environ['REFERENCE'] + '\n'
s2, n = re.subn(r'(<!-- reference:begin -->\n).*?(<!-- reference:end -->)', lambda m: m.group(1) + block + m.group(2), s, flags=re.S)
if n != 1:
    raise SystemExit('README.md has no reference markers')
open(p, 'w', encoding='utf-8').write(s2)
PY
echo "README.md: Reference written"
