#!/usr/bin/env python3
"""Ratios of our figures to the anchors of the same run-deps-bench.sh run.

Usage: summarize_deps.py RESULTS > deps-summary.md

Reads RESULTS/<tree>/deps_bench.json (Google Benchmark, medians of the
repetitions), the kit's hyperfine exports beside it, and paired_*.json
(qpm why and ninja -n timed side by side). Medians throughout.
"""
import json
import os
import statistics
import sys


def hyperfine(path):
    """name -> median seconds of every command in one hyperfine export."""
    if not os.path.exists(path):
        return {}
    try:
        results = json.load(open(path)).get("results", [])
    except ValueError:
        return {}
    if len(results) != 1:
        return {}
    return {os.path.basename(path)[:-5]: statistics.median(results[0]["times"])}


def kit(tree_dir):
    res = {}
    for f in sorted(os.listdir(tree_dir)):
        if f.endswith(".json") and not f.startswith(("paired_", "deps_bench")):
            res.update(hyperfine(os.path.join(tree_dir, f)))
    return res


def paired(tree_dir):
    res = {}
    for state in ("noop", "hot"):
        path = os.path.join(tree_dir, "paired_%s.json" % state)
        if os.path.exists(path):
            for r in json.load(open(path))["results"]:
                res[r["command"]] = statistics.median(r["times"])
    return res


def gbench(tree_dir):
    """benchmark name -> median real time in seconds."""
    path = os.path.join(tree_dir, "deps_bench.json")
    if not os.path.exists(path):
        return {}
    scale = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
    out = {}
    for b in json.load(open(path))["benchmarks"]:
        if b.get("aggregate_name", "median") != "median":
            continue
        out[b.get("run_name", b["name"])] = b["real_time"] * scale[b["time_unit"]]
    return out


def fmt(t):
    if t is None:
        return "-"
    if t >= 1:
        return "%.2f s" % t
    return "%.1f ms" % (t * 1e3) if t >= 1e-3 else "%.0f us" % (t * 1e6)


def ratio(a, b):
    return "%.3g" % (a / b) if a and b else "-"


def main():
    d = sys.argv[1]
    w = print
    w("# Quillon dependency benchmarks: %s\n" % os.path.basename(os.path.abspath(d)))
    mt = os.path.join(d, "machine.txt")
    if os.path.exists(mt):
        w("```\n" + open(mt).read().strip() + "\n```\n")
    for tree in ("small", "large"):
        td = os.path.join(d, tree)
        if not os.path.isdir(td):
            continue
        k, g, p = kit(td), gbench(td), paired(td)
        w("## %s tree\n" % tree)
        w("| ours | median | anchor | median | ours / anchor | goal |")
        w("|---|---:|---|---:|---:|---|")
        rows = [
            ("cold update, in process", g.get("BM_ColdUpdate"),
             "kit floor: map + find include lines", k.get("scan_lines_mmap"), "<= 2"),
            ("cold update, in process", g.get("BM_ColdUpdate"),
             "same floor in process (BM_FloorMapScan)", g.get("BM_FloorMapScan"), ""),
            ("warm update, nothing changed", g.get("BM_WarmUpdateNothingChanged"),
             "kit floor: stat every file", k.get("floor_stat"), "<= 3"),
            ("warm update, nothing changed", g.get("BM_WarmUpdateNothingChanged"),
             "same floor in process (BM_FloorStat)", g.get("BM_FloorStat"), ""),
            ("warm update, hot header touched", g.get("BM_WarmUpdateHotHeaderTouched"),
             "kit floor: stat every file", k.get("floor_stat"), ""),
            ("decision, one pass, nothing to do", g.get("BM_DecisionOnePassNothingToDo"),
             "kit floor: stat every file", k.get("floor_stat"), ""),
            ("decision, one pass, hot header", g.get("BM_DecisionOnePassHotHeaderTouched"),
             "kit floor: stat every file", k.get("floor_stat"), ""),
            ("IsNewer walk per root, nothing to do", g.get("BM_IsNewerWalksNothingToDo"),
             "kit floor: stat every file", k.get("floor_stat"), ""),
            ("IsNewer walk per root, hot header", g.get("BM_IsNewerWalksHotHeaderTouched"),
             "kit floor: stat every file", k.get("floor_stat"), ""),
            ("qpm why, nothing to do (kit)", k.get("ourtool_check_noop"),
             "ninja -n, nothing to do", k.get("ninja_dry_noop"), "< 1"),
            ("qpm why, hot header (kit)", k.get("ourtool_check_hot"),
             "ninja -n, hot header", k.get("ninja_dry_hot"), "< 1"),
            ("qpm why, 75th-pct header (kit)", k.get("ourtool_check_mid"),
             "ninja -n, 75th-pct header", k.get("ninja_dry_mid"), ""),
            ("qpm why, nothing to do (paired)", p.get("qpm_why_noop"),
             "ninja -n (paired)", p.get("ninja_dry_noop"), "< 1"),
            ("qpm why, hot header, first run (paired)", p.get("qpm_why_hot"),
             "ninja -n (paired)", p.get("ninja_dry_hot"), "< 1"),
            ("qpm deps --make, cache kept", k.get("ourtool_scan_warm"),
             "makedepend", k.get("makedepend"), ""),
            ("qpm deps --make, no cache", k.get("ourtool_scan_cold"),
             "makedepend", k.get("makedepend"), ""),
            ("qpm deps --make, no cache", k.get("ourtool_scan_cold"),
             "gcc -MM -MG, one driver", k.get("gcc_mm_batch"), ""),
        ]
        for ours, t, anchor, a, goal in rows:
            if t is None and a is None:
                continue
            w("| %s | %s | %s | %s | %s | %s |" % (ours, fmt(t), anchor, fmt(a), ratio(t, a), goal))
        st = os.path.join(td, "stats.json")
        if os.path.exists(st):
            s = json.load(open(st))
            o = s.get("ourtool_deps_existing")
            if o:
                w("\nqpm deps --make vs gcc -MM (dependencies on existing files): %d targets, "
                  "%d deps; %d only ours, %d only gcc's, %d targets without ours"
                  % (o["targets"], o["deps_total"], o["extra_vs_gcc"], o["missing_vs_gcc"],
                     o["targets_missing_vs_gcc"]))
        w("")


if __name__ == "__main__":
    main()
