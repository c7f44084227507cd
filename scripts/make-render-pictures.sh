#!/usr/bin/env bash
# Makes anew the expected pictures of the board rendering test (tests/ui/data): the example
# board's working view and final rendering, painted off the screen. Run it after a deliberate
# change of the drawing, and look at the pictures before committing them.
set -euo pipefail
build=${1:-build}
cmake --build "$build" --target test_ui
ISOLITH_WRITE_PICTURES=1 QT_QPA_PLATFORM=offscreen "$build/bin/test_ui" \
  --gtest_filter='BoardRender.*'
echo "Written: tests/ui/data/blinky-working.png tests/ui/data/blinky-final.png"
