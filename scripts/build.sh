#!/usr/bin/env bash
# build.sh PRESET [TARGET...]: configures the preset if necessary, that is, if it has not been
# configured or the presets have changed, and builds. Prints nothing if everything is up to date.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=$1
shift

if [ ! -e "build/$preset/build.ninja" ] || [ CMakePresets.json -nt "build/$preset/CMakeCache.txt" ]; then
  echo "Configuring $preset" >&2
  cmake --preset "$preset" >/dev/null
fi
targets=()
[ $# -eq 0 ] || targets=(--target "$@")
log=$(mktemp)
trap 'rm -f "$log"' EXIT
[ "$(ninja -C "build/$preset" -n "$@" | tail -n 1)" = "ninja: no work to do." ] || echo "Building $preset" >&2
if ! cmake --build --preset "$preset" "${targets[@]}" >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
