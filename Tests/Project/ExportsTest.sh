#!/usr/bin/env bash
# ExportsTest.sh LIBRARY NAME...: every dynamic symbol of LIBRARY belongs to one of the names, and each name, a class
# or a function, has one. The vtable and the type information of a class belong to it.
set -euo pipefail
library=$1
shift

symbols=$(nm --dynamic --defined-only --demangle "$library" | cut -d' ' -f3-)
failed=0
pattern="^((vtable|typeinfo|typeinfo name) for )?($(IFS='|' && echo "$*"))(::|\(|\[|$)"
strangers=$(grep -vE "$pattern" <<<"$symbols" || true)
if [ -n "$strangers" ]; then
  echo "exported, but in no public header:" "$strangers"
  failed=1
fi
for name in "$@"; do
  if ! grep -qE "^$name(::|\(|\[)" <<<"$symbols"; then
    echo "not exported: $name"
    failed=1
  fi
done
soname=$(readelf -d "$library" | grep -oE 'soname: \[.*\]')
if [[ "$soname" != *.so.10] ]]; then
  echo "wrong $soname"
  failed=1
fi
exit $failed
