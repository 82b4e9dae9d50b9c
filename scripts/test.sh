#!/usr/bin/env bash
# The full check of the tree, as CI runs it: installs what is missing, then
# configures, builds and tests each preset in turn (native debug, sanitizers,
# the x86_64 DLL under Wine, the i686 DLL's export table, the build tests
# under the thread sanitizer), then fuzzes for a
# minute. Stops at the first failure. The last line is always the total over
# every CTest run, "N passed, N failed"; a stage that fails before its tests
# report (configure, build, fuzzing) counts as one failure.
#
#   scripts/test.sh            (from anywhere; builds under build/<preset>)
set -uo pipefail

. "$(dirname "$0")/lib.sh"
cd "$QUILLON_ROOT" || exit 1

JOBS=2
FUZZ_SECONDS=60
passed=0
failed=0
log=$(mktemp)

finish() {
  rm -f "$log"
  echo
  echo "$passed passed, $failed failed"
}
trap finish EXIT

fail_stage() {
  echo "FAILED: $*" >&2
  failed=$((failed + 1))
  exit 1
}

# Adds the counts from CTest's summary line, "NN% tests passed, F tests
# failed out of T".
count_tests() {
  local line total bad
  line=$(grep -E '[0-9]+ tests failed out of [0-9]+' "$log" | tail -n 1)
  [[ -z $line ]] && return 1
  bad=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\1/' <<<"$line")
  total=$(sed -E 's/.* tests failed out of ([0-9]+).*/\1/' <<<"$line")
  passed=$((passed + total - bad))
  failed=$((failed + bad))
}

run_preset() {
  local preset=$1
  stage "$preset: configure"
  cmake --preset "$preset" || fail_stage "configure $preset"
  stage "$preset: build"
  cmake --build --preset "$preset" -j "$JOBS" || fail_stage "build $preset"
  stage "$preset: test"
  ctest --preset "$preset" 2>&1 | tee "$log"
  local status=${PIPESTATUS[0]}
  if ! count_tests; then
    fail_stage "test $preset (no test summary)"
  fi
  [[ $status -eq 0 ]] || { echo "FAILED: test $preset" >&2; exit 1; }
}

stage "packages"
ensure_packages "${QUILLON_NATIVE_PACKAGES[@]}" "${QUILLON_EXTRA_PACKAGES[@]}" ||
  fail_stage "installing packages"

start=$SECONDS
for preset in debug asan mingw-x64 mingw-i686; do
  run_preset "$preset"
done

# The build thread against the host's thread (stop, polling) and the
# process runner's waits, under the thread sanitizer.
stage "tsan: configure"
cmake --preset tsan || fail_stage "configure tsan"
stage "tsan: build"
cmake --build --preset tsan -j "$JOBS" --target make_test platform_test model_test || fail_stage "build tsan"
stage "tsan: test"
ctest --preset tsan -R '^(make_test|platform_test|model_test)$' 2>&1 | tee "$log"
tsan_status=${PIPESTATUS[0]}
count_tests || fail_stage "test tsan (no test summary)"
[[ $tsan_status -eq 0 ]] || { echo "FAILED: test tsan" >&2; exit 1; }

if [[ -f tests/fuzz/run.sh ]]; then
  stage "fuzz: ${FUZZ_SECONDS}s"
  bash tests/fuzz/run.sh "$FUZZ_SECONDS" || fail_stage "fuzz"
fi

stage "all stages passed in $((SECONDS - start))s"
