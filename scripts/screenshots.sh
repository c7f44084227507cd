#!/usr/bin/env bash
# Pictures of the desktop program's main states on the example board, for a person to look at:
# the working view, the final rendering, the hint of a pad, the context menu of a track and the
# "Output data format" dialog. The mouse test of the main window and the dialog's test take them when ISOLITH_SHOTS names a folder; here it runs on a
# screen of its own under Xvfb.
set -euo pipefail
build=${1:-build}
out=${2:-build/screenshots}
root=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$out"
out=$(cd "$out" && pwd)
ISOLITH_SHOTS="$out" xvfb-run -a -s "-screen 0 1280x1024x24" \
  "$root/$build/bin/test_ui" --gtest_filter='BoardMouse.*:ToolpathViews.OutputDataFormat*' > /dev/null
ls "$out"/*.png
