#!/usr/bin/env bash
# fuzz.sh [SECONDS]: installs missing packages, builds with the address and undefined-behaviour
# sanitizers, and runs each fuzzer for SECONDS (200 by default), as many in parallel as there are
# cores. Inputs that reach new code are kept in build/fuzz/corpus, and those that cause a failure in
# build/fuzz/findings.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
seconds=${1:-200}
if [[ ! "$seconds" =~ ^[1-9][0-9]*$ ]]; then
  echo "fuzz.sh: \"$seconds\" is not a number of seconds" >&2
  exit 2
fi

./scripts/set-up.sh fuzz
./scripts/build.sh fuzz
programs=build/fuzz/Fuzz
# Short stack traces for allocations make fuzzing twice as fast.
export ASAN_OPTIONS=${ASAN_OPTIONS:-malloc_context_size=2:quarantine_size_mb=2}
mkdir -p build/fuzz/findings

# fuzz NAME [DICTIONARY]
fuzz() {
  local corpus=build/fuzz/corpus/$1 log=build/fuzz/$1.log dictionary=()
  [ $# -eq 1 ] || dictionary=(-dict="Fuzz/$2")
  mkdir -p "$corpus"
  if ! "$programs/$1" "${dictionary[@]}" -max_total_time="$seconds" -max_len=4096 -timeout=10 -print_final_stats=1 \
    -artifact_prefix="build/fuzz/findings/$1-" "$corpus" "Fuzz/Seeds/$1" >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    exit 1
  fi
  local executions
  executions=$(sed -nE 's/^Done ([0-9]+) runs.*/\1/p' "$log")
  echo "$1: $executions executions, no findings"
}
export -f fuzz
export programs seconds
xargs -P "$(nproc)" -L 1 bash -euo pipefail -c 'fuzz "$@"' fuzz <<END
AssemblyFuzzer json.dict
FolderContentsFuzzer json.dict
UriFuzzer uri.dict
StringsFuzzer
END
