#!/usr/bin/env bash
# consume-on-windows.sh BUILD_FOLDER: packages the cross-compiled build and unpacks it into a
# temporary folder. Then builds a program that uses only the contents of that folder, and the
# examples, and runs them with Wine.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build=$(realpath "$1")
work=$(mktemp -d)
service=
trap '[ -z "$service" ] || kill "$service" 2>/dev/null || true; rm -rf "$work"' EXIT

quietly() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
}

# build SOURCE NAME [ARGUMENT...]
build() {
  quietly cmake -S "$1" -B "$work/$2" -G Ninja --toolchain "$PWD/cmake/mingw-w64.cmake" \
    -DCMAKE_FIND_ROOT_PATH="$package" -DCMAKE_BUILD_TYPE=Release "${@:3}"
  quietly cmake --build "$work/$2"
}

rm -f "$build"/QxOrvaneDM10-*.zip
quietly cpack --config "$build/CPackConfig.cmake" -B "$build"
archive=$(find "$build" -maxdepth 1 -name 'QxOrvaneDM10-*.zip')
(cd "$work" && quietly cmake -E tar xf "$archive")
package=$work/$(basename "$archive" .zip)
export WINEPATH=$package/bin
if grep -rlaF "$PWD/" "$package"; then
  echo "these files contain the path of the source tree"
  exit 1
fi

build Tests/Consumer consumer -DPROGRAM="$build/generated/Readme.cpp"
wine "$work/consumer/consumer.exe" | tee "$work/log" | grep 'files: 26' || { cat "$work/log"; exit 1; }

wine "$package/bin/orvane.exe" --version
ORVANE_TOKEN=t wine "$package/bin/orvane.exe" serve >"$work/service" &
service=$!
for example in OpenAssembly ListFolder TestOpenAssembly; do
  build "Examples/$example" "$example"
done
for _ in $(seq 100); do grep -q Interrupt "$work/service" && break; sleep 0.1; done
uri=$(grep -o 'http:[^[:space:]]*' "$work/service") || { echo "orvane serve did not start"; exit 1; }
export ORVANE_TOKEN=t
wine "$work/OpenAssembly/OpenAssembly.exe" "$uri" 'urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7' 2>&1 |
  tee "$work/log" | grep 'refers to 13 files' || { cat "$work/log"; exit 1; }
wine "$work/ListFolder/ListFolder.exe" "$uri" urn:vrnk.dorlqa:fs.folder:gears >"$work/log" || { cat "$work/log"; exit 1; }
wine "$work/TestOpenAssembly/TestOpenAssembly.exe" --gtest_brief=1
