#!/usr/bin/env python3
"""Draws the toolbars' bitmaps and the program's icon again: tools/draw_pictures.py [folder]

Each picture is a list of flat shapes, painted one over the other on a fine grid and then averaged down, which
smooths every edge. All files carry straight alpha, so that the pictures stand on any button face.
"""
import math
import pathlib
import struct
import sys

FINE = 8  # grid points a pixel, each way

INK = (38, 42, 52)
CASE = (74, 84, 104)
CASE_LIGHT = (120, 132, 154)
DISPLAY = (190, 220, 160)
KEY = (226, 230, 236)
PAPER = (255, 255, 255)
RULE = (140, 152, 172)
BLUE = (30, 98, 190)
BLUE_LIGHT = (168, 200, 240)
GREEN = (20, 140, 62)
RED = (196, 48, 40)
ORANGE = (226, 136, 28)
YELLOW = (255, 208, 48)
WOOD = (176, 112, 52)
DARK_SCREEN = (16, 36, 32)
TRACE = (90, 240, 120)


# --- shapes: each is a list of corner points in pixels ---


def box(left, top, right, bottom):
    return [(left, top), (right, top), (right, bottom), (left, bottom)]


def arc(x, y, rx, ry, start, end, steps=40):
    """Points on an ellipse; angles in degrees, clockwise from three o'clock."""
    turn = [math.radians(start + (end - start) * i / steps) for i in range(steps + 1)]
    return [(x + rx * math.cos(a), y + ry * math.sin(a)) for a in turn]


def disc(x, y, radius):
    return arc(x, y, radius, radius, 0, 360)


def rounded(left, top, right, bottom, r):
    return (arc(right - r, top + r, r, r, -90, 0, 8) + arc(right - r, bottom - r, r, r, 0, 90, 8)
            + arc(left + r, bottom - r, r, r, 90, 180, 8) + arc(left + r, top + r, r, r, 180, 270, 8))


def stroke(points, width):
    """The outlines of a line drawn through the points: one bar a stretch and a disc at each joint."""
    outlines = []
    for (x1, y1), (x2, y2) in zip(points, points[1:]):
        length = math.hypot(x2 - x1, y2 - y1) or 1
        nx, ny = -(y2 - y1) / length * width / 2, (x2 - x1) / length * width / 2
        outlines.append([(x1 + nx, y1 + ny), (x2 + nx, y2 + ny), (x2 - nx, y2 - ny), (x1 - nx, y1 - ny)])
    return outlines + [disc(x, y, width / 2) for x, y in points]


def turned(points, x, y, degrees):
    """The points turned clockwise about the origin, then moved to x, y."""
    c, s = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    return [(x + px * c - py * s, y + px * s + py * c) for px, py in points]


# --- painting ---


def new_canvas(width, height):
    return [[None] * (width * FINE) for _ in range(height * FINE)]


def paint(canvas, colour, *outlines):
    for outline in outlines:
        corners = [(x * FINE, y * FINE) for x, y in outline]
        top = max(0, math.floor(min(y for _, y in corners)))
        bottom = min(len(canvas), math.ceil(max(y for _, y in corners)))
        for row in range(top, bottom):
            middle = row + 0.5
            crossings = sorted(x1 + (middle - y1) * (x2 - x1) / (y2 - y1)
                               for (x1, y1), (x2, y2) in zip(corners, corners[1:] + corners[:1])
                               if (y1 <= middle) != (y2 <= middle))
            for start, end in zip(crossings[::2], crossings[1::2]):
                first = max(0, math.ceil(start - 0.5))
                last = min(len(canvas[row]), math.ceil(end - 0.5))
                canvas[row][first:last] = [colour] * (last - first)


def framed(canvas, frame, fill, outline, width=1.0):
    paint(canvas, frame, outline, *stroke(outline + outline[:1], width))
    paint(canvas, fill, outline)


def averaged(canvas):
    """Rows of (red, green, blue, alpha), one a pixel."""
    rows = []
    for top in range(0, len(canvas), FINE):
        row = []
        for left in range(0, len(canvas[0]), FINE):
            points = [p for line in canvas[top:top + FINE] for p in line[left:left + FINE] if p]
            count = max(1, len(points))
            colour = tuple(round(sum(p[i] for p in points) / count) for i in range(3))
            row.append(colour + (round(255 * len(points) / FINE ** 2),))
        rows.append(row)
    return rows


# --- things that several pictures show ---


