#!/usr/bin/env bash
# Compares "qpm deps --make" with "gcc -MM" on trees of the anchor kit.
#
#   check_gcc_equal.sh [small|large]...      (default: small)
#
# For each preset two trees: one made with --all-active, where no include
# line is hidden from the preprocessor, so the two dependency sets must be
# equal for every source (the script fails otherwise); and the default one,
# where about 1% of include lines sit in "#if 0" or "#ifdef CONFIG_..."
# blocks: our scanner does not evaluate the preprocessor and finds those as
# well, so there it only reports the counts.
#
# Environment: QPM (default: build/release/cli/qpm of this repository),
# KIT (the anchor kit's folder, where gen_tree.py and depcount.py are),
# BENCH_WORK (trees and outputs; default ${TMPDIR:-/tmp}/quillon-bench), REGEN=1 to
# make the trees afresh.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
QPM=${QPM:-$here/../build/release/cli/qpm}
KIT=${KIT:?set KIT to the anchor kit folder (gen_tree.py, depcount.py)}
BWORK=${BENCH_WORK:-${TMPDIR:-/tmp}/quillon-bench}
REGEN=${REGEN:-0}
presets=("$@")
[ ${#presets[@]} -eq 0 ] && presets=(small)
case $QPM in /*) ;; *) QPM=$PWD/$QPM ;; esac
[ -x "$QPM" ] || { echo "check_gcc_equal.sh: no qpm at $QPM" >&2; exit 1; }

log() { printf '[%(%H:%M:%S)T] %s\n' -1 "$*" >&2; }

# compare PRESET VARIANT [GEN_FLAGS...]: prints depcount's comparison as JSON.
compare() {
  local preset=$1 variant=$2; shift 2
  local dir=$BWORK/trees/$preset$variant out=$BWORK/gcc-equal/$preset$variant
  mkdir -p "$out"
  if [ "$REGEN" = 1 ] || [ ! -f "$dir/manifest.json" ]; then
    log "generating $preset$variant"
    python3 "$KIT/gen_tree.py" --preset "$preset" "$@" --force "$dir" > /dev/null
  fi
  if [ ! -f "$dir/bench.qpj" ]; then
    "$here/make_bench_project.sh" "$QPM" "$dir" > /dev/null 2>&1
  fi
  cd "$dir"
  log "$preset$variant: qpm deps --make"
  "$QPM" deps bench.qpj --make > "$out/qpm.deps"
  log "$preset$variant: gcc -MM"
  # shellcheck disable=SC2046
  gcc -MM -MG -nostdinc $(cat incflags.txt) @sources.txt > "$out/gcc.deps" 2> "$out/gcc.err"
  python3 "$KIT/depcount.py" --existing --json "$out/qpm.deps" --compare "$out/gcc.deps" \
    | tee "$out/compare.json"
}

failed=0
for preset in "${presets[@]}"; do
  result=$(compare "$preset" -active --all-active)
  echo "$preset --all-active: $result"
  if ! python3 -c 'import json,sys; r=json.loads(sys.argv[1]); sys.exit(any(r[k] for k in
      ("only_in_first","only_in_second","targets_only_in_first","targets_only_in_second")))' \
      "$result"; then
    echo "check_gcc_equal.sh: $preset --all-active: qpm and gcc -MM differ" >&2
    failed=1
  fi
  result=$(compare "$preset" "")
  echo "$preset default (inactive includes counted by qpm only): $result"
done
exit $failed
