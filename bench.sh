#!/usr/bin/env bash
# bench.sh [--quick]: installs missing packages, builds, measures on one core what it costs to read
# an assembly, to query it and to fetch it, and prints the results as tables. The raw results are
# kept in build/benchmark/results. With --quick, everything runs once, on the smallest assembly:
# this only shows that the benchmarks work, and the figures are meaningless.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

./scripts/set-up.sh benchmark
./scripts/build.sh benchmark Benchmarks
results=build/benchmark/results
mkdir -p "$results"
# The last of the cores that this process may use; the system's own work usually runs on the first.
core=$(taskset -cp $$ | grep -oE '[0-9]+$')

# run NAME FILTER [ARGUMENT...]: runs the benchmarks that match FILTER and writes their results to
# NAME.json. Their repetitions are interleaved, so that ratios do not depend on what else the
# machine does.
run() {
  local name=$1 filter=$2
  shift 2
  if ! taskset -c "$core" build/benchmark/Benchmarks/Benchmarks --benchmark_filter="$filter" \
    --benchmark_repetitions="$repetitions" --benchmark_min_time="$seconds" \
    --benchmark_enable_random_interleaving=true --benchmark_out="$results/$name.json" "$@" \
    >"$results/$name.log" 2>&1; then
    cat "$results/$name.log" >&2
    exit 1
  fi
}

rm -f "$results"/*
if [ "${1:-}" = --quick ]; then
  repetitions=1 clientRepetitions=1 seconds=0.01
  run reading-100 '^read/.*/100/'
  run threaded-100 '^read/(library|hand)/100/' --second-thread
  run queries '^query/.*/100$'
else
  repetitions=9 clientRepetitions=15 seconds=0.2
  # One process per size, because what the larger sizes leave in the heap makes the smaller ones
  # faster.
  for size in 100 1000 10000; do
    run "reading-$size" "^read/.*/$size/"
  done
  # Not interleaved: a virtual machine returns memory that is idle for seconds to its host, and
  # getting it back is slow.
  run reading-100000 '^read/.*/100000/' --benchmark_enable_random_interleaving=false
  run threaded-1000 '^read/(library|hand)/1000/' --second-thread
  run queries '^query/'
fi
# More repetitions, because on one core the times depend on the scheduler.
run client '^client/' --benchmark_repetitions="$clientRepetitions"
python3 -B Benchmarks/report.py "$results"
python3 -B Benchmarks/plot.py "$results" >"$results/reading.svg"
