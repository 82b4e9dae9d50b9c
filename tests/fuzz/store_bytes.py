"""The store's file format spelled out byte by byte, for the seed writers of
the fuzz targets that read store files."""
import struct

HEADER = b"ZYVEKSLO\x00\x01"
KEY, INT, INT64, STRING, LIST, BUFFER, WORDS = 1, 12, 13, 14, 15, 16, 18


def text(s):
    return struct.pack("<H", len(s)) + s


def key(name, count):
    return bytes([KEY]) + struct.pack("<H", count) + text(name)


def value(kind, name, payload):
    return bytes([kind]) + text(name) + payload
