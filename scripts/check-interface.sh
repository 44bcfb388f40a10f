#!/usr/bin/env bash
# check-interface.sh [--update]: compares the exported interface of the libraries, down to types,
# sizes and virtual slots, with the one recorded in Tests/Project/Interface. A change may break
# applications that are not rebuilt. To record an intended change, use --update.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

./scripts/build.sh packages
record=Tests/Project/Interface
described=$(mktemp -d)
trap 'rm -rf "$described"' EXIT
changed=0
# Types that no installed header declares may change freely.
cmake --install build/packages --prefix "$described/installed" >/dev/null
for library in Base/libQxBaseCore10 Base/libQxBase10 Server/libQxOrvaneDM10 HTTPClient/libQxHTTPClient10; do
  name=${library##*/}
  abidw --headers-dir "$described/installed/include" --drop-private-types --exported-interfaces-only --no-corpus-path --no-comp-dir-path --no-show-locs --no-parameter-names \
    --type-id-style hash --out-file "$described/$name.abi" "build/packages/$library.so"
  if grep -nE "='/" "$described/$name.abi"; then
    echo "$name: the description contains an absolute path; see CMakePresets.json" >&2
    exit 1
  fi
  if [ "${1:-}" = --update ]; then
    xz -9 -c "$described/$name.abi" >"$record/$name.abi.xz"
    continue
  fi
  xz -dc "$record/$name.abi.xz" >"$described/recorded.abi"
  abidiff "$described/recorded.abi" "$described/$name.abi" || changed=1
done
if [ $changed -ne 0 ]; then
  echo "the interface has changed; if that is intended, run scripts/check-interface.sh --update" >&2
  exit 1
fi
echo "interface: unchanged"
