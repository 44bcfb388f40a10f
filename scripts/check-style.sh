#!/usr/bin/env bash
# check-style.sh [--product]: runs the format check on every source, and clang-tidy on every source or
# only on those of the libraries and the program. Needs the build folders of the presets "clang" and
# "fuzz".
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

# tidy PRESET [ARGUMENT...]: checks the sources named on standard input as PRESET builds them.
tidy() {
  xargs -P "$(nproc)" -n 4 clang-tidy -p "build/$1" --quiet "${@:2}" 2> >(grep -vE '^[0-9]+ warnings? generated' >&2)
}
coroutines=Testing/Detail/Server.cpp
git ls-files 'Base/*.cpp' 'Server/*.cpp' 'HTTPClient/*.cpp' 'Testing/*.cpp' 'Host/*.cpp' | grep -vx "$coroutines" |
  grep -v '/Windows/' | tidy clang
# Sources for Windows are compiled with warnings by scripts/windows.sh; clang-tidy has no headers for
# them.

if [ "${1:-}" = --product ]; then
  echo "format, and clang-tidy on the product: no findings"
  exit 0
fi

# Without the static analyser: tests and benchmarks are run anyway, and it would spend its time in
# the libraries that they use. It does not understand coroutines either.
git ls-files 'Tests/*.cpp' 'Benchmarks/*.cpp' "$coroutines" | grep -vE '^Tests/Consumer/|/Windows/' | tidy clang '--checks=-clang-analyzer-*'
git ls-files 'Fuzz/*.cpp' | tidy fuzz '--checks=-clang-analyzer-*'
echo "format and clang-tidy: no findings"
