#!/usr/bin/env bash
# Builds qpm in the release preset and uses it on the example project:
# makes examples/blinky's project afresh with the example's own script (in a
# scratch copy under build/release/demo), checks it against the committed
# project, shows it, builds both targets with qpm make, runs the host build,
# and shows that touching a header rebuilds exactly the files that include it.
#
#   scripts/demo.sh
set -euo pipefail

. "$(dirname "$0")/lib.sh"
cd "$QUILLON_ROOT"

stage "packages"
ensure_packages "${QUILLON_NATIVE_PACKAGES[@]}" "${QUILLON_FIRMWARE_PACKAGES[@]}"

stage "build (release)"
# qpm is on by default; said again in case an earlier configure turned it off.
cmake --preset release -DQUILLON_CLI=ON
cmake --build --preset release -j 2 --target qpm

qpm=$QUILLON_ROOT/build/release/cli/qpm
demo=$QUILLON_ROOT/build/release/demo
example=$demo/blinky

stage "make the example project with qpm"
rm -rf "$demo"
mkdir -p "$demo"
cp -R examples/blinky "$demo/"
rm -f "$example/blinky.qpj" "$example/blinky.qpj.user"
# The commands, as the script runs them.
sed -n 's/^"\$qpm"/qpm/p' examples/blinky/make_project.sh | sed 's/"\$p"/blinky.qpj/'
"$example/make_project.sh" "$qpm"
for part in blinky.qpj blinky.qpj.user; do
  if cmp -s "$example/$part" "examples/blinky/$part"; then
    echo "$part: the same bytes as the committed examples/blinky/$part"
  else
    echo "$part: differs from the committed examples/blinky/$part" >&2
    exit 1
  fi
done

cd "$example"
stage "qpm show blinky.qpj --all"
"$qpm" show blinky.qpj --all

stage "qpm store dump blinky.qpj.user (the per-user part)"
"$qpm" store dump blinky.qpj.user

stage "qpm deps blinky.qpj (unresolved includes are warned about on standard error)"
"$qpm" deps blinky.qpj

stage "qpm why blinky.qpj (nothing is built yet)"
"$qpm" why blinky.qpj

stage "qpm make blinky.qpj: the host target, with gcc"
"$qpm" make blinky.qpj

stage "run the host build"
./out/host/blinky.elf

stage "qpm make blinky.qpj --target Cortex-M: the firmware, with arm-none-eabi-gcc"
"$qpm" make blinky.qpj --target Cortex-M --quiet
arm-none-eabi-size out/cortex-m/blinky.elf
head -n 2 out/cortex-m/blinky.hex

stage "qpm why blinky.qpj: nothing is left to do"
"$qpm" why blinky.qpj
"$qpm" make blinky.qpj --quiet

stage "touch include/config.h: only the files that include it are compiled again"
sleep 0.01
touch include/config.h
"$qpm" why blinky.qpj
"$qpm" make blinky.qpj --quiet
