#!/usr/bin/env bash
# set-up.sh [LIST...]: installs the missing packages of packages.txt and of each packages-LIST.txt.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

lists=(scripts/packages.txt)
for list in "$@"; do
  lists+=("scripts/packages-$list.txt")
done
mapfile -t wanted < <(grep -vhE '^(#|$)' "${lists[@]}")

# Querying dpkg takes a noticeable fraction of a second, so a stamp file records the result.
stamp=build/.packages
if [ "$(cat "$stamp" 2>/dev/null)" = "${wanted[*]}" ] && [ "$stamp" -nt /var/lib/dpkg/status ]; then
  exit 0
fi

missing=()
for package in "${wanted[@]}"; do
  state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$state" = installed ] || missing+=("$package")
done

give_up() {
  echo "Please install these packages (named as in Debian 12) and run this again: ${missing[*]}" >&2
  exit 1
}

if [ ${#missing[@]} -gt 0 ]; then
  as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || give_up
    as_root=(sudo)
  fi
  command -v apt-get >/dev/null || give_up
  echo "Installing: ${missing[*]}" >&2
  "${as_root[@]}" apt-get update -qq >&2 || give_up
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends --no-remove "${missing[@]}" >/dev/null || give_up
fi
mkdir -p build
echo "${wanted[*]}" >"$stamp"
