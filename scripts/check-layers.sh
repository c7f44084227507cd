#!/usr/bin/env bash
# Keeps the arrows of the code pointing downwards: each folder of src/ may include only the
# folders below it (app -> ui -> commands -> import, edit, output -> toolpath -> params -> core).
# Prints every wrong-way include and exits 1 when there is one.
set -euo pipefail
src="${1:-$(dirname "$0")/../src}"

# folder: the top folders of src/ its files may include (its own one always).
declare -A allowed=(
  [core]="core"
  [params]="params core"
  [toolpath]="toolpath params core"
  [edit]="edit toolpath params core"
  [import]="import edit toolpath params core"
  [output]="output toolpath params core"
  [commands]="commands import edit toolpath output params core"
  [ui]="ui commands import edit toolpath output params core"
  [app]="app cli gui ui commands import edit toolpath output params core"
)

bad=0
for folder in "${!allowed[@]}"; do
  [ -d "$src/$folder" ] || continue
  while IFS=: read -r file line text; do
    target=$(sed -E 's/.*#include "([^"/]+)\/.*/\1/' <<<"$text")
    case " ${allowed[$folder]} " in
      *" $target "*) ;;
      *) echo "${file#$src/}:$line: $folder/ may not include $target/ ($text)"; bad=1 ;;
    esac
  done < <(grep -rnE '^\s*#\s*include "[^"/]+/' "$src/$folder" || true)
done
# Every folder of src/ must be known here, so that a new one is placed in the order on purpose.
for dir in "$src"/*/; do
  name=$(basename "$dir")
  [ -n "${allowed[$name]+x}" ] || { echo "src/$name/: not placed in the layer order"; bad=1; }
done
[ $bad -eq 0 ] && echo "layers: every include points downwards"
exit $bad
