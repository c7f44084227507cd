#!/usr/bin/env bash
# The main job on the bundled example board.
set -euo pipefail
build=${1:-build}
"$build/bin/isolith-cli" --version
"$build/bin/isolith-cli" info
