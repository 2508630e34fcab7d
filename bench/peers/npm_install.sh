#!/usr/bin/env bash
# Fills bench/peers/node_modules (git-ignored) from package.json, once.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
bash "$root/scripts/install-deps.sh" nodejs python3
command -v npm >/dev/null || bash "$root/scripts/install-deps.sh" npm
cd "$here"
if [[ ! -d node_modules/mermaid || ! -d node_modules/@modelcontextprotocol/sdk || package.json -nt node_modules ]]; then
  npm install --no-audit --no-fund --loglevel=error
  touch node_modules
fi
