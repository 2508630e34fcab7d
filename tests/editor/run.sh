#!/usr/bin/env bash
# The editor page in headless Chromium: `orvex serve --edit-port` with real pointer and keyboard events,
# an agent's change over MCP alongside, and a plain `orvex edit`. Screenshots go to SHOTS_DIR (default
# editor-screenshots beside the orvex binary), kept after the run.
# Usage: run.sh PATH/TO/orvex [SHOTS_DIR]. Exits 77 (skipped) when node, npm or Chromium is missing or the
# npm registry cannot be reached; playwright-core drives the system's Chromium and downloads no browser.
set -euo pipefail

ORVEX=${1:?usage: run.sh PATH/TO/orvex [SHOTS_DIR]}
ORVEX=$(cd "$(dirname "$ORVEX")" && pwd)/$(basename "$ORVEX")
SHOTS=${2:-$(dirname "$ORVEX")/editor-screenshots}
HERE=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
SKIP=77

source "$HERE/../node_env.sh"
require_node "the editor test"
require_chromium

cd "$HERE"
npm_ci_once
make_work_dir

export ORVEX_MCP_TOKEN="editor-test-$$-$RANDOM"
mkdir -p "$WORK/files" "$WORK/own"
"$ORVEX" serve --port 0 --edit-port 0 --files-root "$WORK/files" --drawing "$WORK/files/drawing.json" \
  2>"$WORK/serve.log" </dev/null &
SERVE_PID=$!
track_pid $SERVE_PID
MCP_URL=$(wait_for "$WORK/serve.log" 's|.*listening on \(http://127\.0\.0\.1:[0-9]*/mcp\).*|\1|p' $SERVE_PID) ||
  { echo "FAIL: orvex serve did not start" >&2; exit 1; }
EDITOR_URL=$(wait_for "$WORK/serve.log" 's|.*editor on \(http://[^ ]*\).*|\1|p' $SERVE_PID) ||
  { echo "FAIL: orvex serve did not start the editor" >&2; exit 1; }

# A plain `orvex edit` beside it, on a drawing of its own; it prints its address on standard output.
"$ORVEX" edit "$WORK/own/sketch.json" --port 0 >"$WORK/edit.out" 2>"$WORK/edit.log" </dev/null &
EDIT_PID=$!
track_pid $EDIT_PID
EDIT_URL=$(wait_for "$WORK/edit.out" 's|^orvex edit: .* on \(http://[^ ]*\)$|\1|p' $EDIT_PID) ||
  { cat "$WORK/edit.log" >&2; echo "FAIL: orvex edit did not start" >&2; exit 1; }

status=0
HOME="$WORK" timeout 180 node edit.mjs "$EDITOR_URL" "$MCP_URL" "$WORK/files/drawing.json" "$CHROMIUM" "$SHOTS" \
  "$EDIT_URL" "$WORK/own/sketch.json" || status=1

stop_cleanly "$SERVE_PID" "$EDIT_PID" || status=1
[[ $status -eq 0 ]] || cat "$WORK/serve.log" "$WORK/edit.log" >&2
[[ $status -eq 0 ]] && echo "editor: screenshots in $SHOTS"
exit $status
