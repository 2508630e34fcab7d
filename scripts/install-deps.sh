#!/usr/bin/env bash
# Installs the Debian packages that building and testing Orvex needs, and only those that are missing.
# Safe to run again and again: a machine that has everything is left alone. Given package names, it
# installs those instead: the fuzzing and peer-comparison targets need tools that the build does not.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config ccache clang-format
  nlohmann-json3-dev libpcre2-dev libfmt-dev libcli11-dev libcpp-httplib-dev
  libcurl4-openssl-dev
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  librsvg2-bin
  libgraphviz-dev
  libcairo2-dev libpango1.0-dev libzint-dev poppler-utils fonts-liberation2
  chromium chromium-driver
)
if [[ $# -gt 0 ]]; then
  packages=("$@")
fi

missing=()
for pkg in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$pkg")
done

if [[ ${#missing[@]} -eq 0 ]]; then
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
sudo_cmd=()
if [[ $(id -u) -ne 0 ]]; then
  sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
if ! "${sudo_cmd[@]}" apt-get update -qq; then
  echo "install-deps: apt-get update failed" >&2
  exit 1
fi
if ! "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"; then
  echo "install-deps: could not install ${missing[*]}" >&2
  exit 1
fi
echo "install-deps: done"
