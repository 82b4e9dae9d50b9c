#!/usr/bin/env bash
# Compares the export table of the built library with the expected list, one
# name a line: every name must be there and nothing else may be. A DLL must
# also not import MinGW's runtime DLLs, which a host does not have (the 32-bit
# DLL is never loaded here, so this is where that would show).
#
#   check_exports.sh EXPECTED LIBRARY TOOL
#
# TOOL is objdump for a DLL (its export table is read from `objdump -p`) and
# nm for a shared object (its defined dynamic symbols).
set -euo pipefail

if [[ $# -ne 3 ]]; then
  echo "usage: check_exports.sh EXPECTED LIBRARY TOOL" >&2
  exit 2
fi
expected=$1 library=$2 tool=$3

list_exports() {
  case $library in
    *.dll | *.DLL)
      # Names follow the "[Ordinal/Name Pointer] Table" heading as
      # "[  n] name" lines, up to the next blank line.
      "$tool" -p "$library" | awk '
        /^\[Ordinal\/Name Pointer\] Table/ { inside = 1; next }
        inside && /^[[:space:]]*$/ { inside = 0 }
        inside && match($0, /\][[:space:]]+/) { print substr($0, RSTART + RLENGTH) }'
      ;;
    *)
      "$tool" -D --defined-only "$library" | awk 'NF >= 3 { print $3 }'
      ;;
  esac
}

actual=$(list_exports | LC_ALL=C sort)
wanted=$(grep -v '^[[:space:]]*$' "$expected" | LC_ALL=C sort)

missing=$(LC_ALL=C comm -13 <(echo "$actual") <(echo "$wanted"))
extra=$(LC_ALL=C comm -23 <(echo "$actual") <(echo "$wanted"))
duplicates=$(echo "$wanted" | uniq -d)

status=0
if [[ -n $duplicates ]]; then
  echo "listed twice in $(basename "$expected"):"; echo "$duplicates" | sed 's/^/  /'; status=1
fi
if [[ -n $missing ]]; then
  echo "missing from $(basename "$library"):"; echo "$missing" | sed 's/^/  /'; status=1
fi
if [[ -n $extra ]]; then
  echo "exported but not expected:"; echo "$extra" | sed 's/^/  /'; status=1
fi
case $library in
  *.dll | *.DLL)
    runtime=$("$tool" -p "$library" | sed -n 's/^[[:space:]]*DLL Name: //p' |
      grep -iE '^(libstdc\+\+|libgcc|libwinpthread)' || true)
    if [[ -n $runtime ]]; then
      echo "imports MinGW runtime DLLs:"; echo "$runtime" | sed 's/^/  /'; status=1
    fi
    ;;
esac
count=$(echo "$actual" | grep -c . || true)
[[ $status -eq 0 ]] && echo "$(basename "$library"): $count exports, as expected"
exit $status
