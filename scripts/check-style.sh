#!/usr/bin/env bash
# The format check and clang-tidy over every source. Needs the build folders of the presets "clang" and "fuzz".
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

# tidy PRESET: the sources that are named on standard input, as that preset builds them.
tidy() {
  xargs -P "$(nproc)" -n 4 clang-tidy -p "build/$1" --quiet 2> >(grep -vE '^[0-9]+ warnings? generated' >&2)
}
git ls-files '*.cpp' | grep -vE '^(Tests/Consumer|Fuzz)/' | tidy clang
git ls-files 'Fuzz/*.cpp' | tidy fuzz
echo "format and clang-tidy: no findings"
