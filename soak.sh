#!/usr/bin/env bash
# soak.sh [SECONDS]: sets up what is missing, builds, and lets the HTTP client meet good and faulty answers for that long,
# ten minutes unless told otherwise. It fails if a request goes without its completion, or memory or descriptors grow.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

seconds=${1:-600}
if [[ ! "$seconds" =~ ^[1-9][0-9]*$ ]]; then
  echo "soak.sh: \"$seconds\" is no number of seconds" >&2
  exit 2
fi

./scripts/set-up.sh
./scripts/build.sh release HostTest
SOAK_SECONDS=$seconds exec build/release/Tests/HostTest --gtest_filter='Soak.*' --gtest_brief=1
