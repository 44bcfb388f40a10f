#!/usr/bin/env bash
# Installs missing packages, builds in release mode and runs orvane with the given arguments.
# Without arguments, it shows the sample project.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

"$root/scripts/set-up.sh"
"$root/scripts/build.sh" release orvane
orvane=$root/build/release/Host/orvane

if [ $# -gt 0 ]; then
  exec "$orvane" "$@"
fi
"$orvane" folder urn:vrnk.dorlqa:fs.folder:gearbox
echo
"$orvane" assembly 'urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7'
