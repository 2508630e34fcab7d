# Shared by the test scripts that drive `orvex serve` from node: sourced, not run. The caller sets
# SKIP (the exit code CTest reads as skipped) before sourcing.

# Exits with SKIP unless node and npm are on the PATH; $1 names what needs them.
require_node() {
  if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
    echo "SKIP: node and npm are needed for $1" >&2
    exit "$SKIP"
  fi
}

# Installs the pinned packages of the current folder into its node_modules (git ignores it) once, and
# again only when package.json changes; exits with SKIP when the npm registry cannot be reached.
npm_ci_once() {
  if [[ ! -f node_modules/.orvex-installed || package.json -nt node_modules/.orvex-installed ]]; then
    if ! timeout 180 npm ci --no-audit --no-fund --loglevel=error >npm-install.log 2>&1; then
      echo "SKIP: the npm registry cannot be reached (npm ci failed; see $PWD/npm-install.log)" >&2
      exit "$SKIP"
    fi
    touch node_modules/.orvex-installed
  fi
}

# Exits with SKIP unless the Chromium that playwright-core drives (CHROMIUM, default /usr/bin/chromium)
# is installed; sets CHROMIUM and keeps playwright from downloading a browser of its own.
require_chromium() {
  CHROMIUM=${CHROMIUM:-/usr/bin/chromium}
  if [[ ! -x $CHROMIUM ]]; then
    echo "SKIP: $CHROMIUM is missing (Debian packages chromium and chromium-driver)" >&2
    exit "$SKIP"
  fi
  export PLAYWRIGHT_SKIP_BROWSER_DOWNLOAD=1
}

# A scratch folder in WORK, removed on exit together with every process named by track_pid that still
# runs then (a test that fails half-way leaves no server behind).
TRACKED_PIDS=()
make_work_dir() {
  WORK=$(mktemp -d)
  trap cleanup_work EXIT
}
cleanup_work() {
  local pid
  for pid in "${TRACKED_PIDS[@]}"; do
    if kill -0 "$pid" 2>/dev/null; then kill -KILL "$pid" 2>/dev/null || true; fi
  done
  rm -rf "$WORK"
}
track_pid() {
  TRACKED_PIDS+=("$1")
}

# Waits until the log holds a line matching the sed expression (one that prints what it found) and
# prints the first such find; fails, showing the log, when the process PID ends first or ten seconds
# pass.
wait_for() {
  local log=$1 pattern=$2 pid=$3 found=
  for _ in $(seq 1 500); do
    found=$(sed -n "$pattern" "$log" | head -n1)
    [[ -n $found ]] && { echo "$found"; return 0; }
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.02
  done
  cat "$log" >&2
  return 1
}

# Sends SIGTERM to each process and fails, naming it, when one does not exit with status 0. The processes
# are no longer tracked: their ids may be reused.
stop_cleanly() {
  local pid tracked kept status=0
  for pid in "$@"; do
    kill -TERM "$pid"
    if ! wait "$pid"; then
      echo "FAIL: process $pid did not exit cleanly on SIGTERM" >&2
      status=1
    fi
    kept=()
    for tracked in "${TRACKED_PIDS[@]}"; do [[ $tracked == "$pid" ]] || kept+=("$tracked"); done
    TRACKED_PIDS=("${kept[@]}")
  done
  return $status
}
