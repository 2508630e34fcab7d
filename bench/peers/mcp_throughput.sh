#!/usr/bin/env bash
# MCP throughput, side by side: wrk against `orvex serve` and against a minimal server on the official
# TypeScript SDK (stateless streamable HTTP, JSON responses, the same get_drawing_info tool), for
# tools/list and for a tools/call of get_drawing_info: 8 connections, 10 seconds after a 3-second warm-up.
# Usage: bench/peers/mcp_throughput.sh [path/to/orvex]   (default build/orvex)
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
orvex="${1:-$root/build/orvex}"
duration="${PEER_SECONDS:-10}"
ours_port=3101
sdk_port=3102

# wrk is needed only here, so it is installed here rather than with the build's packages.
bash "$root/scripts/install-deps.sh" wrk
bash "$here/npm_install.sh"

if ! "$orvex" serve --help >/dev/null 2>&1; then
  echo "mcp_throughput: $orvex has no serve command yet" >&2
  exit 1
fi

pids=()
cleanup() { for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done; }
trap cleanup EXIT

"$orvex" serve --port "$ours_port" --bind 127.0.0.1 >/dev/null 2>&1 &
pids+=($!)
(cd "$here" && exec node sdk_server.mjs "$sdk_port") >/dev/null 2>&1 &
pids+=($!)

wait_for() {
  for _ in $(seq 100); do
    curl -s -o /dev/null -X POST "http://127.0.0.1:$1/mcp" -H 'Content-Type: application/json' \
      -H 'Accept: application/json, text/event-stream' -d '{"jsonrpc":"2.0","id":0,"method":"ping"}' && return 0
    sleep 0.1
  done
  echo "mcp_throughput: nothing answers on port $1" >&2
  exit 1
}
wait_for "$ours_port"
wait_for "$sdk_port"

list='{"jsonrpc":"2.0","id":1,"method":"tools/list"}'
call='{"jsonrpc":"2.0","id":2,"method":"tools/call","params":{"name":"get_drawing_info","arguments":{}}}'

# Prints "rps p99_ms" for one request against one port, after a warm-up run.
measure() {
  local port=$1 body=$2 out
  MCP_BODY="$body" wrk -t 2 -c 8 -d 3s -s "$here/mcp_post.lua" "http://127.0.0.1:$port/mcp" >/dev/null
  out=$(MCP_BODY="$body" wrk -t 2 -c 8 -d "${duration}s" --latency -s "$here/mcp_post.lua" \
    "http://127.0.0.1:$port/mcp" | grep '^RESULT')
  [[ "$out" == *"non200=0 "* ]] || echo "mcp_throughput: port $port answered with errors: $out" >&2
  sed -E 's/.*rps=([0-9.]+) p99_ms=([0-9.]+).*/\1 \2/' <<<"$out"
}

printf '%-11s %12s %12s %8s %13s %13s\n' request 'orvex rps' 'sdk rps' ratio 'orvex p99 ms' 'sdk p99 ms'
for name in tools/list tools/call; do
  body=$list
  [[ $name == tools/call ]] && body=$call
  read -r ours_rps ours_p99 < <(measure "$ours_port" "$body")
  read -r sdk_rps sdk_p99 < <(measure "$sdk_port" "$body")
  ratio=$(python3 -c "import sys; print(f'{float(sys.argv[1])/float(sys.argv[2]):.1f}')" "$ours_rps" "$sdk_rps")
  printf '%-11s %12s %12s %7sx %13s %13s\n' "$name" "$ours_rps" "$sdk_rps" "$ratio" "$ours_p99" "$sdk_p99"
done
