#!/usr/bin/env bash
# qpm export-xml on the example gives the expected document line for line;
# only the creation comment (a date) and the example's location differ from
# run to run. Also: a file that cannot be created fails the command.
#
#   export_xml_test.sh QPM EXAMPLE_DIR EXPECTED_XML
set -uo pipefail

qpm=$(realpath "$1")
example=$(realpath "$2")
expected=$(realpath "$3")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$example" "$work/blinky"
rm -f "$work/blinky/blinky.qpj.deps"
cd "$work/blinky"

if ! "$qpm" export-xml blinky.qpj "$work/out.xml" 2>"$work/err.txt"; then
  echo "qpm export-xml failed:" >&2
  cat "$work/err.txt" >&2
  exit 1
fi
if ! sed -n 2p "$work/out.xml" | grep -qE '^<!-- Created on .+-->$'; then
  echo "second line is not the creation comment: $(sed -n 2p "$work/out.xml")" >&2
  exit 1
fi
# The example's location becomes EXAMPLE; the comment line goes.
sed -e 2d -e "s|$work/blinky/|EXAMPLE/|g" "$work/out.xml" >"$work/shown.xml"
if ! diff -u "$expected" "$work/shown.xml"; then
  echo "qpm export-xml: the document differs from $expected" >&2
  exit 1
fi

if "$qpm" export-xml blinky.qpj "$work/missing/dir/out.xml" 2>"$work/err.txt" ||
   ! grep -q 'cannot create' "$work/err.txt"; then
  echo "an output file that cannot be created must fail the command:" >&2
  cat "$work/err.txt" >&2
  exit 1
fi
