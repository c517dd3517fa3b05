#!/usr/bin/env python3
"""Writes the picture seeds of the picture fuzz target into corpus/picture:
small SGI pictures in both byte orders, run-length encoded and verbatim,
with 1 and 2 bytes a value, 3 channels and 1.

    python3 fuzz/make_picture_seeds.py
"""
import os
import struct

OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus", "picture")


def packets(row):
    """The run-length packets of one row: literal runs end at three equal values."""
    out, i = [], 0
    while i < len(row):
        start = i
        while i < len(row) and not (i + 2 < len(row) and row[i] == row[i + 1] == row[i + 2]):
            i += 1
        while start < i:
            n = min(126, i - start)
            out += [0x80 | n] + row[start:start + n]
            start += n
        start = i
        while i < len(row) and row[i] == row[start]:
            i += 1
        while start < i:
            n = min(126, i - start)
            out += [n, row[start]]
            start += n
    return out + [0]


def picture(width, height, channels, value, rle, bpv, big):
    order = ">" if big else "<"
    unit = "B" if bpv == 1 else "H"
    dim = 3 if channels > 1 else 2
    rows = [[value(x, y, z) for x in range(width)] for z in range(channels) for y in range(height)]
    header = struct.pack(order + "HHHHHHIII80sI", 474, (256 if rle else 0) | bpv, dim, width, height, channels,
                         0, 255, 0, b"seed", 0)
    header += bytes(512 - len(header))
    if not rle:
        return header + b"".join(struct.pack(order + unit * width, *r) for r in rows)
    encoded = [struct.pack(order + unit * len(p), *p) for p in map(packets, rows)]
    starts, at = [], 512 + 8 * len(rows)
    for e in encoded:
        starts.append(at)
        at += len(e)
    tables = struct.pack(order + "I" * len(rows), *starts) + struct.pack(order + "i" * len(rows), *map(len, encoded))
    return header + tables + b"".join(encoded)


def main():
    os.makedirs(OUT, exist_ok=True)
    colour = lambda x, y, z: (x * 40 + y * 7 * z) % 256 if x % 5 else 200
    wide = lambda x, y, z: 9 if x < 130 else (x + y + z) % 256
    seeds = {
        "rle1_little.rgb": picture(6, 3, 3, colour, True, 1, False),
        "rle1_big.rgb": picture(6, 3, 3, colour, True, 1, True),
        "rle1_long_runs.rgb": picture(140, 2, 3, wide, True, 1, False),
        "verbatim1_big.rgb": picture(5, 2, 3, colour, False, 1, True),
        "rle2_little.rgb": picture(4, 2, 3, lambda x, y, z: x * 300 + z, True, 2, False),
        "verbatim2_big.rgb": picture(4, 2, 3, lambda x, y, z: x * 300 + y, False, 2, True),
        "grey_rle1.rgb": picture(5, 2, 1, colour, True, 1, False),
    }
    for name, data in seeds.items():
        with open(os.path.join(OUT, name), "wb") as f:
            f.write(data)


if __name__ == "__main__":
    main()
