#!/usr/bin/env bash
# Installs missing packages, and builds the guide and the reference of the public headers as one
# site, build/docs/index.html. Fails if a public declaration is undocumented or a link is broken.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

./scripts/set-up.sh docs
dot -Tsvg docs/architecture.dot -o docs/architecture.svg
rm -rf build/docs
mkdir -p build
doxygen docs/Doxyfile
linkchecker --no-status --no-warnings --output failures --check-extern --ignore-url '^https?:' build/docs/index.html
