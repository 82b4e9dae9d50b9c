#!/usr/bin/env python3
"""Writes the seed inputs of fuzz_dependency_cache into corpus/dependency_cache/
beside this script: NAME.qpj.deps files spelled out byte by byte in the store's
format (see src/deps/dependency_cache_file.h for the layout)."""
import os
import struct

from store_bytes import HEADER, KEY, INT, STRING, LIST, WORDS, text, key, value


def words(items):
    return struct.pack("<I", len(items)) + b"".join(struct.pack("<I", w) for w in items)


def names(items):
    return struct.pack("<I", len(items)) + b"".join(text(n) for n in items)


# Children in the store's order: names compare with letters folded.
def node_set(name, nodes, times, marked, deps):
    return (key(name, 4) + value(WORDS, b"Deps", words(deps))
            + value(WORDS, b"Marked", words(marked)) + value(LIST, b"Names", names(nodes))
            + value(WORDS, b"Times", words(times)))


def cache(nodes, roots):
    return (HEADER + key(b"$", 1) + key(b"DependencyCache", 5) + nodes
            + value(STRING, b"Project", text(b"/p/p.qpj")) + roots
            + value(STRING, b"Settings", text(b"/p/inc|0;vRA\n\n\n\nc=1;"))
            + value(INT, b"Version", struct.pack("<i", 1)))


SEEDS = {
    # a.h and b.h include each other; a.c includes a.h; b.c carries the marker.
    "cycle_and_marker": cache(
        node_set(b"Nodes", [b"/p/inc/a.h", b"/p/inc/b.h"], [5, 0, 6, 0], [], [1, 1, 1, 0]),
        node_set(b"Roots", [b"/p/a.c", b"/p/b.c"], [7, 0, 8, 0], [1], [1, 0, 0])),
    "empty_graph": cache(node_set(b"Nodes", [], [], [], []), node_set(b"Roots", [], [], [], [])),
}


def main():
    folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus", "dependency_cache")
    os.makedirs(folder, exist_ok=True)
    for name, data in SEEDS.items():
        with open(os.path.join(folder, name), "wb") as f:
            f.write(data)


if __name__ == "__main__":
    main()
