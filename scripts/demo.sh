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

# Painting: one item of every kind as a PNG (screen pass) and a PDF page (print pass).
out=$(mktemp -d)
echo
echo "orvex convert examples/drawings/all_kinds.json -o all_kinds.png --dpi 150 (and .pdf)"
"$orvex" convert examples/drawings/all_kinds.json -o "$out/all_kinds.png" --dpi 150
"$orvex" convert examples/drawings/all_kinds.json -o "$out/all_kinds.pdf"
if command -v file >/dev/null; then file "$out/all_kinds.png" "$out/all_kinds.pdf" | sed "s|$out/|  |"; fi
echo "  written to $out"