def portable(canvas, left, top, width, height, text_lines):
    """The hand-held terminal: display above, keys below."""
    right, bottom = left + width, top + height
    paint(canvas, INK, rounded(left, top, right, bottom, width * 0.2))
    paint(canvas, CASE, rounded(left + 1, top + 1, right - 1, bottom - 1, width * 0.14))
    shown = box(left + 2, top + 2.5, right - 2, top + height * 0.42)
    paint(canvas, DISPLAY, shown)
    for line in range(text_lines):
        y = top + 4 + line * 2
        paint(canvas, INK, box(left + 3, y, right - 3 - line % 2 * 1.5, y + 1))
    for column in range(3):
        for row in range(3):
            x = left + 2 + (width - 4) * (column + 0.5) / 3
            y = top + height * 0.47 + height * 0.45 * (row + 0.5) / 3
            paint(canvas, YELLOW if column == row == 2 else KEY, box(x - 0.8, y - 0.8, x + 0.8, y + 0.8))


def sheet(canvas, left, top, right, bottom, fold, rules):
    framed(canvas, INK, PAPER, [(left, top), (right - fold, top), (right, top + fold), (right, bottom), (left, bottom)])
    paint(canvas, INK, *stroke([(right - fold, top), (right - fold, top + fold), (right, top + fold)], 0.9))
    for index in range(rules):
        y = top + fold + 1.2 + index * 2.6
        paint(canvas, BLUE if index % 2 == 0 else RULE, box(left + 1.8, y, right - 1.8, y + 1.1))


def pencil(canvas, x, y, length):
    """A pencil whose point is at x, y, leaning to the right."""
    def part(colour, *points):
        paint(canvas, colour, turned(list(points), x, y, 42))
    part(INK, (0, 0.9), (-2.9, -5), (-2.9, -length - 0.9), (2.9, -length - 0.9), (2.9, -5))
    part((244, 214, 170), (0, -0.4), (-1.9, -4.8), (1.9, -4.8))
    part(INK, (0, -0.2), (-0.9, -2.2), (0.9, -2.2))
    part(YELLOW, (-1.9, -4.6), (-1.9, -length + 2.8), (0, -length + 2.8), (0, -4.6))
    part(ORANGE, (0, -4.6), (0, -length + 2.8), (1.9, -length + 2.8), (1.9, -4.6))
    part(KEY, (-1.9, -length + 2.8), (-1.9, -length + 1.6), (1.9, -length + 1.6), (1.9, -length + 2.8))
    part(RED, (-1.9, -length + 1.6), (-1.9, -length), (1.9, -length), (1.9, -length + 1.6))


def arrow(canvas, colour, tail, head, y):
    """A level arrow with a white rim, so that it stands out from what it crosses."""
    way = 1 if head > tail else -1
    outline = [(tail, y - 2), (head - 5.5 * way, y - 2), (head - 5.5 * way, y - 5), (head, y),
               (head - 5.5 * way, y + 5), (head - 5.5 * way, y + 2), (tail, y + 2)]
    framed(canvas, PAPER, colour, outline, 1.8)


# --- the main toolbar ---


def programming(c):
    portable(c, 2, 2, 14, 26, text_lines=3)
    pencil(c, 13, 26, 20)


def lookup_editor(c):
    framed(c, INK, PAPER, box(2.5, 3.5, 22.5, 22.5))
    paint(c, BLUE, box(3, 4, 22, 8))
    for y in (8, 12.5, 17.5):
        paint(c, RULE, box(3, y, 22, y + 1))
    for x in (9, 15.5):
        paint(c, RULE, box(x, 8, x + 1, 22))
    paint(c, PAPER, box(9, 4, 10, 8), box(15.5, 4, 16.5, 8))
    paint(c, INK, *stroke([(21.5, 21.5), (26, 26.5)], 3.6))
    paint(c, WOOD, *stroke([(22.4, 22.6), (25.8, 26.3)], 1.8))
    paint(c, INK, disc(17.5, 17.5, 6.2))
    paint(c, KEY, disc(17.5, 17.5, 5.1))
    paint(c, BLUE_LIGHT, disc(17.5, 17.5, 4.3))
    paint(c, BLUE, box(14.6, 16, 20.4, 17.1), box(14.6, 18.4, 18.6, 19.5))


def data_editor(c):
    sheet(c, 3.5, 2.5, 20.5, 27.5, 5, 7)
    pencil(c, 13, 25, 19)


