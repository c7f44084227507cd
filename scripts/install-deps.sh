#!/usr/bin/env bash
# Installs the Debian packages that the build and the tests need, when any is missing.
# Idempotent; runs apt-get as root, or through sudo. clang and its run-time build the
# sanitizer and fuzzing builds; file is what the package maker uses to find the programs.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config clang-format
  qt6-base-dev libgl-dev
  # The icons of the tool bar are SVG files, drawn by the SVG icon engine.
  qt6-svg-dev
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  nlohmann-json3-dev libcli11-dev
  libdxflib-dev
  gerbv netpbm
  libcups2-dev
  # The transfer tests start a pty pair and a print server of their own.
  socat cups-daemon
  xvfb xauth
  file
  clang libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
# The fixture boards of the integration tests come from the npm registry.
command -v npm >/dev/null 2>&1 || missing+=(nodejs npm)
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
