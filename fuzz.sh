#!/usr/bin/env bash
# fuzz.sh [SECONDS]: sets up what is missing, builds under the address and undefined-behaviour sanitizers, and runs each
# fuzzer that long (200 seconds unless told otherwise), as many at once as there are cores. Inputs that reached something
# new are kept in build/fuzz/corpus; one that breaks something is left in build/fuzz/findings.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
seconds=${1:-200}
if [[ ! "$seconds" =~ ^[1-9][0-9]*$ ]]; then
  echo "fuzz.sh: \"$seconds\" is no number of seconds" >&2
  exit 2
fi

./scripts/set-up.sh fuzz
./scripts/build.sh fuzz
programs=build/fuzz/Fuzz
# Short stacks of allocations make it twice as fast.
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
  echo "$1: $executions executions, no finding"
}
export -f fuzz
export programs seconds
xargs -P "$(nproc)" -L 1 bash -euo pipefail -c 'fuzz "$@"' fuzz <<END
AssemblyFuzzer json.dict
FolderContentsFuzzer json.dict
UriFuzzer uri.dict
StringsFuzzer
END
