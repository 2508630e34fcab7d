#!/usr/bin/env bash
# Agreement with mermaid's own parser: for every graph-like Mermaid diagram (flowchart, class, state, ER)
# of the corpus, `orvex parse` and mermaid's diagram database (node + jsdom) are compared on the nodes,
# the links, the containers, which nodes carry a style, and the class and entity members. Corpus: the
# diagrams shipped in the npm packages (@mermaid-js/examples, mermaid's READMEs), the repository's
# examples and test data, and any folders given.
# Usage: bench/peers/mermaid_agreement.sh [path/to/orvex] [DIR...]   (AGREEMENT_VERBOSE=1 lists every
# disagreement)
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
orvex="${1:-$root/build/orvex}"
shift || true

bash "$here/npm_install.sh"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
(cd "$here" && node mermaid_corpus.mjs "$work/npm")
files=("$work"/npm/*.mmd)
while IFS= read -r -d '' f; do files+=("$f"); done < <(find "$root/examples" "$root/tests" "$@" -name '*.mmd' -print0)

(cd "$here" && node mermaid_agreement.mjs "${files[@]}") >"$work/theirs.jsonl"
for f in "${files[@]}"; do
  printf '%s\t' "$f"
  "$orvex" parse "$f" 2>/dev/null | tr -d '\n' || true
  printf '\n'
done >"$work/ours.tsv"

python3 "$here/mermaid_agreement.py" "$work/theirs.jsonl" "$work/ours.tsv" "$root"
