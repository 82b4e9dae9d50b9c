#!/usr/bin/env bash
# The build engine beside make on a tree of the anchor kit: 500 sources
# compiled by gcc with exactly the same command lines, one job each, then
# qpm with one job against two, then how fast a build stops on Ctrl-C.
#
#   KIT=DIR run-build-bench.sh [QPM]      (QPM: default build/release/cli/qpm)
#
# The project is made with qpm commands only. Its compile commands, as
# `qpm compdb` reports them, are written into a Makefile unchanged, so make
# and qpm run the same gcc lines into the same objects. Neither goes through
# a shell: RunCommandInterpreterCmp/Lnk are 0, and make execs a recipe line
# without metacharacters directly. The "link" is `touch OUTPUT` on both sides.
# qpm also captures each compile's output and runs the GCC filter over it;
# that is part of what is measured. Every timed run starts from an empty
# object folder (hyperfine --prepare).
#
# Stop latency: a build whose compiler sleeps 30 s first; once a compile is
# running, qpm gets SIGINT, and the time runs until qpm has exited and no
# process of any compile's group is left.
#
# Environment: KIT (the anchor kit's folder; required), BENCH_WORK (tree
# and results; default ${TMPDIR:-/tmp}/quillon-build-bench), RUNS (hyperfine
# runs, default 5), WARMUP (default 1), STOPS (stop repetitions, default 5),
# SOURCES (default 500).

# $(NAME) in single quotes is a macro of the project, kept for qpm.
# shellcheck disable=SC2016
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
KIT=${KIT:?set KIT to the anchor kit folder (gen_tree.py)}
QPM=${1:-$here/../build/release/cli/qpm}
case $QPM in /*) ;; *) QPM=$PWD/$QPM ;; esac
work=${BENCH_WORK:-${TMPDIR:-/tmp}/quillon-build-bench}
RUNS=${RUNS:-5}
WARMUP=${WARMUP:-1}
STOPS=${STOPS:-5}
SOURCES=${SOURCES:-500}
tree=$work/tree
out=$work/results/$(date +%Y%m%d-%H%M%S)

log() { printf '[%(%H:%M:%S)T] %s\n' -1 "$*" >&2; }
die() { echo "run-build-bench.sh: $*" >&2; exit 1; }
[ -x "$QPM" ] || die "$QPM missing: cmake --preset release && cmake --build --preset release"
case $work$QPM in
  *' '*) die "BENCH_WORK and QPM must not hold blanks (make cannot name such objects)" ;;
esac
command -v hyperfine > /dev/null || { apt-get update && apt-get install -y hyperfine; } >&2
for tool in gcc make python3 pgrep; do command -v $tool > /dev/null || die "$tool missing"; done
mkdir -p "$out"

# ---------------------------------------------------------------- tree and project
log "tree of $SOURCES sources"
python3 "$KIT/gen_tree.py" --sources "$SOURCES" --headers $((SOURCES / 2)) --force "$tree" > /dev/null
[ -z "$(sed 's|.*/||' "$tree/sources.txt" | sort | uniq -d)" ] ||
  die "sources share a name: their objects would clash"

# make_project NAME COMPILER: NAME.qpj at the tree root, objects in obj/.
make_project() {
  local p=$1.qpj
  "$QPM" new --force "$p"
  xargs -a sources.txt -n 1000 "$QPM" file add "$p" "Source files"
  "$QPM" option set "$p" CompilerRelPath "$2"
  "$QPM" option set "$p" RunCommandInterpreterCmp 0
  "$QPM" option set "$p" RunCommandInterpreterLnk 0
  # Compiles run at the tree root, where the -I paths start, and gcc's -o
  # already puts each object where it belongs.
  "$QPM" option set "$p" ChangeWorkingDirectory 0
  "$QPM" option set "$p" CopyOutputFilesToTargetDir 0
  "$QPM" option set "$p" COutExtensions o
  "$QPM" option set "$p" FilterName GCC
  "$QPM" option set "$p" DisplayParameters 0
  "$QPM" option set "$p" ExecutableFileName bench.out
  "$QPM" option set "$p" LinkerRelPath touch
  "$QPM" option set "$p" TargetDirectory obj
  "$QPM" option set "$p" LinkerOptions '$(OUTPUTPATH)'
  "$QPM" option set "$p" CompilerOptions -- \
    "-c -fno-show-column $(cat incflags.txt) \$(EDNAME) -o \$(OUTPUTDIR)\$(NOEXT).o"
}
cd "$tree"
make_project P gcc
cat > "$work/slow-gcc" << 'EOF'
#!/bin/sh
# A compiler that takes its time: what a stop has to cut short.
sleep 30
exec gcc "$@"
EOF
chmod +x "$work/slow-gcc"
make_project slow "$work/slow-gcc"

# The Makefile: qpm's own compile commands, one rule per object, then the link.
"$QPM" compdb P.qpj -o "$work/compile_commands.json" > /dev/null
python3 - "$work/compile_commands.json" "$tree/obj/bench.out" > "$work/build.mk" << 'EOF'
import json, sys
entries, target = json.load(open(sys.argv[1])), sys.argv[2]
objects = [e["command"].rsplit(" -o ", 1)[1] for e in entries]
print(".SUFFIXES:\n%s: %s\n\ttouch %s" % (target, " ".join(objects), target))
for e, o in zip(entries, objects):
    print("%s: %s\n\t%s" % (o, e["file"], e["command"]))
EOF

