#!/usr/bin/env bash
# Compiles, from Debian's source packages, the libraries that Debian does not build for Windows, and
# installs them in build/windows-packages. Does nothing if they are already there.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
packages=$PWD/build/windows-packages
work=$PWD/build/windows-sources
stamp=$packages/.complete

# OpenSSL is used only by the tests' servers, so the version of the Debian release itself is enough,
# without security updates.
sources=(simdjson fmtlib pugixml utf8proc curl openssl/bookworm)

recipe=$(cat "${BASH_SOURCE[0]}" cmake/mingw-w64.cmake cmake/windows-packages/CMakeLists.txt)
if [ "$(cat "$stamp" 2>/dev/null)" = "$recipe" ]; then
  exit 0
fi
echo "Compiling libraries for Windows" >&2
rm -rf "$packages" "$work"
mkdir -p "$packages/share/licenses" "$work/lists" "$work/logs"

# Separate source lists: those of the system's package repositories, as deb-src entries.
apt-get indextargets --format 'deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
  sort -u >"$work/sources.list"
if [ ! -s "$work/sources.list" ]; then
  echo "There are no lists of Debian's packages; run apt-get update, then run this again." >&2
  exit 1
fi
apt_get() {
  apt-get -qq -o Dir::Etc::sourcelist="$work/sources.list" -o Dir::Etc::sourceparts=/dev/null \
    -o Dir::State::lists="$work/lists" -o APT::Sandbox::User="$(id -un)" "$@"
}
apt_get update
(cd "$work" && apt_get source --download-only "${sources[@]}" && for source in *.dsc; do dpkg-source -x "$source"; done) \
  >"$work/logs/sources" 2>&1 || { cat "$work/logs/sources" >&2; exit 1; }

# logged NAME COMMAND...: runs COMMAND and shows its output only if it fails.
logged() {
  "${@:2}" >>"$work/logs/$1" 2>&1 || { cat "$work/logs/$1" >&2; return 1; }
}

export CFLAGS=-fmacro-prefix-map=$work/= CXXFLAGS=-fmacro-prefix-map=$work/=

# build NAME SOURCE [ARGUMENT...]: builds and installs SOURCE with CMake.
build() {
  logged "$1" cmake -S "$2" -B "$work/build-$1" -G Ninja --toolchain "$PWD/cmake/mingw-w64.cmake" \
    -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF -DCMAKE_INSTALL_PREFIX="$packages" "${@:3}"
  logged "$1" cmake --build "$work/build-$1"
  logged "$1" cmake --install "$work/build-$1"
}

build_openssl() {
  cd "$work"/openssl-*
  local unused=(aria bf blake2 camellia cast cmp cms comp ct des dsa dso dtls ec2m engine gost idea legacy md4 mdc2
    module nextprotoneg ocb psk rc2 rc4 rfc3779 rmd160 scrypt seed shared siphash siv sm2 sm3 sm4 srp srtp tests ts
    whirlpool)
  logged openssl ./Configure mingw64 --cross-compile-prefix=x86_64-w64-mingw32- --prefix="$packages" --libdir=lib \
    "${unused[@]/#/no-}" CC=gcc-posix CFLAGS=-O0
  logged openssl make -j "$(nproc)" build_generated libcrypto.a libssl.a
  logged openssl make install_dev
}

# libcurl's build mostly waits for configuration checks, so it runs in parallel with the others. It
# needs only zlib.
set -m # In a process group of its own, so that everything that it starts can be ended with it.
build curl "$work"/curl-* -DBUILD_CURL_EXE=OFF -DBUILD_TESTING=OFF -DHTTP_ONLY=ON -DCURL_USE_SCHANNEL=ON \
  -DUSE_WIN32_IDN=ON -DENABLE_UNICODE=ON -DENABLE_MANUAL=OFF -DCURL_USE_LIBSSH2=OFF -DCURL_USE_LIBPSL=OFF \
  -DCURL_BROTLI=OFF -DCURL_ZSTD=OFF -DUSE_NGHTTP2=OFF -DUSE_LIBIDN2=OFF -DCURL_CA_BUNDLE=none -DCURL_CA_PATH=none &
curl=$!
set +m
trap 'kill -- "-$curl" 2>/dev/null || true' EXIT
(build_openssl)
build simdjson "$work"/simdjson-*
build fmt "$work"/fmtlib-* -DFMT_TEST=OFF -DFMT_DOC=OFF
build pugixml "$work"/pugixml-*
build utf8proc "$work"/utf8proc-*
build googletest /usr/src/googletest -DBUILD_GMOCK=OFF
build headers cmake/windows-packages
wait "$curl"

# The licences of what is linked into the libraries and the program, and of the compiler's runtime
# that goes with them.
for source in simdjson fmtlib pugixml utf8proc curl; do
  cp "$work/$source"-*/debian/copyright "$packages/share/licenses/$source.txt"
done
# (Boost's licence need not be included with compiled code.)
for package in gcc-mingw-w64-x86-64-posix-runtime libcli11-dev libz-mingw-w64-dev mingw-w64-x86-64-dev; do
  cp "/usr/share/doc/$package/copyright" "$packages/share/licenses/$package.txt"
done
rm -rf "$work"
echo "$recipe" >"$stamp"
