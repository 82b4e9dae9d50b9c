#!/usr/bin/env bash
# The qpm program's own exit codes: 0 success, 1 failure with a one-line
# message, 2 usage error.
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

exit $((failures > 0))
