#!/usr/bin/env bash
# The example project is made by its script with qpm: rebuilt in a scratch
# copy, it must equal the committed files byte for byte, and qpm must read
# it back.
#
#   example_test.sh QPM EXAMPLE_DIR
set -euo pipefail

qpm=$(realpath "$1")
example=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cp -R "$example" "$work/blinky"
rm -f "$work/blinky/blinky.qpj" "$work/blinky/blinky.qpj.user"
"$work/blinky/make_project.sh" "$qpm" 2>"$work/make.err" || {
  cat "$work/make.err" >&2
  exit 1
}
# Every file the script adds exists, so qpm has nothing to warn about.
if [ -s "$work/make.err" ]; then
  echo "make_project.sh wrote to stderr:" >&2
  cat "$work/make.err" >&2
  exit 1
fi

for part in blinky.qpj blinky.qpj.user; do
  if ! cmp -s "$work/blinky/$part" "$example/$part"; then
    echo "examples/blinky/$part differs from what make_project.sh makes; run the script" >&2
    exit 1
  fi
done

# What a person sees of the default target, link order included.
(cd "$work/blinky" && "$qpm" show blinky.qpj) >"$work/show.txt"
cat >"$work/expected.txt" <<'TXT'
project blinky.qpj
targets:
  * "blinky - Debug"
    "Release"
global options:
  ExecutableFileName = "blinky.elf"
  IncludePaths = ["include", "drivers/include"]
  IncludeSearchSubDirs = [False, False]

target "blinky - Debug" (default)
  target options:
    TargetDirectory = "out/debug"
  file defaults:
    CompilerOptions = "-g -O0 $(EDNAME)" (own)
    AssemblerOptions = "-g $(EDNAME)" (own)
  group "Startup"
    startup/startup.asm
  group "Source files"
    src/main.c
    src/led.c
    src/timer.c
    src/uart.c
    drivers/gpio.c
TXT
diff -u "$work/expected.txt" "$work/show.txt"

# Release was copied from Debug and then given options of its own.
"$qpm" show "$work/blinky/blinky.qpj" --all >"$work/all.txt"
for line in 'target "Release"' '    TargetDirectory = "out/release"' \
            '    CompilerOptions = "-O2 -DNDEBUG $(EDNAME)" (own)' \
            '      CompilerOptions = "-O1 $(EDNAME)" (own)'; do
  grep -qxF -- "$line" "$work/all.txt" || {
    echo "qpm show --all lacks: $line" >&2
    exit 1
  }
done
