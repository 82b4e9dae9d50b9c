#!/usr/bin/env bash
# Turns a tree made by the anchor kit's gen_tree.py into a qpm project at the
# tree's root (bench.qpj), with object files and the link output made fresh,
# so that "qpm why" finds nothing to do until a file is touched.
#
#   make_bench_project.sh QPM TREE [NAME]
#
# Sources go into the link group "Source files", headers into "Header files"
# (headers are neither compiler nor assembler sources: no node, no object).
# The include paths are the -I directories of incflags.txt. Objects are
# <output dir>/<source name>.OBJ, as the library names them; sources of
# different folders that share a name share one object. The output dir is
# the tree root unless OBJ_DIR names one (TargetDirectory): setting a target
# option marks the target changed, and as qpm never builds, "qpm why" would
# then always say "Linker options have changed." besides what it finds.
# Never put them under build/: the kit's run-anchors.sh deletes it.
#
# Only the project and the objects are written; the dependency cache
# (bench.qpj.deps) is removed, so the next qpm deps or why scans afresh.
set -euo pipefail

qpm=${1:?usage: make_bench_project.sh QPM TREE [NAME]}
tree=${2:?usage: make_bench_project.sh QPM TREE [NAME]}
name=${3:-bench}
case $qpm in /*) ;; */*) qpm=$PWD/$qpm ;; esac
cd "$tree"
p=$name.qpj
out=${OBJ_DIR:-.}
batch=1000

"$qpm" new --force "$p"
"$qpm" group add "$p" "Header files"
# Many calls of a few hundred files each: one call per file would take
# minutes on the large tree, and one call for all would pass the limit of
# a command line.
xargs -a sources.txt -n "$batch" "$qpm" file add "$p" "Source files"
xargs -a headers.txt -n "$batch" "$qpm" file add "$p" "Header files"
read -r -a incflags < incflags.txt
"$qpm" option set "$p" IncludePaths "${incflags[@]/#-I/}"
[ "$out" = . ] || "$qpm" option set "$p" TargetDirectory "$out"
"$qpm" option set "$p" ExecutableFileName "$name.elf"
rm -f "$p.deps"

# Objects strictly newer than every source and header (times are compared
# in nanoseconds, newer meaning strictly greater), the link output newest.
make_objects() {
  mkdir -p "$out"
  sleep 0.05
  sed -e 's|.*/||' -e 's|\.[^.]*$|.OBJ|' -e "s|^|$out/|" sources.txt | sort -u | xargs touch
  sleep 0.05
  echo linked > "$out/$name.elf"
}
make_objects
echo "make_bench_project.sh: $tree/$p: $(wc -l < sources.txt) sources," \
  "$(wc -l < headers.txt) headers, objects in $out" >&2
