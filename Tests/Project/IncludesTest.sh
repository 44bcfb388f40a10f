#!/usr/bin/env bash
# IncludesTest.sh FOLDER: checks that the includes in the sources below FOLDER go in one direction
# only: Tests include Host, Host includes Server, HTTPClient and Testing, which do not include each
# other, and all of these include Base. Also checks that installed headers include no private ones.
set -euo pipefail
cd "$1"
failed=0

# check FOLDER DEPTH ALLOWED: checks that the files in FOLDER include only those of the project's
# headers that match ALLOWED.
check() {
  local found
  found=$(find "$1" -maxdepth "$2" -name '*.h' -o -maxdepth "$2" -name '*.cpp' | sort |
    xargs grep -HnE '^#include "' | grep -vE "#include \"($3)" || true)
  if [ -n "$found" ]; then
    echo "includes in the wrong direction:" "$found"
    failed=1
  fi
}
export_header='Server/Orvane/qxorvanedm10_export'
check Base/QxBaseCore10 3 'Base/QxBaseCore10/'
check Base/QxBase10 1 'Base/QxBase(Core)?10/'
check Server/Orvane/Payloads 2 "Base/QxBaseCore10/|Server/Orvane/Payloads/|$export_header"
check Server/Orvane 1 'Base/|Server/'
check HTTPClient 3 'Base/|HTTPClient/'
check Testing 3 'Base/|Testing/'
check Host 9 'Base/|Server/|HTTPClient/[A-Za-z]+\.h|Testing/|Host/'
check Tests 9 'Base/|Server/|HTTPClient/|Testing/|Host/|Tests/Support/'
check Benchmarks 1 'Base/|Server/|HTTPClient/CurlHTTPClient|Benchmarks/|Tests/Support/'
check Fuzz 1 'Base/|Server/|Testing/|Benchmarks/|Fuzz/|Tests/Support/'

# The client and the links use each other, but only their sources may include the other's header.
if grep -lE '#include "Server/Orvane/(Orvanedm|FolderContentLink)\.h"' Server/Orvane/*.h; then
  echo "the headers of the client and of the links must not include each other"
  failed=1
fi

private='Detail/|simdjson|curl|boost/asio|boost/beast'
for header in $(grep -hoE '[A-Za-z0-9]+\.h"$' Base/CMakeLists.txt Server/CMakeLists.txt HTTPClient/CMakeLists.txt Testing/CMakeLists.txt | tr -d '"'); do
  if find Base Server HTTPClient Testing -name "$header" | xargs grep -HnE "#include [\"<].*($private)"; then
    echo "an installed header includes a private one"
    failed=1
  fi
done

# The benchmarks measure the installed interface.
if grep -HnE "#include \"(Base|Server)/.*/($private)" Benchmarks/*; then
  echo "a benchmark includes a private header"
  failed=1
fi
exit $failed
