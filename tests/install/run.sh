#!/usr/bin/env bash
# What an embedder does with a built Orvex, against an install in a temporary prefix (BUILD/install-check):
#   run.sh install BUILD SOURCE          cmake --install into the prefix (the other steps need it first)
#   run.sh embed   BUILD SOURCE [CXX_LAUNCHER]   examples/embed through find_package(Orvex) and through
#                                        pkg-config; both programs run and write the same drawing
#   run.sh headers BUILD SOURCE [CXX_LAUNCHER]   every installed header alone; no installed header names a
#                                        third-party header other than nlohmann/json's; all three layers
#                                        linked through the exported targets and through orvex-host.pc
# The libraries are the build's own: nothing is compiled again but the example and the checks, whose build
# folders stay for the next run, and the compiler launcher (ccache) makes a second run cheap.
set -euo pipefail

mode=$1
build=$(cd "$2" && pwd)
source=$(cd "$3" && pwd)
launcher=${4:-}
work=$build/install-check
prefix=$work/prefix
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)

fail() {
    echo "install check ($mode): $*" >&2
    exit 1
}

consumer_cmake() {  # source folder, build folder
    cmake -S "$1" -B "$2" "${generator[@]}" -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$prefix" \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$launcher" >"$2.configure.log" 2>&1 ||
        { cat "$2.configure.log" >&2; fail "configuring $1 against the installed package failed"; }
    cmake --build "$2" -j 2 >"$2.build.log" 2>&1 || { cat "$2.build.log" >&2; fail "building $1 failed"; }
}

pkg_config_path() {
    local pc
    pc=$(find "$prefix" -name orvex.pc -print -quit)
    [[ -n $pc ]] || fail "no orvex.pc under $prefix"
    dirname "$pc"
}

case $mode in
install)
    rm -rf "$prefix"
    mkdir -p "$work"
    cmake --install "$build" --prefix "$prefix" >"$work/install.log" || fail "cmake --install failed"
    ;;
embed)
    [[ -d $prefix ]] || fail "nothing installed in $prefix"
    rm -rf "$work/embed-out-"*
    mkdir -p "$work/embed-out-cmake" "$work/embed-out-pkgconfig"
    consumer_cmake "$source/examples/embed" "$work/embed"
    "$work/embed/embed" "$work/embed-out-cmake" || fail "the example built with find_package(Orvex) failed"

    PKG_CONFIG_PATH=$(pkg_config_path) make -s -B -C "$source/examples/embed" OUT="$work/embed" \
        CXX="${launcher:+$launcher }${CXX:-g++}" "$work/embed/embed-pkgconfig" ||
        fail "building the example with pkg-config failed"
    "$work/embed/embed-pkgconfig" "$work/embed-out-pkgconfig" || fail "the example built with pkg-config failed"
    for file in embed.json embed.svg; do
        cmp -s "$work/embed-out-cmake/$file" "$work/embed-out-pkgconfig/$file" ||
            fail "the two builds of the example wrote different $file"
    done
    ;;
headers)
    [[ -d $prefix ]] || fail "nothing installed in $prefix"
    include=$prefix/include/orvex
    # Standard headers have no extension and no folder; nlohmann/json is the one library the API shows.
    foreign=$(grep -rnE '^\s*#\s*include\s*<[^>]*[./][^>]*>' "$include" | grep -v '<nlohmann/' || true)
    [[ -z $foreign ]] || fail "installed headers include third-party headers:"$'\n'"${foreign//$include\//}"
    grep -rlE '^// Private to' "$include" && fail "private headers were installed"

    consumer_cmake "$source/tests/install" "$work/headers"
    "$work/headers/host_check" || fail "the program linked through find_package(Orvex) failed"
    pkgconfig=$(pkg_config_path)
    # shellcheck disable=SC2046 # pkg-config's output is a list of words
    ${launcher:+"$launcher"} "${CXX:-g++}" -std=c++20 -O1 $(PKG_CONFIG_PATH=$pkgconfig pkg-config --cflags orvex-host) \
        -o "$work/host_check-pkgconfig" "$source/tests/install/host_check.cpp" \
        $(PKG_CONFIG_PATH=$pkgconfig pkg-config --libs orvex-host) || fail "linking through orvex-host.pc failed"
    "$work/host_check-pkgconfig" || fail "the program linked through pkg-config failed"
    ;;
*)
    fail "unknown step (install, embed or headers)"
    ;;
esac
