#!/usr/bin/env bash
# Side by side: the bundled sequence examples as orvex draws them and as the reference renderers do
# (mermaid in the system's Chromium, Debian's plantuml). Writes PNGs into out/side_by_side/; asserts nothing.
set -euo pipefail
orvex=${1:-build/orvex}
root="$(cd "$(dirname "$0")/../.." && pwd)"
cd "$root"
out=out/side_by_side
mkdir -p "$out"
bash bench/peers/npm_install.sh
(cd tests/live_view && [[ -d node_modules/playwright-core ]] || npm install --no-audit --no-fund --loglevel=error)
command -v plantuml >/dev/null || bash scripts/install-deps.sh plantuml
for f in examples/mermaid/sequence*.mmd examples/plantuml/sequence*.puml; do
  name=$(basename "${f%.*}")
  "$orvex" convert "$f" -o "$out/$name-orvex.png"
done
node bench/peers/mermaid_png.mjs "${CHROMIUM:-/usr/bin/chromium}" "$out" examples/mermaid/sequence*.mmd
for f in examples/plantuml/sequence*.puml; do
  plantuml -tpng -o "$root/$out" "$f" >/dev/null
  mv "$out/$(basename "${f%.*}").png" "$out/$(basename "${f%.*}")-plantuml.png"
done
ls "$out"
