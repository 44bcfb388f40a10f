#!/usr/bin/env bash
# consume.sh BUILD_FOLDER COMPILER PROGRAM: installs the build into a temporary folder. Then builds
# PROGRAM, a C++ source that uses only what is installed, once through the CMake package and once
# through pkg-config, and runs it. Also builds the examples, and runs them against the installed
# `orvane serve`.
set -euo pipefail
source=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
examples=$source/../../Examples
build=$1 compiler=$2 program=$3
work=$(mktemp -d)
service=
trap '[ -z "$service" ] || kill "$service"; rm -rf "$work"' EXIT

quietly() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
}

# configure SOURCE NAME [ARGUMENT...]
configure() {
  cmake -S "$1" -B "$work/$2" -G Ninja -DCMAKE_PREFIX_PATH="$work/installed" -DCMAKE_CXX_COMPILER="$compiler" "${@:3}"
}

quietly cmake --install "$build" --prefix "$work/installed"
root=$(realpath "$source/../..")
if grep -rlaF "$root/" "$work/installed"; then
  echo "these files contain the path of the source tree"
  exit 1
fi
quietly configure "$source" consumer -DPROGRAM="$program"
quietly cmake --build "$work/consumer"
"$work/consumer/consumer"

libraries=$(dirname "$(find "$work/installed" -name libQxOrvaneDM10.so)")
export PKG_CONFIG_PATH=$libraries/pkgconfig
read -ra flags < <(pkg-config --cflags --libs QxTesting10)
quietly "$compiler" -std=c++20 "$program" "${flags[@]}" -Wl,-rpath,"$libraries" \
  -o "$work/with-pkg-config"
"$work/with-pkg-config"
"$work/installed/bin/orvane" --version

ORVANE_TOKEN=t "$work/installed/bin/orvane" serve >"$work/service" &
service=$!
for example in OpenAssembly ListFolder TestOpenAssembly; do
  quietly configure "$examples/$example" "$example"
  quietly cmake --build "$work/$example"
done
for _ in $(seq 100); do grep -q Interrupt "$work/service" && break; sleep 0.1; done
uri=$(grep -o 'http://[^ ]*' "$work/service")
ORVANE_TOKEN=t "$work/OpenAssembly/OpenAssembly" "$uri" 'urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7' 2>&1
ORVANE_TOKEN=t "$work/ListFolder/ListFolder" "$uri" urn:vrnk.dorlqa:fs.folder:gears
"$work/TestOpenAssembly/TestOpenAssembly"
# No server listens on this port, so the program waits to retry until it is interrupted.
timeout --preserve-status -s INT 0.3 "$work/OpenAssembly/OpenAssembly" http://127.0.0.1:1 v 2>"$work/log" && exit 1
cat "$work/log"
read -ra flags < <(pkg-config --cflags --libs QxHTTPClient10)
quietly "$compiler" -std=c++20 "$examples/OpenAssembly/OpenAssembly.cpp" "${flags[@]}" -o "$work/open-with-pkg-config"

# Turns the package into one that was built without the HTTP client.
rm "$libraries"/cmake/QxOrvaneDM10/QxOrvaneDM10HTTPClientTargets*
configure "$examples/OpenAssembly" without >"$work/log" 2>&1 && exit 1
grep 'without its HTTP client' "$work/log"
