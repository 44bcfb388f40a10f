#!/usr/bin/env bash
# Sets up what is missing, builds in release mode and runs every test. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

./scripts/set-up.sh
./scripts/build.sh release
ctest --preset release -j "$(nproc)" "$@"
