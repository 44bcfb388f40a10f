#!/usr/bin/env bash
# coverage.sh: runs the tests with coverage and shows what they reach. Fails if they miss a line of Server, 5 % of its
# branches (those that only an exception takes are not counted), or 10 % of the lines of Base or Host.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

./scripts/set-up.sh coverage
./scripts/build.sh coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$(nproc)" --quiet
gcovr=(gcovr --root . --exclude-throw-branches --exclude-unreachable-branches)
"${gcovr[@]}" --filter Server/ --branches --fail-under-line 100 --fail-under-branch 95 build/coverage
for folder in Base Host; do
  "${gcovr[@]}" --filter "$folder/" --fail-under-line 90 build/coverage
done
