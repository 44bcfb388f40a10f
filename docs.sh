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

# Fails if the search or the navigation leads to an anchor that no page has.
if comm -23 <(cat build/docs/*.js build/docs/search/*.js | grep -oE '[A-Za-z0-9_]+\.html#[A-Za-z0-9_]+' | sort -u) \
  <(grep -oHE '(id|name)="[^"]*"' build/docs/*.html | sed -E 's#^.*/([^/:]+):(id|name)="([^"]*)"#\1\#\3#' | sort -u) | grep .; then
  echo "these anchors are linked to, but do not exist" >&2
  exit 1
fi
# As root, linkchecker becomes another user, who need not be able to read this folder.
site=$(mktemp -d)
trap 'rm -rf "$site"' EXIT
chmod 755 "$site"
cp -r build/docs/. "$site"
linkchecker --no-status --no-warnings --output failures --check-extern --ignore-url '^https?:' "$site/index.html"
