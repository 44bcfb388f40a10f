#!/usr/bin/env bash
# ExportsTest.sh LIBRARY NAME...: every dynamic symbol of LIBRARY, or what the DLL exports, belongs to one of the names,
# and each name, a class or a function, has one. The vtable and the type information of a class belong to it.
set -euo pipefail
library=$1
shift

if [[ "$library" == *.dll ]]; then
  symbols=$(objdump -p "$library" | sed -nE 's/^\t\[ *[0-9]+\] ([^ ]+)$/\1/p' | c++filt)
  name=$(basename "$library")
  wanted=Qx*10.dll
else
  symbols=$(nm --dynamic --defined-only --demangle "$library" | cut -d' ' -f3-)
  name=$(readelf -d "$library" | grep -oP 'soname: \[\K[^]]*')
  wanted=libQx*10.so.10
fi
failed=0
pattern="^((vtable|typeinfo|typeinfo name) for )?($(IFS='|' && echo "$*"))(::|\(|\[|$)"
strangers=$(grep -vE "$pattern" <<<"$symbols" || true)
if [ -n "$strangers" ]; then
  echo "exported, but in no public header:" "$strangers"
  failed=1
fi
for class in "$@"; do
  if ! grep -qE "^$class(::|\(|\[)" <<<"$symbols"; then
    echo "not exported: $class"
    failed=1
  fi
done
if [[ "$name" != $wanted ]]; then
  echo "wrong name: $name"
  failed=1
fi
exit $failed
