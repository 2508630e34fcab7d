#!/usr/bin/env bash
# Real MCP clients against `orvex serve`: an agent's whole session and the flowchart scenario through the
# official TypeScript SDK over HTTP (2025 protocol), the 2.x
# client pinned to the 2026-07-28 protocol over HTTP, and the SDK's stdio transport over `--stdio`.
# Usage: run.sh PATH/TO/orvex. Exits 77 (skipped) when node or npm is missing or the packages cannot be
# installed; the packages go to tests/mcp_clients/node_modules, which git ignores.
set -euo pipefail

ORVEX=${1:?usage: run.sh PATH/TO/orvex}
ORVEX=$(cd "$(dirname "$ORVEX")" && pwd)/$(basename "$ORVEX")
HERE=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
SKIP=77

source "$HERE/../node_env.sh"
require_node "the MCP client tests"

cd "$HERE"
npm_ci_once

make_work_dir

export ORVEX_MCP_TOKEN="client-test-$$-$RANDOM"
mkdir -p "$WORK/files"
"$ORVEX" serve --port 0 --drawing "$WORK/drawing.json" --save-on-exit --files-root "$WORK/files" \
  2>"$WORK/serve.log" </dev/null &
SERVER_PID=$!
track_pid $SERVER_PID
PORT=$(wait_for "$WORK/serve.log" 's|.*listening on http://127\.0\.0\.1:\([0-9]*\)/mcp.*|\1|p' $SERVER_PID) ||
  { echo "FAIL: orvex serve did not start" >&2; exit 1; }
URL="http://127.0.0.1:$PORT/mcp"

status=0
timeout 120 node agent_loop.mjs "$URL" "$WORK/files" || status=1
timeout 60 node sdk_http.mjs "$URL" || status=1
timeout 60 node client2_http.mjs "$URL" || status=1
( unset ORVEX_MCP_TOKEN; timeout 60 node sdk_stdio.mjs "$ORVEX" ) || status=1

stop_cleanly "$SERVER_PID" || status=1
if ! node -e 'const d=JSON.parse(require("fs").readFileSync(process.argv[1],"utf8")); if (d.Items.length !== 5) process.exit(1)' \
  "$WORK/drawing.json"; then
  echo "FAIL: --save-on-exit did not write the flowchart" >&2
  status=1
fi
[[ $status -eq 0 ]] || cat "$WORK/serve.log" >&2
exit $status
