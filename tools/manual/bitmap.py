"""Reads pictures of screens: PNG files of 8 bits or with a palette, not interlaced."""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
GREY, COLOUR, PALETTE, COLOUR_AND_ALPHA = 0, 2, 3, 6
SAMPLES = {GREY: 1, COLOUR: 3, PALETTE: 1, COLOUR_AND_ALPHA: 4}  # of a pixel


class PictureError(Exception):
    pass


def read_chunks(content):
    """The chunks by their names; those of the same name follow each other as one."""
    chunks, position = {}, len(SIGNATURE)
    while position < len(content):
        size, name = struct.unpack_from(">I4s", content, position)
        chunks[name] = chunks.get(name, b"") + content[position + 8:position + 8 + size]
        position += size + 12
    return chunks


def predict(kind, left, above, corner):
    if kind == 1:
        return left
    if kind == 2:
        return above
    if kind == 3:
        return (left + above) // 2
    near = left + above - corner
    return min((left, above, corner), key=lambda value: abs(near - value))


def unfilter(data, row_size, step):
    """The rows of bytes: each byte was stored as its difference from those `step` bytes before it and above it."""
    rows, above = [], bytes(row_size)
    for start in range(0, len(data), row_size + 1):
        kind, row = data[start], bytearray(data[start + 1:start + 1 + row_size])
        for i in range(row_size) if kind else ():
            left, corner = (row[i - step], above[i - step]) if i >= step else (0, 0)
            row[i] = (row[i] + predict(kind, left, above[i], corner)) & 0xFF
        rows.append(row)
        above = row
    return rows


def colours_of(row, width, depth, kind, palette):
    if kind == PALETTE:
        bits = int.from_bytes(row, "big")
        ends = range(len(row) * 8 - depth, -1, -depth)
        return [palette[bits >> end & (1 << depth) - 1] for end in ends[:width]]
    if kind == GREY:
        return list(zip(row, row, row))
    samples = SAMPLES[kind]
    return list(zip(row[0::samples], row[1::samples], row[2::samples]))


def read_png(path):
    """The picture as rows of (red, green, blue)."""
    content = path.read_bytes()
    chunks = read_chunks(content) if content.startswith(SIGNATURE) else {}
    if not {b"IHDR", b"IDAT"} <= chunks.keys():
        raise PictureError(f"{path}: no PNG file")
    width, _, depth, kind, _, _, interlaced = struct.unpack(">IIBBBBB", chunks[b"IHDR"])
    if kind not in SAMPLES or interlaced or depth > 8 or (depth < 8 and kind != PALETTE):
        raise PictureError(f"{path}: neither 8 bits nor a palette, or interlaced")
    bits = SAMPLES[kind] * depth
    rows = unfilter(zlib.decompress(chunks[b"IDAT"]), (width * bits + 7) // 8, (bits + 7) // 8)
    plte = chunks.get(b"PLTE", b"")
    palette = list(zip(plte[0::3], plte[1::3], plte[2::3]))
    return [colours_of(row, width, depth, kind, palette) for row in rows]


def with_palette(rows):
    """At most 256 colours, and the rows as bytes that name them. Where there are more, the finest differences go."""
    distinct = set().union(*rows)
    for mask in (0xFF, 0xFE, 0xFC, 0xF8, 0xF0, 0xE0, 0xC0):
        coarse = {colour: tuple(value & mask for value in colour) for colour in distinct}
        palette = sorted(set(coarse.values()))
        if len(palette) <= 256:
            break
    numbers = {colour: palette.index(coarse[colour]) for colour in distinct}
    return palette, [bytes(numbers[colour] for colour in row) for row in rows]
