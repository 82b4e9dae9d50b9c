#!/usr/bin/env python3
"""Writes the seed inputs of fuzz_registry into corpus/registry/ beside this
script. The bytes are spelled out here rather than produced by the store's own
writer, so the seeds also reach shapes the writer never emits."""
import os
import struct

from store_bytes import HEADER, KEY, INT, INT64, STRING, LIST, BUFFER, WORDS, text, key, value


def every_type():
    return (HEADER + key(b"$", 2) + key(b"Target[0]", 6)
            + value(BUFFER, b"Blob", struct.pack("<I", 3) + b"\x00\x01\xff")
            + value(INT, b"Count", struct.pack("<i", -2))
            + value(LIST, b"List", struct.pack("<I", 2) + text(b"a") + text(b""))
            + value(STRING, b"Name", text(b"main"))
            + value(INT64, b"Time", struct.pack("<II", 1, 2))
            + value(WORDS, b"Words", struct.pack("<III", 2, 7, 8))
            + value(STRING, b"TargetName", text(b"Debug")))


SEEDS = {
    "empty_root": HEADER + key(b"$", 0),
    "every_type": every_type(),
    "version_1_0": b"ZYVEKSLO\x01\x00" + key(b"$", 1) + value(INT, b"x", b"\x05\x00\x00\x00"),
    "nested": HEADER + b"".join(key(b"k", 1) for _ in range(8)) + value(STRING, b"v", text(b"deep")),
    "unordered_duplicates": HEADER + key(b"$", 4)
    + value(STRING, b"b", text(b"1")) + value(STRING, b"Name", text(b"2"))
    + key(b"NAME", 1) + value(INT, b"x", b"\x01\x00\x00\x00")
    + value(STRING, b"B", text(b"3")),
    "huge_count": HEADER + key(b"$", 1)
    + value(LIST, b"L", b"\xff\xff\xff\xff" + text(b"ab") + text(b"cd") + b"\x05\x00"),
}


def main():
    folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus", "registry")
    os.makedirs(folder, exist_ok=True)
    for name, data in SEEDS.items():
        with open(os.path.join(folder, name), "wb") as f:
            f.write(data)


if __name__ == "__main__":
    main()
