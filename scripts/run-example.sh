#!/usr/bin/env bash
# The main job on the bundled example board: from its layout files to the machine file, as the
# Mill command runs it, with the settings and tools beside the program.
set -euo pipefail
build=${1:-build}
board=${2:-examples/blinky}
name=$(basename "$board")
cli="$build/bin/isolith-cli"
out="$build/$name.iso"
picture="$build/$name.svg"

"$cli" --version
job=("$board/$name.gtl" --drills "$board/$name.drl")
"$cli" info "${job[@]}" 2>/dev/null
"$cli" --set MachineFormat=ISO mill "${job[@]}" -o "$out" 2>/dev/null
"$cli" render --contours "${job[@]}" -o "$picture" 2>/dev/null
echo
echo "Machine file (ISO G-code): $out ($(wc -l < "$out") lines)"
echo "Picture of the job:        $picture"
