#!/usr/bin/env bash
# The GCC, Microsoft and IAR filters over a 200 MB log each, beside the floor
# of reading the same file line by line with `wc -l`, in one run with a warm
# page cache.
#
#   run-filter-bench.sh [FILTER_BENCH]   (default build/release/bench/filter_bench)
#
# Environment: BENCH_WORK (logs; default ${TMPDIR:-/tmp}/quillon-filter-bench),
# MEGABYTES (default 200), RUNS (best of, default 3).
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
bench=${1:-$here/../build/release/bench/filter_bench}
work=${BENCH_WORK:-${TMPDIR:-/tmp}/quillon-filter-bench}
MEGABYTES=${MEGABYTES:-200}
RUNS=${RUNS:-3}
mkdir -p "$work"

# Best wall time of RUNS runs of a command, in seconds.
best_of() {
  local best=999999 start end
  for _ in $(seq "$RUNS"); do
    start=$(date +%s.%N)
    "$@" >/dev/null
    end=$(date +%s.%N)
    best=$(awk -v a="$best" -v s="$start" -v e="$end" 'BEGIN { t = e - s; printf "%.4f", (t < a ? t : a) }')
  done
  echo "$best"
}

printf '%-10s %10s %10s %8s\n' filter 'wc -l s' 'filter s' ratio
for pair in gcc:GCC microsoft:Microsoft iar:IAR; do
  layout=${pair%%:*}
  filter=${pair#*:}
  log=$work/$layout.log
  [ -s "$log" ] || "$bench" make "$layout" "$log" "$MEGABYTES"
  cat "$log" >/dev/null
  floor=$(best_of wc -l "$log")
  line=$("$bench" run "$filter" "$log" "$RUNS")
  took=$(sed -E 's/.*: ([0-9.]+) s,.*/\1/' <<<"$line")
  printf '%-10s %10s %10s %8s   %s\n' "$filter" "$floor" "$took" \
    "$(awk -v a="$took" -v b="$floor" 'BEGIN { printf "%.2f", a / b }')" "$line"
done
