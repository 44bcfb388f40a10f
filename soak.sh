#!/usr/bin/env bash
# soak.sh [SECONDS]: installs missing packages, builds, and runs the HTTP client against good and
# faulty servers for SECONDS (600 by default). Fails if a request is not completed, or if the use of
# memory or descriptors grows.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

seconds=${1:-600}
if [[ ! "$seconds" =~ ^[1-9][0-9]*$ ]]; then
  echo "soak.sh: \"$seconds\" is not a number of seconds" >&2
  exit 2
fi

./scripts/set-up.sh
./scripts/build.sh release ClientTest
SOAK_SECONDS=$seconds exec build/release/Tests/ClientTest --gtest_filter='Soak.*' --gtest_brief=1
