#!/usr/bin/env bash
# Cross-compiles everything for Windows; runs the tests, the program and a project that uses the
# installed package with Wine; and creates build/windows/QxOrvaneDM10-*.zip.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

./scripts/set-up.sh windows
./scripts/windows-packages.sh
./scripts/build.sh windows

# A separate Wine prefix, so that the user's own is left alone.
export WINEPREFIX=$PWD/build/wine WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' LC_ALL=C.UTF-8
trap 'wineserver -k || true' EXIT
if [ ! -e "$WINEPREFIX/.complete" ]; then
  rm -rf "$WINEPREFIX"
  wineboot -i >build/wine.log 2>&1 || { cat build/wine.log >&2; exit 1; }
  touch "$WINEPREFIX/.complete"
fi

ctest --preset windows

# The program as a user sees it; the test servers and the shell run on this system, not in Wine.
./scripts/build.sh release HostTest
program=build/windows/orvane
printf '#!/bin/sh\nexec wine "%s" "$@"\n' "$PWD/build/windows/bin/orvane.exe" >"$program"
chmod +x "$program"
ORVANE_FOR_WINDOWS=$PWD/$program build/release/Tests/HostTest --gtest_brief=1 \
  --gtest_filter=OrvaneProgram.DoesWhatTheCasesSay

./Tests/Consumer/consume-on-windows.sh build/windows
