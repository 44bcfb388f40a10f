#!/usr/bin/env bash
# coverage.sh: measures and shows the coverage of the tests. Fails if they miss any line of Server,
# more than 5 % of its branches (not counting those that only an exception takes), or more than 10 %
# of the lines of Base or Host.
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
