#!/usr/bin/env bash
# Installs missing packages, builds in release mode and runs the tests. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

./scripts/set-up.sh
./scripts/build.sh release
ctest --preset release -j "$(nproc)" "$@"
