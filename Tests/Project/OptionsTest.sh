#!/usr/bin/env bash
# OptionsTest.sh ORVANE FOLDER: checks that the manual page and the completion in FOLDER cover every
# option of each command of the program ORVANE.
set -euo pipefail
missing=0
for command in folder assembly access serve; do
  completed=$(bash -c "_init_completion() { words=(orvane $command --); cword=2 cur=-- prev=$command; }
    source '$2/orvane.bash-completion' && _orvane && echo \"\${COMPREPLY[@]}\"")
  for option in $("$1" "$command" --help | grep -oE '^ +(-h,)?--[a-z0-9-]+' | grep -oE -e '--[a-z0-9-]+'); do
    if ! grep -qF -e "${option//-/\\-}" "$2/orvane.1" || [[ " $completed " != *" $option "* ]]; then
      echo "$command $option is missing from the manual page or the completion"
      missing=1
    fi
  done
done
exit $missing
