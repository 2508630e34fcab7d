#!/usr/bin/env bash
# The main job on the bundled examples: the reference tables every drawing rests on, the first frames of a
# path animation, what the diagram importer reads, and every bundled drawing and diagram converted into
# out/ as SVG, PNG (and PDF or JSON).
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

# Diagram import: what the importer reads from four of the bundled examples (containers included).
summarise() {
  python3 -c 'import json, sys; d = json.load(sys.stdin); print("  %s %s: %d nodes, %d edges, %d containers, %d diagnostics" % (d["format"], d["kind"], len(d["nodes"]), len(d["edges"]), len(d.get("groups", [])), len(d["diagnostics"])))'
}
for example in examples/mermaid/flowchart.mmd examples/plantuml/activity.puml \
               examples/mermaid/flowchart_subgraphs.mmd examples/plantuml/component.puml; do
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

# Diagrams: every bundled Mermaid and PlantUML file laid out as an editable drawing, then written as JSON,
# SVG and PNG. A diagram that cannot be placed says why and the demo goes on with the next.
mkdir -p out/diagrams
echo
echo "Diagrams laid out into out/diagrams/ (JSON, SVG and PNG):"
for diagram in examples/mermaid/*.mmd examples/plantuml/*.puml; do
  name=$(basename "$diagram")
  base="out/diagrams/${name%.*}-${name##*.}"
  if "$orvex" convert "$diagram" -o "$base.json" && "$orvex" convert "$diagram" -o "$base.svg" &&
     "$orvex" convert "$diagram" -o "$base.png"; then
    echo "  $diagram -> $base.{json,svg,png}"
  else
    echo "  $diagram: not placed"
  fi
done
