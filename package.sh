#!/usr/bin/env bash
# Installs missing packages, builds Debian packages into build/packages/debian, and checks them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

./scripts/set-up.sh package
# Debian's compiler flags, which harden the code and keep the build path out of it.
eval "$(DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --export=sh)"
export CXXFLAGS="$CXXFLAGS $CPPFLAGS"
./scripts/build.sh packages
rm -f build/packages/debian/*.*deb
cpack --config build/packages/CPackConfig.cmake
lintian --fail-on error,warning build/packages/debian/*.deb
