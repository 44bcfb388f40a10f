#!/usr/bin/env bash
# Installs missing packages, builds Debian packages into build/packages/debian, and checks them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

./scripts/set-up.sh package
# Debian's compiler flags, which harden the code and keep the build path out of it.
eval "$(DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --export=sh)"
export CXXFLAGS="$CXXFLAGS $CPPFLAGS"
# So that packing a build again gives the same packages.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH
./scripts/build.sh packages
rm -f build/packages/debian/*.*deb
cpack --config build/packages/CPackConfig.cmake

# CPack's packages of debug symbols list the files by their paths in the build folder, and have no
# documents of their own; they depend on a package that has them.
for symbols in build/packages/debian/*.ddeb; do
  unpacked=$(mktemp -d)
  dpkg-deb -R "$symbols" "$unpacked"
  chmod 755 "$unpacked"
  package=$(dpkg-deb -f "$symbols" Package)
  mkdir -p "$unpacked/usr/share/doc"
  ln -s "${package%-dbgsym}" "$unpacked/usr/share/doc/$package"
  find "$unpacked/usr/lib/debug" -name '*.debug' -exec chmod 644 {} +
  (cd "$unpacked" && find usr -type f | LC_ALL=C sort | xargs md5sum >DEBIAN/md5sums)
  find "$unpacked" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
  dpkg-deb --root-owner-group -b "$unpacked" "$symbols" >/dev/null
  rm -r "$unpacked"
done
lintian --fail-on error,warning build/packages/debian/*.*deb
