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
  * "Host"
    "Cortex-M"
global options:
  DisplayParameters = 1
  ExecutableFileName = "blinky.elf"
  COutExtensions = "o"
  AInpExtensions = "S"
  AOutExtensions = "o"
  LInpExtensions = "o;a"
  RunAfterLinker = "tools/elf2hex.sh"
  RunAfterLinkerParam = "$(OUTPUTPATH)"
  CompilerRelPath = "env"
  AssemblerRelPath = "env"
  LinkerRelPath = "env"
  IncludePaths = ["include", "drivers/include"]
  IncludeSearchSubDirs = [False, False]
filter options:
  FilterName = "GCC"

target "Host" (default)
  target options:
    TargetDirectory = "out/host"
    LinkerOptions = "gcc -o $(OUTPUTPATH) & & &"
  file defaults:
    CompilerOptions = "gcc -c -fno-show-column -std=c11 -Wall -Wextra -O2 -g -I$(IRFDIR)include $(EDNAME) -o $(OUTPUTDIR)$(NOEXT).o" (own)
    AssemblerOptions = "gcc -c -fno-show-column -g $(EDNAME) -o $(OUTPUTDIR)$(NOEXT).o" (own)
  group "Startup"
    startup/startup.S
      ExcludeFromMake = Yes (own)
  group "Source files"
    src/main.c
    src/led.c
    src/timer.c
    src/uart.c
  group "Drivers"
    drivers/board_stm32f1.c
      ExcludeFromMake = Yes (own)
    drivers/gpio.c
      ExcludeFromMake = Yes (own)
    drivers/board_host.c
TXT
diff -u "$work/expected.txt" "$work/show.txt"

# Cortex-M builds the other board, with its own options.
"$qpm" show "$work/blinky/blinky.qpj" --all >"$work/all.txt"
sed -n '/^target "Cortex-M"$/,$p' "$work/all.txt" >"$work/cortex-m.txt"
for line in '    TargetDirectory = "out/cortex-m"' '    drivers/board_host.c' \
            '      ExcludeFromMake = Yes (own)'; do
  grep -qxF -- "$line" "$work/cortex-m.txt" || {
    echo "qpm show --all: target Cortex-M lacks: $line" >&2
    exit 1
  }
done
grep -qF 'CompilerOptions = "arm-none-eabi-gcc -c -fno-show-column' "$work/cortex-m.txt" || {
  echo "qpm show --all: target Cortex-M lacks its own compiler options" >&2
  exit 1
}

# The host target builds with the machine's gcc and runs; a second make has
# nothing to do; a touched header brings back exactly its includers.
cd "$work/blinky"
"$qpm" make blinky.qpj --quiet >"$work/make1.txt" 2>&1 || {
  cat "$work/make1.txt" >&2
  exit 1
}
grep -qxF '0 Error(s)  4 Warning(s)' "$work/make1.txt" || {
  echo "qpm make: unexpected summary" >&2
  cat "$work/make1.txt" >&2
  exit 1
}
./out/host/blinky.elf | grep -qF 'tick 20: uart "uptime 2 s"'
"$qpm" make blinky.qpj --quiet | grep -qF '... is up to date.'
sleep 0.01
touch include/config.h
"$qpm" why blinky.qpj 2>/dev/null >"$work/why.txt"
printf "%s\n" "'board_host.o' is not up to date." "'led.o' is not up to date." \
  "'main.o' is not up to date." | diff -u - "$work/why.txt"
