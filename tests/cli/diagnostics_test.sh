#!/usr/bin/env bash
# qpm make --diagnostics: the example with an error put into one source gives
# a SARIF log that the published schema accepts and that points at the line,
# and the same entries as JSON.
#
#   diagnostics_test.sh QPM EXAMPLE_DIR SCHEMA
set -euo pipefail

qpm=$(realpath "$1")
example=$(realpath "$2")
schema=$(realpath "$3")
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cp -R "$example" "$work/blinky"
cd "$work/blinky"
echo 'int broken = ;' >>src/led.c
line=$(wc -l <src/led.c)

if "$qpm" make blinky.qpj --quiet --diagnostics "$work/out.sarif" >"$work/make.txt" 2>&1; then
  echo "qpm make succeeded on a broken source" >&2
  exit 1
fi
/usr/bin/python3 "$here/check_sarif.py" "$schema" "$work/out.sarif" error - /src/led.c "$line"

"$qpm" make blinky.qpj --quiet --diagnostics "$work/out.json" >/dev/null 2>&1 || true
/usr/bin/python3 - "$work/out.json" "$line" <<'PY'
import json, sys
entries = json.load(open(sys.argv[1]))
line = int(sys.argv[2])
hits = [e for e in entries if e["file"].endswith("led.c") and e["line"] == line
        and e["severity"] == "error" and e["kind"] == "compiler"]
sys.exit(0 if len(hits) == 1 else f"no single error at led.c:{line} in {entries}")
PY

# A name that is neither is refused before anything is built.
status=0
"$qpm" make blinky.qpj --diagnostics "$work/out.txt" >/dev/null 2>&1 || status=$?
[ "$status" = 2 ] || { echo "--diagnostics out.txt: exit $status, wanted 2" >&2; exit 1; }