clean="rm -rf $tree/obj && mkdir $tree/obj"
make_cmd="make -r -j1 -f $work/build.mk -C $tree"
qpm1="$QPM build $tree/P.qpj -j 1 --quiet"
qpm2="$QPM build $tree/P.qpj -j 2 --quiet"
# Both must really build everything before either is timed.
for cmd in "$make_cmd" "$qpm1"; do
  eval "$clean"
  $cmd > "$out/check.log" 2>&1 || die "failed: $cmd (see $out/check.log)"
  n=$(find obj -name '*.o' | wc -l)
  if [ "$n" -ne "$SOURCES" ] || [ ! -f obj/bench.out ]; then
    die "$cmd: $n objects, expected $SOURCES and obj/bench.out"
  fi
done

# ---------------------------------------------------------------- timing
log "hyperfine: make -j1, qpm -j1, qpm -j2 ($RUNS runs each)"
cut -d' ' -f1-3 /proc/loadavg > "$out/load.txt"
hyperfine --style basic --runs "$RUNS" --warmup "$WARMUP" --prepare "$clean" \
  --export-json "$out/build.json" \
  -n make_j1 "$make_cmd" -n qpm_j1 "$qpm1" -n qpm_j2 "$qpm2" >&2
cut -d' ' -f1-3 /proc/loadavg >> "$out/load.txt"

# ---------------------------------------------------------------- stop latency
ms_since() { echo $(( (${EPOCHREALTIME/./} - ${1/./}) / 1000 )); }
# qpm gone: exited and reaped, or a zombie until this shell reaps it.
qpm_gone() {
  local state=gone
  read -r _ _ state _ 2> /dev/null < "/proc/$1/stat"
  [[ $state == Z* || $state == gone ]]
}
# A live process in the groups; killed ones left as zombies under init (which
# may reap them late) are dead and do not count.
groups_alive() { pgrep -g "$1" -r R,S,D,T,t,I > /dev/null; }
log "stop latency ($STOPS stops)"
: > "$out/stops.txt"
for i in $(seq "$STOPS"); do
  eval "$clean"
  "$QPM" build "$tree/slow.qpj" -j 2 --quiet > "$out/stop-$i.log" 2>&1 &
  pid=$!
  for _ in $(seq 500); do
    [ -z "$(pgrep -P "$pid")" ] || break
    sleep 0.01
  done
  sleep 0.2   # the second job starts too
  groups=$(pgrep -d, -P "$pid") || die "no compile started under qpm $pid"
  start=$EPOCHREALTIME
  kill -INT "$pid"
  exited=
  while [ -z "$exited" ] || groups_alive "$groups"; do
    [ -n "$exited" ] || ! qpm_gone "$pid" || exited=$(ms_since "$start")
    if [ "$(ms_since "$start")" -gt 10000 ]; then
      kill -KILL "$pid" 2> /dev/null || true
      for g in ${groups//,/ }; do kill -KILL -- "-$g" 2> /dev/null || true; done
      die "qpm $pid or its compiles still there 10 s after SIGINT"
    fi
    sleep 0.005
  done
  all=$(ms_since "$start")
  rc=0; wait "$pid" || rc=$?
  echo "$all $exited $rc" >> "$out/stops.txt"
  log "stop $i: qpm exited after $exited ms (status $rc), its compiles (groups ${groups//,/ }) gone after $all ms"
done

# ---------------------------------------------------------------- summary
python3 - "$out" "$SOURCES" "$make_cmd" "$qpm1" "$qpm2" << 'EOF' | tee "$out/summary.md"
import json, statistics, sys
out, n, make_cmd, qpm1, qpm2 = sys.argv[1], int(sys.argv[2]), *sys.argv[3:]
results = {r["command"]: r for r in json.load(open(out + "/build.json"))["results"]}
med = {k: statistics.median(r["times"]) for k, r in results.items()}
# user + system of the whole process tree (means): what the load barely moves.
cpu = {k: r["user"] + r["system"] for k, r in results.items()}
load = " / ".join(line.strip() for line in open(out + "/load.txt"))
stops = [[int(x) for x in line.split()] for line in open(out + "/stops.txt")]
m, q1, q2 = med["make_j1"], med["qpm_j1"], med["qpm_j2"]
print("| measure | value | goal |\n|---|---:|---|")
print("| make -j1 / qpm -j1 / qpm -j2 (medians) | %.2f s / %.2f s / %.2f s | |" % (m, q1, q2))
print("| per file: make / qpm overhead over make | %.1f ms / %+.2f ms | |" % (m / n * 1e3, (q1 - m) / n * 1e3))
print("| qpm -j1 / make -j1 | %.3f | <= 1.10 |" % (q1 / m))
print("| CPU (user+sys) per file: make / qpm overhead; qpm / make | %.1f ms / %+.2f ms; %.3f | |"
      % (cpu["make_j1"] / n * 1e3, (cpu["qpm_j1"] - cpu["make_j1"]) / n * 1e3, cpu["qpm_j1"] / cpu["make_j1"]))
print("| speed-up qpm -j2 over -j1 | %.2f | >= 1.8 |" % (q1 / q2))
for col, what in ((0, "until its compiles are gone"), (1, "until qpm exited")):
    times = [s[col] for s in stops]
    print("| stop latency %s, max of %d | %d ms (all: %s) | < 1000 ms |"
          % (what, len(times), max(times), " ".join(map(str, times))))
print("\nLoad average before / after the timing (1, 5, 15 min): %s" % load)
print("\nmake: `%s`\nqpm:  `%s`\nqpm:  `%s`" % (make_cmd, qpm1, qpm2))
EOF
log "results: $out"
