#!/usr/bin/env bash
# Messages, notes, fragments and activations per Mermaid sequence file, as mermaid's parser and as
# `orvex parse` count them, and the share of files where all four agree. Usage: sequence_counts.sh ORVEX FILE...
set -euo pipefail
orvex=$1
shift
here="$(cd "$(dirname "$0")" && pwd)"
bash "$here/npm_install.sh" >/dev/null
node "$here/sequence_counts.mjs" "$@" > /tmp/orvex_seq_mermaid.txt
agree=0
total=0
while read -r file messages notes fragments activations; do
  [[ $messages == error ]] && { echo "$file: mermaid refuses it"; continue; }
  ours=$("$orvex" parse "$file" | python3 -c '
import json, sys
d = json.load(sys.stdin)
t = [e["type"] for e in d["events"]]
print(t.count("seMessage"), t.count("seNote"), t.count("seFragmentStart"), t.count("seActivate"))')
  total=$((total + 1))
  if [[ "$ours" == "$messages $notes $fragments $activations" ]]; then
    agree=$((agree + 1))
  else
    echo "$file: mermaid $messages $notes $fragments $activations, orvex $ours"
  fi
done < /tmp/orvex_seq_mermaid.txt
echo "agree: $agree of $total"
