#!/usr/bin/env bash
# Runs every fuzz target of a build for some seconds over its seed corpus: run_fuzzers.sh BUILD_DIR SECONDS
# What libFuzzer finds stays in BUILD_DIR/findings.
set -euo pipefail
build=$1
seconds=$2
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export LSAN_OPTIONS="suppressions=$root/cmake/lsan.supp:print_suppressions=0"
mkdir -p "$build/findings" "$build/corpus"
count=0
for target in "$build"/fuzz/*_fuzz; do
  name=$(basename "$target" _fuzz)
  mkdir -p "$build/corpus/$name"
  seeds="$root/fuzz/${name}_seeds"
  dictionary="$root/fuzz/${name}.dict"
  arguments=(-max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1
             -artifact_prefix="$build/findings/$name-")
  if [ -f "$dictionary" ]; then arguments+=(-dict="$dictionary"); fi
  echo "-- $name, $seconds seconds"
  if ! "$target" "${arguments[@]}" "$build/corpus/$name" $([ -d "$seeds" ] && echo "$seeds") >"$build/findings/$name.log" 2>&1; then
    tail -n 40 "$build/findings/$name.log"
    exit 1
  fi
  grep -E 'stat::(number_of_executed_units|peak_rss_mb)' "$build/findings/$name.log"
  count=$((count + 1))
done
[ "$count" -gt 0 ] || { echo "no fuzz targets in $build/fuzz"; exit 1; }
echo "$count targets, no finding"
