#!/usr/bin/env bash
# soak.sh [SECONDS]: sets up what is missing, builds, and lets the HTTP client meet good and faulty answers for that long,
# ten minutes unless told otherwise. It fails if a request goes without its completion, or memory or descriptors grow.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

./scripts/set-up.sh
./scripts/build.sh release HostTest
SOAK_SECONDS=${1:-600} exec build/release/Tests/HostTest --gtest_filter='Soak.*' --gtest_brief=1
