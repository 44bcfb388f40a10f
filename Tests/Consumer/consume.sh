#!/usr/bin/env bash
# consume.sh BUILD_FOLDER COMPILER PROGRAM: installs the build into a folder of its own, then builds the program, a C++
# source that knows only what is installed, and runs it, once through the CMake package and once through pkg-config.
set -euo pipefail
source=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$1 compiler=$2 program=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

quietly() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
}

quietly cmake --install "$build" --prefix "$work/installed"
quietly cmake -S "$source" -B "$work/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$work/installed" \
  -DCMAKE_CXX_COMPILER="$compiler" -DPROGRAM="$program"
quietly cmake --build "$work/consumer"
"$work/consumer/consumer"

libraries=$(dirname "$(find "$work/installed" -name libQxOrvaneDM10.so)")
export PKG_CONFIG_PATH=$libraries/pkgconfig
read -ra flags < <(pkg-config --cflags --libs QxOrvaneDM10)
quietly "$compiler" -std=c++20 "$program" "${flags[@]}" -Wl,-rpath,"$libraries" \
  -o "$work/with-pkg-config"
"$work/with-pkg-config"
"$work/installed/bin/orvane" --version
