#!/usr/bin/env bash
# Installs the build into a temporary prefix and mills the example board with the installed
# isolith-cli, from an empty configuration folder: the program must find its starter tool
# library in ../share/isolith/ and the installed files must all be in place.
set -euo pipefail
build=$1
source=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
for f in bin/isolith-cli share/isolith/Isolith.too share/man/man1/isolith-cli.1; do
  [ -f "$prefix/$f" ] || { echo "not installed: $f"; exit 1; }
done
if [ -x "$build/bin/isolith" ]; then
  for f in bin/isolith share/applications/isolith.desktop \
           share/icons/hicolor/scalable/apps/isolith.svg; do
    [ -f "$prefix/$f" ] || { echo "not installed: $f"; exit 1; }
  done
fi
config=$(mktemp -d -p "$prefix")
board=$source/examples/blinky
"$prefix/bin/isolith-cli" --config "$config" --set MachineFormat=ISO \
  mill "$board/blinky.gtl" --drills "$board/blinky.drl" -o "$prefix/blinky.iso"
cmp -s "$config/Isolith.too" "$prefix/share/isolith/Isolith.too" \
  || { echo "the starter tool library was not copied into the configuration folder"; exit 1; }
grep -q '^G0*1 ' "$prefix/blinky.iso" || grep -q 'G0*1' "$prefix/blinky.iso" \
  || { echo "the machine file has no feed move"; exit 1; }
# The shipped post-processors are found under share/isolith/ too.
"$prefix/bin/isolith-cli" --config "$config" --set MachineSetSeq=Yes \
  mill "$board/blinky.gtl" --drills "$board/blinky.drl" --post grbl -o "$prefix/blinky.nc"
grep -q '^M0' "$prefix/blinky.nc" || { echo "the GRBL file has no tool-change pause"; exit 1; }
echo "installed isolith-cli milled the example: $(wc -l < "$prefix/blinky.iso") lines"
