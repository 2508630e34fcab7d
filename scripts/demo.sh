#!/usr/bin/env bash
# The main job on the bundled examples. It grows with the system: for now it shows the reference tables
# that every drawing rests on, the first frames of a path animation and what the diagram importer reads
# from two sample diagrams.
set -euo pipefail
orvex=${1:-build/orvex}
cd "$(dirname "$0")/.."

"$orvex" --version
echo
"$orvex" reference
echo
echo "orvex animate examples/animation/bezier_path.json (first frames)"
# sed rather than head reads to the end, so the command never dies of a closed pipe under pipefail.
"$orvex" animate examples/animation/bezier_path.json | sed -n 1,5p

# Diagram import: what the parsers read from two of the bundled examples.
summarise() {
  python3 -c 'import json, sys; d = json.load(sys.stdin); print("  %s %s: %d nodes, %d edges, %d diagnostics" % (d["format"], d["kind"], len(d["nodes"]), len(d["edges"]), len(d["diagnostics"])))'
}
for example in examples/mermaid/flowchart.mmd examples/plantuml/activity.puml; do
  echo
  echo "orvex parse $example"
  if command -v python3 >/dev/null; then
    "$orvex" parse "$example" | summarise
  else
    "$orvex" parse "$example" | cut -c1-160
  fi
done

# Drawings: every bundled drawing as SVG in out/ (open them in a browser, or render with rsvg-convert).
mkdir -p out
for drawing in examples/drawings/*.json; do
  svg="out/$(basename "${drawing%.json}").svg"
  "$orvex" convert "$drawing" -o "$svg"
  echo
  echo "orvex convert $drawing -o $svg ($(wc -c < "$svg") bytes)"
done

# Painting: the same drawings as PNG pictures (screen pass, 150 dpi) and PDF pages (print pass).
for drawing in examples/drawings/*.json; do
  base="out/$(basename "${drawing%.json}")"
  "$orvex" convert "$drawing" -o "$base.png" --dpi 150
  "$orvex" convert "$drawing" -o "$base.pdf"
  echo
  echo "orvex convert $drawing -o $base.png --dpi 150 ($(wc -c < "$base.png") bytes), and $base.pdf"
done
