#!/bin/sh
# Runs after the linker: writes IMAGE's .hex beside an ARM ELF image, for a
# flash programmer, and leaves any other image (the host build) alone.
#
#   elf2hex.sh IMAGE
set -eu

if [ $# -ne 1 ]; then
  echo "usage: elf2hex.sh IMAGE" >&2
  exit 2
fi
image=$1
if [ ! -f "$image" ]; then
  echo "elf2hex.sh: no image $image" >&2
  exit 1
fi

# The ELF magic, then the machine at byte 18 (little-endian): 0x28 is ARM.
header=$(od -An -tx1 -N20 "$image" | tr -d ' \n')
magic=$(printf '%s\n' "$header" | cut -c1-8)
machine=$(printf '%s\n' "$header" | cut -c37-40)
if [ "$magic" != 7f454c46 ] || [ "$machine" != 2800 ]; then
  echo "elf2hex.sh: $image is not an ARM image; no .hex made"
  exit 0
fi

case ${image##*/} in
  *.*) hex=${image%.*}.hex ;;
  *) hex=$image.hex ;;
esac
arm-none-eabi-objcopy -O ihex "$image" "$hex"
arm-none-eabi-size "$image"
echo "elf2hex.sh: wrote $hex"
