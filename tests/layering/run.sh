#!/usr/bin/env bash
# The layering check against copies of the tree, never the tree itself:
#   run.sh SOURCE LAYER...   (the layers as scripts/check-layering.sh takes them, lowest first)
# The untouched copy passes; an include of the layer just above, of the top layer from the bottom one, or
# in a nested folder fails and is named; a folder that does not exist is refused.
set -euo pipefail

source=$(cd "$1" && pwd)
shift
layers=("$@")
check=$source/scripts/check-layering.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "layering check test: $*" >&2
    exit 1
}

# A fresh copy of the layer folders in $work/tree.
copy_tree() {
    rm -rf "$work/tree"
    mkdir -p "$work/tree"
    local layer folder
    for layer in "${layers[@]}"; do
        IFS='+' read -r -a folders <<<"$layer"
        for folder in "${folders[@]}"; do
            mkdir -p "$work/tree/$(dirname "$folder")"
            cp -r "$source/$folder" "$work/tree/$folder"
        done
    done
}

first_folder() { IFS='+' read -r -a f <<<"$1"; printf '%s' "${f[0]}"; }
# Some file of the given kind ('*.h' or '*.cpp') in a folder, relative to the copy.
some_file() { (cd "$work/tree" && find "$1" -type f -name "$2" | sort | head -n 1); }

# Adds an include of TARGET to FILE in the copy; the check must fail and name both.
expect_refused() {  # file target what
    copy_tree
    printf '#include "%s"\n' "$2" >>"$work/tree/$1"
    if bash "$check" "$work/tree" "${layers[@]}" >"$work/out" 2>&1; then
        fail "$3: the check passed with $1 including $2"
    fi
    grep -qF "$1:" "$work/out" || { cat "$work/out" >&2; fail "$3: the report does not name $1"; }
    grep -qF "$2" "$work/out" || { cat "$work/out" >&2; fail "$3: the report does not name $2"; }
}

copy_tree
bash "$check" "$work/tree" "${layers[@]}" >"$work/out" 2>&1 || { cat "$work/out" >&2; fail "the copy fails"; }

count=${#layers[@]}
((count >= 3)) || fail "give at least three layers"
bottom=$(first_folder "${layers[0]}")
second=$(first_folder "${layers[1]}")
top=$(first_folder "${layers[count - 1]}")

# The lowest layer reaching the top one.
expect_refused "$(some_file "$bottom" '*.h')" "$(some_file "$top" '*.h')" "bottom to top"
# One step up is as wrong as many.
expect_refused "$(some_file "$bottom" '*.cpp')" "$(some_file "$second" '*.h')" "one layer up"
# A source in a nested folder of a layer belongs to that layer.
nested=$(cd "$work/tree" && find "$top" -mindepth 2 -type f -name '*.cpp' | sort | head -n 1)
if [[ -n $nested ]]; then
    expect_refused "$(some_file "$second" '*.cpp')" "$nested" "into a nested folder"
fi

# An include downwards and a commented-out include upwards are accepted.
copy_tree
printf '#include "%s"\n' "$(some_file "$bottom" '*.h')" >>"$work/tree/$(some_file "$top" '*.cpp')"
printf '// #include "%s"\n' "$(some_file "$top" '*.h')" >>"$work/tree/$(some_file "$bottom" '*.cpp')"
bash "$check" "$work/tree" "${layers[@]}" >"$work/out" 2>&1 || { cat "$work/out" >&2; fail "a downward include is refused"; }

# A layer folder that is not there is a mistake in the order, not a pass.
if bash "$check" "$work/tree" "${layers[@]}" no/such/folder >"$work/out" 2>&1; then
    fail "a missing folder was accepted"
fi
echo "layering check test: passed"
