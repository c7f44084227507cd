#!/usr/bin/env bash
# The main job on the bundled example board: from its layout files to the machine file, as the
# Mill command runs it, with the stored settings and the starter tool library.
set -euo pipefail
build=${1:-build}
board=${2:-examples/blinky}
name=$(basename "$board")
# A configuration folder of its own, made anew with the starter tool library: what one run
# chooses and saves must not change the next run's file.
config="$build/example-config"
rm -rf "$config" && mkdir -p "$config" && cp "$(dirname "$0")/../data/Isolith.too" "$config/"
cli=("$build/bin/isolith-cli" --config "$config")
out="$build/$name.iso"
picture="$build/$name.svg"

"${cli[@]}" --version
job=("$board/$name.gtl" --drills "$board/$name.drl")
"${cli[@]}" info "${job[@]}" 2>/dev/null
"${cli[@]}" --set MachineFormat=ISO mill "${job[@]}" -o "$out" 2>/dev/null
"${cli[@]}" render --contours "${job[@]}" -o "$picture" 2>/dev/null
echo
echo "Machine file (ISO G-code): $out ($(wc -l < "$out") lines)"
echo "Picture of the job:        $picture"
