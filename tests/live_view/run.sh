#!/usr/bin/env bash
# The live view of `orvex serve` in headless Chromium: the page must show what an MCP client adds.
# Usage: run.sh PATH/TO/orvex. Exits 77 (skipped) when node, npm or Chromium is missing or the npm
# registry cannot be reached; playwright-core goes to tests/live_view/node_modules, which git ignores, and
# drives the system's Chromium (CHROMIUM, default /usr/bin/chromium): it never downloads a browser.
set -euo pipefail

ORVEX=${1:?usage: run.sh PATH/TO/orvex}
ORVEX=$(cd "$(dirname "$ORVEX")" && pwd)/$(basename "$ORVEX")
HERE=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
CHROMIUM=${CHROMIUM:-/usr/bin/chromium}
SKIP=77

source "$HERE/../node_env.sh"
require_node "the live view test"
if [[ ! -x $CHROMIUM ]]; then
  echo "SKIP: $CHROMIUM is missing (Debian packages chromium and chromium-driver)" >&2
  exit $SKIP
fi

cd "$HERE"
export PLAYWRIGHT_SKIP_BROWSER_DOWNLOAD=1
npm_ci_once

WORK=$(mktemp -d)
SERVER_PID=
cleanup() {
  if [[ -n $SERVER_PID ]] && kill -0 "$SERVER_PID" 2>/dev/null; then kill -KILL "$SERVER_PID" 2>/dev/null || true; fi
  rm -rf "$WORK"
}
trap cleanup EXIT

export ORVEX_MCP_TOKEN="live-view-test-$$-$RANDOM"
"$ORVEX" serve --port 0 --view-port 0 2>"$WORK/serve.log" </dev/null &
SERVER_PID=$!
MCP_PORT=
VIEW_PORT=
for _ in $(seq 1 250); do
  MCP_PORT=$(sed -n 's|.*listening on http://127\.0\.0\.1:\([0-9]*\)/mcp.*|\1|p' "$WORK/serve.log" | head -n1)
  VIEW_PORT=$(sed -n 's|.*live view on http://127\.0\.0\.1:\([0-9]*\)/.*|\1|p' "$WORK/serve.log" | head -n1)
  [[ -n $MCP_PORT && -n $VIEW_PORT ]] && break
  kill -0 "$SERVER_PID" 2>/dev/null || { cat "$WORK/serve.log" >&2; echo "FAIL: orvex serve did not start" >&2; exit 1; }
  sleep 0.02
done
if [[ -z $MCP_PORT || -z $VIEW_PORT ]]; then
  cat "$WORK/serve.log" >&2
  echo "FAIL: orvex serve did not report both ports" >&2
  exit 1
fi

status=0
# Chromium keeps its profile and caches under HOME; a throwaway one leaves the user's alone.
HOME="$WORK" timeout 120 node watch.mjs "http://127.0.0.1:$VIEW_PORT/" "http://127.0.0.1:$MCP_PORT/mcp" "$CHROMIUM" ||
  status=1

kill -TERM "$SERVER_PID"
if ! wait "$SERVER_PID"; then
  echo "FAIL: orvex serve did not exit cleanly on SIGTERM" >&2
  status=1
fi
SERVER_PID=
[[ $status -eq 0 ]] || cat "$WORK/serve.log" >&2
exit $status
