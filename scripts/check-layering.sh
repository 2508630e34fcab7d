#!/usr/bin/env bash
# Fails when a module includes a header of a module above it.
#   check-layering.sh ROOT LAYER...
# ROOT is a source tree; each LAYER names the folders of one layer joined by '+', lowest layer first, e.g.
#   check-layering.sh . orvex/core orvex/io orvex/document+orvex/items host
# A source may include its own layer and any layer below it; an include of a folder that is no layer is
# not judged. CMakeLists.txt holds the order and runs this check from `make test`.
set -euo pipefail

if [[ $# -lt 2 ]]; then
    echo "usage: $0 ROOT LAYER..." >&2
    exit 2
fi
root=$1
shift

declare -A rank=()  # folder -> position of its layer
position=0
for layer in "$@"; do
    IFS='+' read -r -a folders <<<"$layer"
    for folder in "${folders[@]}"; do
        [[ -d $root/$folder ]] || { echo "layering: no folder $folder under $root" >&2; exit 2; }
        rank[$folder]=$position
    done
    position=$((position + 1))
done

# Every quoted include of every source in a layer folder, as FILE:LINE:TEXT, judged in one awk pass: the
# layer of a path is that of the longest layer folder it lies in.
ranks=''
for folder in "${!rank[@]}"; do ranks+="$folder=${rank[$folder]};"; done
violations=$(
    cd "$root" &&
        { grep -rnE --include='*.h' --include='*.cpp' --include='*.inc' \
            '^[[:space:]]*#[[:space:]]*include[[:space:]]*"' "${!rank[@]}" || true; } |
        awk -v ranks="$ranks" '
            BEGIN {
                n = split(ranks, pairs, ";")
                for (i = 1; i <= n; ++i) if (split(pairs[i], kv, "=") == 2) rank[kv[1]] = kv[2]
            }
            function folder_of(path,    f, best) {
                best = ""
                for (f in rank) if (index(path, f "/") == 1 && length(f) > length(best)) best = f
                return best
            }
            {
                split($0, parts, ":")
                file = parts[1]
                line = parts[2]
                match($0, /include[[:space:]]*"[^"]+"/)
                target = substr($0, RSTART, RLENGTH)
                sub(/^include[[:space:]]*"/, "", target)
                sub(/"$/, "", target)
                own = folder_of(file)
                to = folder_of(target)
                if (to != "" && rank[to] > rank[own]) {
                    printf "%s:%s: %s includes %s from the higher layer %s\n", file, line, own, target, to > "/dev/stderr"
                    ++count
                }
            }
            END { print count + 0 }'
)

if ((violations > 0)); then
    echo "layering: $violations include(s) against the module order" >&2
    exit 1
fi
echo "layering: ${#rank[@]} folders in $# layers, no include against the order"
