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
