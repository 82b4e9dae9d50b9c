#!/usr/bin/env bash
# Makes blinky.qpj and blinky.qpj.user beside this script, with qpm only.
#
#   make_project.sh [QPM]
#
# QPM is the qpm program; without it the script takes the first of
# build/release, build/debug, any other build/*/ of the repository, or qpm on
# PATH. The project is made afresh each time, so running the script again
# gives the same bytes.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)

find_qpm() {
  local candidate
  for candidate in "$root/build/release/cli/qpm" "$root/build/debug/cli/qpm" \
                   "$root"/build/*/cli/qpm; do
    if [ -x "$candidate" ]; then
      echo "$candidate"
      return
    fi
  done
  command -v qpm || { echo "make_project.sh: no qpm found; pass its path" >&2; exit 1; }
}

qpm=${1:-$(find_qpm)}
# A relative path means from where the script was started.
case $qpm in
  /*) ;;
  */*) qpm=$PWD/$qpm ;;
esac
cd "$here"
p=blinky.qpj

# One target, "blinky - Debug", with the link group "Source files".
"$qpm" new --force "$p"
"$qpm" group add "$p" Startup
"$qpm" file add "$p" "Source files" src/main.c src/led.c src/timer.c src/uart.c drivers/gpio.c
"$qpm" file add "$p" Startup startup/startup.asm
# The vector table must come first in the image.
"$qpm" group move "$p" Startup up

# Project-wide: where headers are, what the linker makes.
"$qpm" option set "$p" IncludePaths include drivers/include
"$qpm" option set "$p" ExecutableFileName blinky.elf

# The debug target: its output directory and the compiler options its C
# files inherit.
"$qpm" option set "$p" TargetDirectory out/debug
"$qpm" option set "$p" CompilerOptions -- '-g -O0 $(EDNAME)'
"$qpm" option set "$p" AssemblerOptions -- '-g $(EDNAME)'

# Release starts as a copy of Debug, options included, then differs.
"$qpm" target add "$p" Release --copy-from "blinky - Debug"
"$qpm" option set "$p" TargetDirectory out/release --target Release
"$qpm" option set "$p" CompilerOptions --target Release -- '-O2 -DNDEBUG $(EDNAME)'
# The UART driver is timing-sensitive: it keeps its own options in Release.
"$qpm" option set "$p" CompilerOptions --target Release --file src/uart.c -- '-O1 $(EDNAME)'

"$qpm" target default "$p" "blinky - Debug"
