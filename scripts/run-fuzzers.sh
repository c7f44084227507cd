#!/usr/bin/env bash
# Runs every fuzz harness of a fuzzing build for SECONDS seconds each, at the lowest priority,
# from its seed corpus in fuzz/corpus/<name>/ (what it learns goes to <build>/fuzz-corpus/, the
# repository's seeds stay as they are). A finding stops the run with the harness's report and
# leaves the reproducer in <build>/fuzz-findings/. Prints the executions of each harness.
set -euo pipefail
build=$1
seconds=${2:-60}
root=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$build/fuzz-findings"
status=0
for harness in "$build"/bin/fuzz_*; do
  name=$(basename "$harness")
  name=${name#fuzz_}
  work="$build/fuzz-corpus/$name"
  mkdir -p "$work"
  log="$build/fuzz-findings/$name.log"
  if nice -n 19 "$harness" "$work" "$root/fuzz/corpus/$name" -max_total_time="$seconds" \
      -timeout=10 -rss_limit_mb=2048 -max_len=4096 -print_final_stats=1 \
      -artifact_prefix="$build/fuzz-findings/$name-" >"$log" 2>&1; then
    runs=$(grep -m1 'stat::number_of_executed_units' "$log" | awk '{print $2}')
    echo "$name: ${runs:-?} executions in ${seconds} s, no finding"
  else
    echo "$name: FINDING (see $log)"
    tail -n 40 "$log"
    status=1
  fi
done
exit $status
