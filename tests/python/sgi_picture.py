"""sgi_picture.py - reads a run-length-encoded SGI picture as the program
writes it, on its own (not through the renderer's image library), so that
pixels in memory can be checked against the file."""
import struct

import numpy as np


def read_rgb(data: bytes) -> np.ndarray:
    """The picture's (height, width, 3) uint8 pixels, row 0 the top."""
    magic, kind, _, width, height, channels = struct.unpack_from("<6H", data, 0)
    assert magic == 474 and kind == 257 and channels == 3, (magic, kind, channels)
    entries = height * channels
    starts = struct.unpack_from("<%dI" % entries, data, 512)
    pixels = np.zeros((height, width, 3), dtype=np.uint8)
    for z in range(channels):
        for y in range(height):
            at, row = starts[y + z * height], []
            while data[at] & 0x7F:
                count = data[at] & 0x7F
                if data[at] & 0x80:
                    row += data[at + 1:at + 1 + count]
                    at += 1 + count
                else:
                    row += [data[at + 1]] * count
                    at += 2
            pixels[height - 1 - y, :, z] = row
    return pixels
