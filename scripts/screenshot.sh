#!/usr/bin/env bash
# The README's picture: the desktop program on the example board, started as a person would
# (`isolith examples/blinky/blinky.gtl AUTOSTART`, at the SNAPSHOT size), on a screen of its
# own under Xvfb. The program runs from a copy of the build's program folder, so that the
# settings it keeps are those of a first run and nothing of the build's is changed.
set -euo pipefail
build=${1:-build}
out=${2:-docs/screenshot.png}
root=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$root/$build/bin/isolith" "$root/data/Isolith.too" "$work/"
# The tools of the starter library that a person picks first: the engraving V-bit for the
# contours and hatches, the card cutter, the 1 mm drill.
printf '[Toolset]\r\nMillingTool=2\r\nHatchingTool=2\r\nCuttingTool=6\r\nPlottingTool=6\r\nDrillingTool=1\r\n' \
  > "$work/Isolith.ini"
mkdir -p "$(dirname "$out")"
xvfb-run -a -s "-screen 0 850x714x24" bash -c '
  "$1/isolith" "$2/examples/blinky/blinky.gtl" AUTOSTART SNAPSHOT NOSPLASH &
  program=$!
  sleep 6
  "$3/bin/grab-screen" "$4"
  kill "$program"
  wait "$program" 2>/dev/null || true
' _ "$work" "$root" "$root/$build" "$out"
echo "Screenshot: $out"
