#!/usr/bin/env bash
# Our include scanning and rebuild decision beside the anchor kit's tools,
# in one run, so that the ratios compare figures taken on the same machine
# at the same time.
#
#   KIT=DIR run-deps-bench.sh [small] [large]        (default: both)
#
# Per tree: the kit's gen_tree.py makes it (once), make_bench_project.sh
# turns it into bench.qpj with fresh objects at the tree root, deps_bench
# measures the scanner and the decision in process, then the kit's
# run-anchors.sh measures every anchor with our commands in its placeholders:
#
#   OUR_SCAN           qpm deps --make (graph cache kept), make rules to $DEPS_OUT;
#                      the kit compares them with gcc -MM
#   OUR_SCAN_PREPARE   removes the graph cache: the cold variant scans everything
#   OUR_CHECK          qpm why, in the kit's three states (nothing to do, hottest
#                      header touched, a 75th-percentile header touched)
#
# Our objects are not the kit's build/obj ones, which it deletes and builds
# again: ours lie at the tree root, made newer than every source before the
# kit starts, and the kit only ever touches a header and gives it its time
# back. Last, qpm why and ninja -n are timed once more side by side, with
# more runs, in the states nothing-to-do and hot header (restored between
# runs by hyperfine --prepare).
#
# Environment: KIT (the anchor kit's folder; required), QPM and DEPS_BENCH
# (default: build/release of this repository), BENCH_WORK (trees, results,
# scratch; default ${TMPDIR:-/tmp}/quillon-bench), SKIP_GCC=1 (skip the
# minutes-long gcc anchors), REGEN=1 (make the trees afresh), PAIRED_RUNS
# (runs of the side-by-side timing, default 30), GB_REPS (deps_bench
# repetitions, default 5); the kit's own knobs (RUNS_FAST, ...) pass through.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
KIT=${KIT:?set KIT to the anchor kit folder (run-anchors.sh, gen_tree.py, floor.c)}
KIT=$(cd "$KIT" && pwd)
QPM=${QPM:-$here/../build/release/cli/qpm}
DEPS_BENCH=${DEPS_BENCH:-$here/../build/release/bench/deps_bench}
export BENCH_WORK=${BENCH_WORK:-${TMPDIR:-/tmp}/quillon-bench}
RESULTS=${RESULTS:-$BENCH_WORK/results/$(date +%Y%m%d-%H%M%S)}
PAIRED_RUNS=${PAIRED_RUNS:-30}
GB_REPS=${GB_REPS:-5}
REGEN=${REGEN:-0}
trees=("$@")
[ ${#trees[@]} -eq 0 ] && trees=(small large)

log() { printf '[%(%H:%M:%S)T] %s\n' -1 "$*" >&2; }
absolute() { case $1 in /*) echo "$1" ;; *) echo "$PWD/$1" ;; esac; }
QPM=$(absolute "$QPM")
DEPS_BENCH=$(absolute "$DEPS_BENCH")
for tool in "$QPM" "$DEPS_BENCH"; do
  [ -x "$tool" ] || { echo "run-deps-bench.sh: $tool missing: cmake --preset release && cmake --build --preset release" >&2; exit 1; }
done
mkdir -p "$RESULTS"

# ---------------------------------------------------------------- our part
for tree in "${trees[@]}"; do
  dir=$BENCH_WORK/trees/$tree
  out=$RESULTS/$tree
  mkdir -p "$out"
  if [ "$REGEN" = 1 ] || [ ! -f "$dir/manifest.json" ]; then
    log "generating $tree tree"
    python3 "$KIT/gen_tree.py" --preset "$tree" --force "$dir" > /dev/null
  fi
  log "$tree: project and objects"
  "$here/make_bench_project.sh" "$QPM" "$dir"
  (cd "$dir" && "$QPM" deps bench.qpj --make > /dev/null)   # the graph cache
  [ -z "$(cd "$dir" && "$QPM" why bench.qpj)" ] || { echo "qpm why: not up to date" >&2; exit 1; }
  log "$tree: deps_bench"
  QUILLON_BENCH_TREE=$dir "$DEPS_BENCH" --benchmark_repetitions="$GB_REPS" \
    --benchmark_report_aggregates_only=true --benchmark_counters_tabular=true \
    --benchmark_out="$out/deps_bench.json" --benchmark_out_format=json >&2
done

# ---------------------------------------------------------------- the kit
# $DEPS_OUT left for hyperfine's shell to expand: the kit sets it.
export OUR_SCAN="$QPM deps bench.qpj --make > \"\$DEPS_OUT\""
export OUR_SCAN_PREPARE="rm -f bench.qpj.deps"
export OUR_CHECK="$QPM why bench.qpj > /dev/null"
log "anchor kit: ${trees[*]}"
RESULTS=$RESULTS "$KIT/run-anchors.sh" "${trees[@]}" > /dev/null

# ---------------------------------------------------------------- side by side
for tree in "${trees[@]}"; do
  dir=$BENCH_WORK/trees/$tree
  out=$RESULTS/$tree
  cd "$dir"
  ninja -n | grep -q 'no work to do' || { echo "ninja: not up to date" >&2; exit 1; }
  hot=$(python3 -c 'import json;print(json.load(open("manifest.json"))["hot_header"])')
  log "$tree: qpm why and ninja -n side by side, nothing to do"
  hyperfine -N --style basic --warmup 3 --runs "$PAIRED_RUNS" \
    --export-json "$out/paired_noop.json" \
    -n ninja_dry_noop "ninja -n" -n qpm_why_noop "$QPM why bench.qpj" >&2
  # Touched before every run with its time given back after: each run sees
  # the hot header newer than every object, our graph cache not yet aware.
  ref=$(mktemp)
  touch -r "$hot" "$ref"
  cp bench.qpj.deps "$BENCH_WORK/cache.saved"
  log "$tree: qpm why and ninja -n side by side, hot header touched"
  hyperfine --style basic --warmup 2 --runs "$PAIRED_RUNS" \
    --prepare "cp $BENCH_WORK/cache.saved bench.qpj.deps; touch $hot" \
    --cleanup "touch -r $ref $hot" \
    --export-json "$out/paired_hot.json" \
    -n ninja_dry_hot "ninja -n > /dev/null" -n qpm_why_hot "$QPM why bench.qpj > /dev/null" >&2
  touch -r "$ref" "$hot"
  rm -f "$ref" "$BENCH_WORK/cache.saved"
  [ -z "$("$QPM" why bench.qpj)" ] || { echo "qpm why: not up to date after restore" >&2; exit 1; }
done

python3 "$here/summarize_deps.py" "$RESULTS" > "$RESULTS/deps-summary.md"
log "summary: $RESULTS/deps-summary.md (the kit's: $RESULTS/summary.md)"
cat "$RESULTS/deps-summary.md"