def librarian(c):
    for left, right, top, colour in ((2.5, 8.5, 5.5, RED), (8.5, 13.5, 3.5, GREEN), (13.5, 18.5, 7.5, BLUE)):
        framed(c, INK, colour, box(left, top, right, 26.5))
        paint(c, YELLOW, box(left + 1, top + 3, right - 1, top + 4.2), box(left + 1, 22, right - 1, 23.2))
    leaning = lambda *p: turned(list(p), 19.6, 26.6, -13)
    framed(c, INK, ORANGE, leaning((0, 0), (0, -19), (5, -19), (5, 0)))
    paint(c, PAPER, leaning((1, -16), (1, -14.6), (4, -14.6), (4, -16)), leaning((1, -5), (1, -3.6), (4, -3.6), (4, -5)))
    paint(c, INK, box(1, 27, 28, 28.2))


def send(c):
    sheet(c, 2.5, 3.5, 13.5, 19.5, 3.5, 4)
    portable(c, 17, 3, 10, 24, text_lines=2)
    arrow(c, GREEN, 5.5, 20.5, 20.5)


def receive(c):
    sheet(c, 2.5, 3.5, 13.5, 19.5, 3.5, 4)
    portable(c, 17, 3, 10, 24, text_lines=2)
    arrow(c, BLUE, 22, 7, 20.5)


def auto_receive(c):
    sheet(c, 2.5, 2.5, 13.5, 18.5, 3.5, 4)
    portable(c, 17, 2, 10, 24, text_lines=2)
    x, y, r = 14, 20.5, 5.2
    paint(c, PAPER, disc(x, y, 8))
    for start in (200, 20):
        paint(c, BLUE, *stroke(arc(x, y, r, r, start, start + 112, 20), 2.6))
        head_x, head_y = arc(x, y, r, r, start + 118, start + 118, 1)[0]
        paint(c, BLUE, turned([(4.6, 0), (-1.4, -4), (-1.4, 4)], head_x, head_y, start + 118 + 82))


def upgrade_flash(c):
    for index in range(5):
        at = 6.5 + index * 4
        paint(c, CASE_LIGHT, box(at - 1, 2, at + 1, 28), box(1.5, at - 0.5, 27.5, at + 1.5))
    framed(c, INK, CASE, rounded(5, 5.5, 24, 24.5, 1.5))
    paint(c, CASE_LIGHT, disc(8, 8.5, 1.2))
    bolt = [(16.5, 6.5), (9.5, 16.2), (14, 16.2), (12, 24), (20, 13), (15.4, 13), (19, 6.5)]
    framed(c, INK, YELLOW, bolt, 1.6)


def comm_monitor(c):
    framed(c, INK, KEY, rounded(2.5, 3.5, 26.5, 22.5, 2))
    framed(c, INK, DARK_SCREEN, rounded(5, 6, 24, 20, 1), 0.8)
    for y in (9.5, 13, 16.5):
        paint(c, (36, 78, 66), box(5.5, y, 23.5, y + 0.6))
    bits = [(5.6, 16), (8, 16), (8, 10), (11, 10), (11, 16), (13, 16), (13, 10), (18, 10), (18, 16), (21, 16),
            (21, 10), (23.4, 10)]
    paint(c, TRACE, *stroke(bits, 1.4))
    paint(c, INK, box(11.5, 23, 17.5, 26), rounded(7.5, 25.5, 21.5, 28, 1))
    paint(c, CASE_LIGHT, box(8.5, 26.3, 20.5, 27.2))


def leave(c):
    framed(c, INK, CASE, box(3.5, 2.5, 17.5, 27.5))
    paint(c, DARK_SCREEN, box(5.5, 4.5, 15.5, 27))
    framed(c, INK, WOOD, [(4.5, 3.5), (12, 6.5), (12, 28.4), (4.5, 26.5)])
    paint(c, (206, 146, 84), [(6, 7.4), (10.4, 9), (10.4, 15.2), (6, 14)], [(6, 17), (10.4, 18), (10.4, 25), (6, 23.8)])
    paint(c, YELLOW, disc(10.6, 16.6, 1))
    arrow(c, RED, 14, 27.5, 15.5)


# --- the programming window's toolbar ---


def new_file(c):
    sheet(c, 4.5, 1.5, 15.5, 16.5, 4, 0)
    paint(c, INK, disc(15.5, 12.5, 4.6))
    paint(c, GREEN, disc(15.5, 12.5, 3.9))
    paint(c, PAPER, box(13, 11.8, 18, 13.2), box(14.8, 10, 16.2, 15))


def open_file(c):
    framed(c, INK, ORANGE, [(2.5, 4.5), (3.5, 3.5), (7.5, 3.5), (9, 5.5), (15.5, 5.5), (15.5, 15.5), (2.5, 15.5)])
    sheet(c, 6.5, 1.5, 13.5, 12.5, 2.5, 2)
    framed(c, INK, YELLOW, [(5.5, 8.5), (19, 8.5), (15.5, 15.5), (2.5, 15.5)])


