#!/usr/bin/env bash
# The qpm program's own exit codes: 0 success, 1 failure with a one-line
# message, 2 usage error; and warnings that reach standard error.
#
#   exit_codes_test.sh QPM
set -uo pipefail

qpm=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
failures=0

check() {
  local want=$1
  shift
  "$qpm" "$@" >out.txt 2>err.txt
  local got=$?
  if [ "$got" -ne "$want" ] || { [ "$want" -eq 1 ] && [ "$(wc -l <err.txt)" -ne 1 ]; }; then
    echo "qpm $*: exit $got (expected $want), said:" >&2
    cat err.txt >&2
    failures=$((failures + 1))
  fi
}

check 0 new p.qpj
check 0 show --help
check 2
check 2 group move p.qpj "Source files" sideways
check 1 target delete p.qpj Nope
printf 'garbage' >bad.qpj
check 1 store dump bad.qpj

# An include that cannot be found is a warning on standard error, not a
# failure.
printf '#include "nowhere.h"\n' >a.c
check 0 file add p.qpj "Source files" a.c
check 0 deps p.qpj
if ! grep -q 'a.c (1,1) : Warning : : Dependence file "nowhere.h" not found' err.txt; then
  echo "qpm deps did not warn about nowhere.h:" >&2
  cat err.txt >&2
  failures=$((failures + 1))
fi

exit $((failures > 0))
