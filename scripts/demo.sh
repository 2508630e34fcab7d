#!/usr/bin/env bash
# The main job on the bundled examples. It grows with the system: for now it shows the reference tables
# that every drawing rests on.
set -euo pipefail
orvex=${1:-build/orvex}
cd "$(dirname "$0")/.."

"$orvex" --version
echo
"$orvex" reference
