#!/usr/bin/env bash
# Makes blinky.qpj and blinky.qpj.user beside this script, with qpm only.
#
#   make_project.sh [QPM]
#
# QPM is the qpm program; without it the script takes the first of
# build/release, build/debug, any other build/*/ of the repository, or qpm on
# PATH. The project is made afresh each time, so running the script again
# gives the same bytes.

# $(NAME) in single quotes is a macro of the project, kept for qpm.
# shellcheck disable=SC2016
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

"$qpm" new --force "$p"
"$qpm" target rename "$p" "blinky - Debug" Host

# Sources are .c and .S, objects .o. Set first: the extensions decide which
# files take the compiler and which the assembler options set below.
"$qpm" option set "$p" AInpExtensions S
"$qpm" option set "$p" COutExtensions o
"$qpm" option set "$p" AOutExtensions o
"$qpm" option set "$p" LInpExtensions "o;a"

# Link order: the vector table first, then the firmware logic, then the
# boards (each target builds one of them).
"$qpm" group add "$p" Startup
"$qpm" group add "$p" Drivers
"$qpm" file add "$p" Startup startup/startup.S
"$qpm" file add "$p" "Source files" src/main.c src/led.c src/timer.c src/uart.c
"$qpm" file add "$p" Drivers drivers/board_stm32f1.c drivers/gpio.c drivers/board_host.c
"$qpm" group move "$p" Startup up

# The programs are project-wide but the targets need different compilers:
# the program is env, and each target's options start with the real driver.
"$qpm" option set "$p" CompilerRelPath env
"$qpm" option set "$p" AssemblerRelPath env
"$qpm" option set "$p" LinkerRelPath env
"$qpm" option set "$p" IncludePaths include drivers/include
"$qpm" option set "$p" ExecutableFileName blinky.elf
"$qpm" option set "$p" DisplayParameters 1
# GCC's diagnostics become the error list; -fno-show-column (in the
# compiler options) keeps its warnings warnings.
"$qpm" option set "$p" FilterName GCC
# After linking, a .hex beside the ARM image; the host image is left alone.
"$qpm" option set "$p" RunAfterLinker tools/elf2hex.sh
"$qpm" option set "$p" RunAfterLinkerParam '$(OUTPUTPATH)'

# A compiler runs in its source's directory, so paths into the project
# start with $(IRFDIR), the project's directory. In the linker options,
# "& & &" stands for the objects of the target's files in link order, those
# excluded from the target left out.

# Host: the firmware logic over a board that prints what it does.
"$qpm" option set "$p" TargetDirectory out/host --target Host
"$qpm" option set "$p" CompilerOptions --target Host 'gcc -c -fno-show-column -std=c11 -Wall -Wextra -O2 -g -I$(IRFDIR)include $(EDNAME) -o $(OUTPUTDIR)$(NOEXT).o'
"$qpm" option set "$p" AssemblerOptions --target Host 'gcc -c -fno-show-column -g $(EDNAME) -o $(OUTPUTDIR)$(NOEXT).o'
"$qpm" option set "$p" LinkerOptions --target Host 'gcc -o $(OUTPUTPATH) & & &'
"$qpm" option set "$p" ExcludeFromMake Yes --target Host --file startup/startup.S
"$qpm" option set "$p" ExcludeFromMake Yes --target Host --file drivers/board_stm32f1.c
"$qpm" option set "$p" ExcludeFromMake Yes --target Host --file drivers/gpio.c

# Cortex-M: an STM32F103 image, started by startup/startup.S and placed by
# the linker script.
"$qpm" target add "$p" Cortex-M
"$qpm" option set "$p" TargetDirectory out/cortex-m --target Cortex-M
"$qpm" option set "$p" CompilerOptions --target Cortex-M 'arm-none-eabi-gcc -c -fno-show-column -mcpu=cortex-m3 -mthumb -std=c11 -Wall -Wextra -Os -g -ffunction-sections -fdata-sections -I$(IRFDIR)include -I$(IRFDIR)drivers/include $(EDNAME) -o $(OUTPUTDIR)$(NOEXT).o'
"$qpm" option set "$p" AssemblerOptions --target Cortex-M 'arm-none-eabi-gcc -c -fno-show-column -mcpu=cortex-m3 -mthumb -g -x assembler-with-cpp $(EDNAME) -o $(OUTPUTDIR)$(NOEXT).o'
# $(OUTPUTNOEXT) is never quoted, hence the quotes around the map's name.
"$qpm" option set "$p" LinkerOptions --target Cortex-M 'arm-none-eabi-gcc -mcpu=cortex-m3 -mthumb -nostartfiles -specs=nano.specs -T $(IRFDIR)startup/stm32f103c8.ld -Wl,--gc-sections -Wl,-Map="$(OUTPUTNOEXT).map" -o $(OUTPUTPATH) & & &'
"$qpm" option set "$p" ExcludeFromMake Yes --target Cortex-M --file drivers/board_host.c

"$qpm" target default "$p" Host
