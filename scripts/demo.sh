#!/usr/bin/env bash
# The main job on the bundled examples. It grows with the system: for now it shows the reference tables
# that every drawing rests on and the first frames of a path animation.
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