def save_file(c):
    framed(c, INK, BLUE, [(3.5, 1.5), (15.5, 1.5), (17.5, 3.5), (17.5, 16.5), (3.5, 16.5)])
    paint(c, PAPER, box(6, 8.5, 15, 16))
    paint(c, RULE, box(7.5, 10.3, 13.5, 11.3), box(7.5, 13, 13.5, 14))
    paint(c, KEY, box(7, 2, 14, 6.5))
    paint(c, INK, box(11, 2.7, 12.8, 5.8))


def leave_file(c):
    framed(c, INK, CASE, box(3.5, 1.5, 12.5, 16.5))
    framed(c, INK, WOOD, [(3.5, 1.5), (9, 3.5), (9, 17.2), (3.5, 16.5)])
    paint(c, YELLOW, disc(7.6, 10.2, 0.9))
    framed(c, PAPER, RED, [(10.5, 7.7), (14.5, 7.7), (14.5, 5), (19.3, 9), (14.5, 13), (14.5, 10.3), (10.5, 10.3)], 1.2)


# File, width and height of a picture, and the pictures.
TOOLBARS = (
    ("toolbar.bmp", 29, 30, (programming, lookup_editor, data_editor, librarian, send, receive, auto_receive,
                             upgrade_flash, comm_monitor, leave)),
    ("file_toolbar.bmp", 21, 18, (new_file, open_file, save_file, leave_file)),
)


def icon(size):
    """The portable with a bar code in its display. Straight edges fall between pixels at every size."""
    c = new_canvas(size, size)

    def put(colour, outline):
        paint(c, colour, [(x * size / 48, y * size / 48) for x, y in outline])

    def put_box(colour, left, top, right, bottom):
        paint(c, colour, box(*(round(edge * size / 48) for edge in (left, top, right, bottom))))

    put(INK, rounded(9, 0, 39, 48, 6))
    put(CASE, rounded(11, 2.5, 37, 45.5, 4))
    put_box(INK, 13, 6, 35, 24)
    put_box(DISPLAY, 15, 8, 33, 22)
    small = size < 32  # leaves out what would blur
    bars = ((18, 3), (24, 3), (30, 3)) if small else ((18, 1.5), (21, 3), (25.5, 1.5), (28.5, 1.5))
    for left, width in bars:
        put_box(INK, left, 11, left + width, 19)
    keys, step = (2, 9) if small else (3, 6)  # the keys, one pixel apart
    for column in range(keys):
        for row in range(keys):
            colour = YELLOW if column == row == keys - 1 else KEY
            left, top = round((15 + column * step) * size / 48), round((27 + row * step) * size / 48)
            side = step * size // 48 - 1
            paint(c, colour, box(left, top, left + side, top + side))
    return averaged(c)


# --- files ---


def pixel_bytes(rows):
    """The bottom row first, blue before green before red."""
    return b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)


def bitmap_header(width, height, bytes_of_pixels):
    return struct.pack("<IiiHHIIiiII", 40, width, height, 1, 32, 0, bytes_of_pixels, 0, 0, 0, 0)


def write_bitmap(path, rows):
    pixels = pixel_bytes(rows)
    header = bitmap_header(len(rows[0]), len(rows), len(pixels))
    path.write_bytes(struct.pack("<2sIHHI", b"BM", 14 + len(header) + len(pixels), 0, 0, 14 + len(header))
                     + header + pixels)


def write_icon(path, pictures):
    directory = struct.pack("<HHH", 0, 1, len(pictures))
    images = b""
    for rows in pictures:
        size = len(rows)
        mask_row = (size + 31) // 32 * 4
        mask = b"".join(
            sum((row[x][3] < 128) << (mask_row * 8 - 1 - x) for x in range(size)).to_bytes(mask_row, "big")
            for row in reversed(rows))
        pixels = pixel_bytes(rows) + mask
        image = bitmap_header(size, size * 2, len(pixels)) + pixels
        offset = 6 + 16 * len(pictures) + len(images)
        directory += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(image), offset)
        images += image
    path.write_bytes(directory + images)


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / "resources")
    for name, width, height, buttons in TOOLBARS:
        toolbar = [[] for _ in range(height)]
        for draw in buttons:
            canvas = new_canvas(width, height)
            draw(canvas)
            for whole, part in zip(toolbar, averaged(canvas)):
                whole += part
        write_bitmap(folder / name, toolbar)
    write_icon(folder / "TolvanP.ico", [icon(size) for size in (16, 32, 48)])


if __name__ == "__main__":
    main()
