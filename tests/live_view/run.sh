#!/usr/bin/env bash
# The live view of `orvex serve` in headless Chromium: the page must show what an MCP client adds.
# Usage: run.sh PATH/TO/orvex. Exits 77 (skipped) when node, npm or Chromium is missing or the npm
# registry cannot be reached; playwright-core goes to tests/live_view/node_modules, which git ignores, and
# drives the system's Chromium (CHROMIUM, default /usr/bin/chromium): it never downloads a browser.
set -euo pipefail

ORVEX=${1:?usage: run.sh PATH/TO/orvex}
ORVEX=$(cd "$(dirname "$ORVEX")" && pwd)/$(basename "$ORVEX")
HERE=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
SKIP=77

source "$HERE/../node_env.sh"
require_node "the live view test"
require_chromium

cd "$HERE"
npm_ci_once
make_work_dir

export ORVEX_MCP_TOKEN="live-view-test-$$-$RANDOM"
"$ORVEX" serve --port 0 --view-port 0 2>"$WORK/serve.log" </dev/null &
SERVER_PID=$!
track_pid $SERVER_PID
MCP_PORT=$(wait_for "$WORK/serve.log" 's|.*listening on http://127\.0\.0\.1:\([0-9]*\)/mcp.*|\1|p' $SERVER_PID) ||
  { echo "FAIL: orvex serve did not start" >&2; exit 1; }
VIEW_PORT=$(wait_for "$WORK/serve.log" 's|.*live view on http://127\.0\.0\.1:\([0-9]*\)/.*|\1|p' $SERVER_PID) ||
  { echo "FAIL: orvex serve did not report the live view's port" >&2; exit 1; }

status=0
# Chromium keeps its profile and caches under HOME; a throwaway one leaves the user's alone.
HOME="$WORK" timeout 120 node watch.mjs "http://127.0.0.1:$VIEW_PORT/" "http://127.0.0.1:$MCP_PORT/mcp" "$CHROMIUM" ||
  status=1

stop_cleanly "$SERVER_PID" || status=1
[[ $status -eq 0 ]] || cat "$WORK/serve.log" >&2
exit $status
