"""Picture files made of rows of colours."""
import struct


def bmp(rows, bits):
    """A bitmap of rows from the top; below 16 bits with a palette."""
    colours = sorted({c for row in rows for c in row}) if bits < 16 else []
    palette = b"".join(bytes((b, g, r, 0)) for r, g, b in colours).ljust(4 * 2 ** bits, b"\0") if colours else b""
    pixels = b""
    for row in reversed(rows):
        if bits < 8:
            text = "".join(format(colours.index(c), f"0{bits}b") for c in row)
            line = bytes(int(text[i:i + 8].ljust(8, "0"), 2) for i in range(0, len(text), 8))
        elif bits == 8:
            line = bytes(colours.index(c) for c in row)
        elif bits == 16:
            line = b"".join(struct.pack("<H", r >> 3 << 10 | g >> 3 << 5 | b >> 3) for r, g, b in row)
        else:
            line = b"".join(bytes((b, g, r, 0)[:bits // 8]) for r, g, b in row)
        pixels += line.ljust((len(line) + 3) // 4 * 4, b"\0")
    start = 54 + len(palette)
    return (b"BM" + struct.pack("<IHHI", start + len(pixels), 0, 0, start) +
            struct.pack("<IiiHHIIiiII", 40, len(rows[0]), len(rows), 1, bits, 0, 0, 2835, 2835, 0, 0) + palette + pixels)


def tiff(rows, bands, geo=None, epsg=None):
    """An uncompressed TIFF of 8-bit samples.

    geo: west, north, width and height of a pixel; epsg: 4326 for degrees, or a plane system."""
    data = b"".join(bytes(c[:bands]) for row in rows for c in row)
    entries = [(256, 3, 1, len(rows[0])), (257, 3, 1, len(rows)), (258, 3, 1, 8), (259, 3, 1, 1),
               (262, 3, 1, 2 if bands == 3 else 1), (273, 4, 1, None), (277, 3, 1, bands), (278, 3, 1, len(rows)),
               (279, 4, 1, len(data))]
    extra = []
    if geo:
        west, north, across, down = geo
        keys = [(1024, 2 if epsg == 4326 else 1), (1025, 1)]
        if epsg:
            keys.append((2048 if epsg == 4326 else 3072, epsg))
        directory = [1, 1, 0, len(keys)] + [v for key, value in keys for v in (key, 0, 1, value)]
        extra = [(33550, 12, 3, struct.pack("<3d", across, down, 0)),
                 (33922, 12, 6, struct.pack("<6d", 0, 0, 0, west, north, 0)),
                 (34735, 3, len(directory), struct.pack(f"<{len(directory)}H", *directory))]
    if bands == 3:
        entries[2] = (258, 3, 3, None)
        extra.append((258, 3, 3, struct.pack("<3H", 8, 8, 8)))
    offset = 8 + 2 + 12 * (len(entries) + len([e for e in extra if e[0] != 258])) + 4
    blobs, table = b"", {e[0]: e for e in entries}
    for tag, kind, count, blob in extra:
        table[tag] = (tag, kind, count, offset + len(blobs))
        blobs += blob
    table[273] = (273, 4, 1, offset + len(blobs))
    directory = b"".join(struct.pack("<HHII", *table[tag]) for tag in sorted(table))
    return struct.pack("<2sHIH", b"II", 42, 8, len(table)) + directory + struct.pack("<I", 0) + blobs + data
