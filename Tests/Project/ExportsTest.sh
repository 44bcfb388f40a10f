#!/usr/bin/env bash
# ExportsTest.sh LIBRARY NAME...: checks that each symbol that LIBRARY, a shared library or DLL,
# exports belongs to one of the NAMEs (a class or a function), and that each NAME exports at least
# one. A class's vtable and type information belong to it.
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
  echo "exported, but not among the expected names:" "$strangers"
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
