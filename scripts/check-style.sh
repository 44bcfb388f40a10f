#!/usr/bin/env bash
# The format check and clang-tidy over every source. Needs the build folder of the preset "clang".
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run --Werror
git ls-files '*.cpp' | grep -v '^Tests/Consumer/' |
  xargs -P "$(nproc)" -n 4 clang-tidy -p build/clang --quiet 2> >(grep -vE '^[0-9]+ warnings? generated' >&2)
echo "format and clang-tidy: no findings"
