#!/usr/bin/env bash
# Flowchart conversion, side by side: `orvex convert chart.mmd -o chart.svg` (the whole command: start,
# parse, layout, SVG written) against mermaid's own render in headless Chromium (parse, layout and SVG
# placed in the page; the browser's start is not counted), on the same generated charts of 50 to 2,000
# nodes. Both sides: best of three (mermaid renders once where one render takes over ten seconds).
# Usage: bench/peers/mermaid_render.sh [path/to/orvex]   (default build/orvex; PEER_SIZES overrides
# sizes, CHROMIUM the browser, default /usr/bin/chromium)
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
orvex="${1:-$root/build/orvex}"
chromium="${CHROMIUM:-/usr/bin/chromium}"
read -r -a sizes <<<"${PEER_SIZES:-50 100 200 500 1000 2000}"

if [[ ! -x $chromium ]]; then
  echo "mermaid_render: $chromium is missing (Debian package chromium); skipped" >&2
  exit 0
fi
PLAYWRIGHT_SKIP_BROWSER_DOWNLOAD=1 bash "$here/npm_install.sh"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
files=()
for n in "${sizes[@]}"; do
  python3 "$here/gen_mermaid.py" "$n" >"$work/flow_$n.mmd"
  files+=("$work/flow_$n.mmd")
done

# Our side: the command as a user runs it, wall-clock and processor time of the whole process.
python3 - "$orvex" "${files[@]}" >"$work/ours.txt" <<'PY'
import os, subprocess, sys, time
orvex, files = sys.argv[1], sys.argv[2:]
for f in files:
    best_wall = best_cpu = float("inf")
    for _ in range(3):
        start = time.perf_counter()
        child = subprocess.Popen([orvex, "convert", f, "-o", f + ".svg"])
        _, status, usage = os.wait4(child.pid, 0)
        wall = (time.perf_counter() - start) * 1000
        if status != 0:
            sys.exit(f"orvex convert {f} failed")
        best_wall = min(best_wall, wall)
        best_cpu = min(best_cpu, (usage.ru_utime + usage.ru_stime) * 1000)
    print(f, f"{best_wall:.1f}", f"{best_cpu:.1f}")
PY
# Chromium keeps its profile and caches under HOME; a throwaway one leaves the user's alone.
(cd "$here" && HOME="$work" node mermaid_render.mjs "$chromium" "${files[@]}") >"$work/theirs.txt"

python3 - "$work/ours.txt" "$work/theirs.txt" <<'PY'
import sys
ours = {l.split()[0]: l.split()[1:] for l in open(sys.argv[1]) if l.strip()}
theirs = {l.split()[0]: l.split()[1] for l in open(sys.argv[2]) if l.strip()}
print(f"{'nodes':>7} {'orvex ms':>10} {'orvex cpu':>10} {'mermaid ms':>11} {'ratio':>8}")
for f, (wall, cpu) in ours.items():
    n = f.rsplit("_", 1)[1].split(".")[0]
    theirs_ms = float(theirs.get(f, "nan"))
    ratio = f"{theirs_ms / float(wall):.1f}x" if float(wall) > 0 else "n/a"
    print(f"{n:>7} {float(wall):10.1f} {float(cpu):10.1f} {theirs_ms:11.1f} {ratio:>8}")
PY
