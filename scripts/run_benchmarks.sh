#!/usr/bin/env bash
# Prints the figures of a release build: run_benchmarks.sh BUILD_DIR
# First the whole jobs, each in a process of its own and five times over (the median counts), then the micro benchmarks.
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

median() { # COMMAND...: the line of the run with the median time
  for _ in 1 2 3 4 5; do "$@" | tail -n 1; done | sort -t= -k3 -g | sed -n 3p
}

for workload in N S M R; do
  echo "xls $workload  $(median "$build/tools/rubrica-bench" write xls $workload "$work/$workload.xls")"
  echo "xls $workload  $(median "$build/tools/rubrica-bench" read "$work/$workload.xls")  file=$(stat -c %s "$work/$workload.xls")"
done
for bench in "$build"/bench/*_bench; do
  echo
  "$bench" --benchmark_min_time=0.2
done
