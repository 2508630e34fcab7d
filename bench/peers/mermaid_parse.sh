#!/usr/bin/env bash
# Mermaid flowchart parsing, side by side: `orvex parse` against mermaid's own parser (node + jsdom) on the
# same generated files of 1,000 and 10,000 nodes. Both sides: one warm-up, best of three, parse time only,
# as wall-clock and as processor time (the fairer figure on a machine other jobs are using).
# Usage: bench/peers/mermaid_parse.sh [path/to/orvex]   (default build/orvex; PEER_SIZES overrides sizes)
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
orvex="${1:-$root/build/orvex}"
read -r -a sizes <<<"${PEER_SIZES:-1000 10000}"

bash "$here/npm_install.sh"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
files=()
for n in "${sizes[@]}"; do
  python3 "$here/gen_mermaid.py" "$n" >"$work/flow_$n.mmd"
  files+=("$work/flow_$n.mmd")
done

# Our side: one process per file parses it four times; the first run warms up, the best of the rest counts.
for f in "${files[@]}"; do
  "$orvex" parse "$f" --time --repeat 4 2>&1 >/dev/null |
    sed -n 's/^parse_ms=\([0-9.]*\) cpu_ms=\([0-9.]*\)$/\1 \2/p' | tail -n 3 |
    awk -v f="$f" 'NR == 1 || $1 < w { w = $1 } NR == 1 || $2 < c { c = $2 } END { print f, w, c }'
done >"$work/ours.txt"
(cd "$here" && node mermaid_parse.mjs "${files[@]}") >"$work/theirs.txt"

python3 - "$work/ours.txt" "$work/theirs.txt" <<'PY'
import sys
ours = {l.split()[0]: l.split()[1:] for l in open(sys.argv[1]) if l.strip()}
theirs = {l.split()[0]: l.split()[1:] for l in open(sys.argv[2]) if l.strip()}
print(f"{'nodes':>7} {'orvex ms':>10} {'mermaid ms':>11} {'ratio':>8}   {'orvex cpu':>10} {'mermaid cpu':>12} {'ratio':>8}")
for f, (ow, oc) in ours.items():
    tw, tc = theirs.get(f, ["nan", "nan"])
    n = f.rsplit("_", 1)[1].split(".")[0]
    ratio = lambda a, b: f"{float(b) / float(a):.0f}x" if float(a) > 0 else "n/a"
    print(f"{n:>7} {float(ow):10.2f} {float(tw):11.1f} {ratio(ow, tw):>8}   {float(oc):10.2f} {float(tc):12.1f} {ratio(oc, tc):>8}")
PY
