#!/usr/bin/env bash
# Builds the fuzz targets with the `fuzz` preset and runs each for its share
# of a time budget in seconds (default 60). Exits non-zero when any target
# reports a crash, leak, timeout or oversized allocation; the offending input
# is kept under build/fuzz/artifacts/.
set -euo pipefail

budget=${1:-60}
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
build=$root/build/fuzz

cd "$root"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target quillon_fuzz -j 2

mapfile -t targets < <(grep -v '^$' "$build/tests/fuzz/fuzz_targets.txt")
if [ "${#targets[@]}" -eq 0 ]; then
  echo "no fuzz targets" >&2
  exit 1
fi
share=$((budget / ${#targets[@]}))
if [ "$share" -lt 1 ]; then share=1; fi

mkdir -p "$build/artifacts"
failed=0
for target in "${targets[@]}"; do
  # New inputs go to the first folder, so the checked-in seeds stay as they are.
  work=$build/corpus/$target
  mkdir -p "$work"
  folders=("$work")
  seeds=$here/corpus/${target#fuzz_}
  if [ -d "$seeds" ]; then folders+=("$seeds"); fi
  echo "== $target for ${share}s"
  if ! "$build/tests/fuzz/$target" -max_total_time="$share" -timeout=10 \
      -rss_limit_mb=2048 -malloc_limit_mb=256 -print_final_stats=1 \
      -artifact_prefix="$build/artifacts/$target-" "${folders[@]}"; then
    echo "$target: finding kept in $build/artifacts" >&2
    failed=1
  fi
done
exit "$failed"
