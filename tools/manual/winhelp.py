"""Writes the manual as a help file of the system's help viewer (.hlp), and its table of contents (.cnt).

All numbers are little-endian. A help file is a small file system:

    header       magic, position of the directory, -1, size of the whole file
    file         space with this header, size, flags; then its bytes
    directory    such a file itself: a B+ tree that leads from names to positions

and these are the files in it, uncompressed:

    |SYSTEM      version, then records: the title, the topic that is shown first
    |FONT        names of type faces, then descriptors: a text names its font by its number here
    |TOPIC       the text: a chain of records in blocks of 4 KiB
    |CONTEXT     a B+ tree from the hash of a topic's name, which jumps carry, to the topic
    |TTLBTREE    a B+ tree from a topic to its title
    |bm0 ...     pictures

Each page is a topic: a record of kind 2 with its title and the neighbours, then a record of kind 0x20 for each
paragraph. A record holds formatting and text apart from each other: the text is cut into pieces that end in a NUL,
and behind each piece the next command of the formatting is carried out: change the font, start or end a jump, show a
picture, tabulate, end the paragraph.

There are two ways to tell a place in |TOPIC. A position (TOPICPOS) is the number of a block and an offset of 14
bits in it, the block's header included. An offset (TOPICOFFSET) is the number of a block and, in 15 bits, how many
bytes of text come before in that block; jumps use it. Numbers in the formatting are packed: the lowest bit tells
a long form from a short one, and signed ones have half their range added.
"""

import re
import struct

from manual.bitmap import read_png, with_palette
from manual.source import Heading, List, Paragraph, Picture, Run

ENCODING = "cp1252"
NOWHERE = 0xFFFFFFFF

FILE_MAGIC, SYSTEM_MAGIC, TREE_MAGIC, PICTURE_MAGIC = 0x00035F3F, 0x036C, 0x293B, 0x706C
VERSION = 21  # 3.1: read by all viewers

BLOCK_SIZE, BLOCK_HEADER_SIZE, RECORD_HEADER_SIZE = 4096, 12, 21
HEADER_RECORD, TEXT_RECORD = 2, 0x20

# Commands of the formatting.
FONT, TAB, END_PARAGRAPH, PICTURE = b"\x80", b"\x83", b"\x82", b"\x86"
JUMP, END_JUMP, END_RECORD = b"\xe3", b"\x89", b"\xff"

# Distances are in half points.
SPACE_BELOW, INDENT = 12, 40

FACES = ["Arial", "Courier New"]
SWISS, MODERN, BOLD = 3, 1, 1
# (attributes, half points, family, face)
FONTS = {"": (0, 20, SWISS, 0), "bold": (BOLD, 20, SWISS, 0), "literal": (0, 20, MODERN, 1),
         "caption": (0, 17, SWISS, 0), "heading": (BOLD, 24, SWISS, 0), "title": (BOLD, 32, SWISS, 0)}
FONT_NUMBERS = {style: number for number, style in enumerate(FONTS)}


# --- numbers ---

def packed_word(value):
    return bytes([value << 1]) if value < 0x80 else struct.pack("<H", value << 1 | 1)


def packed_size(value):
    return struct.pack("<H", value << 1) if value < 0x8000 else struct.pack("<I", value << 1 | 1)


def packed_short(value):
    if -0x40 <= value < 0x40:
        return bytes([(value + 0x40) << 1])
    return struct.pack("<H", (value + 0x4000) << 1 | 1)


def packed_long(value):
    if -0x4000 <= value < 0x4000:
        return struct.pack("<H", (value + 0x4000) << 1)
    return struct.pack("<I", (value + 0x40000000) << 1 | 1)


def context_hash(name):
    """Of letters, digits, '.' and '_', as a signed number."""
    value = 0
    for character in name:
        if character == "0":
            digit = 10
        elif character.isdigit():
            digit = int(character)
        elif character in "._":
            digit = {".": 12, "_": 13}[character]
        else:
            digit = ord(character.upper()) - ord("A") + 17
        value = (value * 43 + digit) & 0xFFFFFFFF
    return value - (1 << 32) if value >= 1 << 31 else value


def context_name(page_name):
    return page_name.replace("-", "_")


# --- the text of a record ---

class Text:
    """The commands and the text of a paragraph."""

    def __init__(self):
        self.commands = b""
        self.text = b""

    def command(self, code, argument=b""):
        self.text += b"\0"
        self.commands += code + argument

    def font(self, style):
        self.command(FONT, struct.pack("<H", FONT_NUMBERS[style]))

    def run(self, run, plain):
        if run.style == "link":
            self.font(plain)
            self.command(JUMP, struct.pack("<i", context_hash(context_name(run.target))))
        else:
            self.font(run.style or plain)
        self.text += run.text.encode(ENCODING)
        if run.style == "link":
            self.command(END_JUMP)


def paragraph_format(space_above=0, space_below=0, indent=0, outdent=0):
    """What stands before the commands: bits that tell which distances follow. An outdent of the first line comes
    with a tab stop at the indent."""
    bits, distances = 0, b""
    for bit, value in ((0x02, space_above), (0x04, space_below), (0x10, indent), (0x40, -outdent)):
        if value:
            bits |= bit
            distances += packed_short(value)
    if outdent:
        bits |= 0x200
        distances += packed_short(1) + packed_word(indent)
    return b"\0\x80\0\0" + struct.pack("<H", bits) + distances


class Record:
    """A record of |TOPIC: `formatting` may depend on where all records lie and is then set when that is known."""

    def __init__(self, kind, formatting, text):
        self.kind = kind
        self.formatting = formatting
        self.text = text
        self.block = self.position = 0

    def size(self):
        return RECORD_HEADER_SIZE + len(self.formatting) + len(self.text)

    def bytes(self, before, behind):
        return struct.pack("<IIIIIB", self.size(), len(self.text), before, behind,
                           RECORD_HEADER_SIZE + len(self.formatting), self.kind) + self.formatting + self.text


def text_record(text, **distances):
    text.command(END_PARAGRAPH)
    formatting = packed_long(0) + packed_word(len(text.text)) + paragraph_format(**distances)
    return Record(TEXT_RECORD, formatting + text.commands + END_RECORD, text.text)


def paragraph(runs, plain="", label=None, **distances):
    text = Text()
    if label:
        text.run(Run(label), plain)
        text.command(TAB)
    for run in runs:
        text.run(run, plain)
    return text_record(text, **distances)


def list_records(block):
    labels = [f"{number + 1}." if block.numbered else "\N{BULLET}" for number in range(len(block.items))]
    spaces = [SPACE_BELOW // 2] * (len(labels) - 1) + [SPACE_BELOW]
    return [paragraph(runs, label=label, space_below=space, indent=INDENT, outdent=INDENT)
            for runs, label, space in zip(block.items, labels, spaces)]


def table_records(block):
    """The second cell below the first one, without the captions: viewers do not agree on tables."""
    records = []
    for first, second in block.rows[1:]:
        records += [paragraph(first, "bold"), paragraph(second, indent=INDENT, space_below=SPACE_BELOW)]
    return records


def picture_records(block, pictures):
    """The picture and its caption; `pictures` collects the files."""
    if not block.path.exists():
        return []
    text = Text()
    kind, number = 3, struct.pack("<HH", 0, len(pictures))
    text.command(PICTURE, struct.pack("<B", kind) + packed_long(len(number)) + number)
    pictures.append(block.path)
    return [text_record(text), paragraph([Run(block.caption)], "caption", space_below=SPACE_BELOW)]


def block_records(block, pictures):
    if isinstance(block, Heading):
        return [paragraph(block.runs, "heading", space_above=SPACE_BELOW, space_below=SPACE_BELOW // 2)]
    if isinstance(block, Paragraph):
        return [paragraph(block.runs, space_below=SPACE_BELOW)]
    if isinstance(block, List):
        return list_records(block)
    if isinstance(block, Picture):
        return picture_records(block, pictures)
    return table_records(block)


class Topic:
    """The records of a page; the first one is its header."""

    def __init__(self, page, pictures):
        self.page = page
        header = Record(HEADER_RECORD, bytes(28), page.title.encode(ENCODING) + b"\0")
        self.records = [header, paragraph([Run(page.title)], "title", space_below=SPACE_BELOW)]
        for block in page.blocks:
            self.records += block_records(block, pictures)
        self.offset = 0  # TOPICOFFSET


# --- |TOPIC ---

def place_records(records):
    """Gives each record its place: none lies across the end of a block."""
    block, position = 0, BLOCK_HEADER_SIZE
    for record in records:
        if record.size() > BLOCK_SIZE - BLOCK_HEADER_SIZE:
            raise ValueError(f"too long for a paragraph: {record.text[:60]!r}")
        if position + record.size() > BLOCK_SIZE:
            block, position = block + 1, BLOCK_HEADER_SIZE
        record.block, record.position = block, position
        position += record.size()


def find_offsets(topics):
    text_before = {}  # in each block
    for topic in topics:
        header, *texts = topic.records
        topic.offset = header.block << 15 | text_before.get(header.block, 0)
        for record in texts:
            text_before[record.block] = text_before.get(record.block, 0) + len(record.text)


def place_of(records, index):
    """TOPICPOS of a record; NOWHERE before the first and behind the last."""
    return records[index].block << 14 | records[index].position if 0 <= index < len(records) else NOWHERE


def fill_headers(topics):
    """Tells each topic its neighbours, once all places are known."""
    headers = [topic.records[0] for topic in topics]
    for number, topic in enumerate(topics):
        before = topics[number - 1].offset if number else NOWHERE
        behind = topics[number + 1].offset if number + 1 < len(topics) else NOWHERE
        headers[number].formatting = struct.pack(
            "<IIIIIII", sum(record.size() for record in topic.records), before, behind, number, NOWHERE,
            place_of(topic.records, 1), place_of(headers, number + 1))


def topic_file(topics):
    records = [record for topic in topics for record in topic.records]
    place_records(records)
    find_offsets(topics)
    fill_headers(topics)
    blocks = [b""] * (records[-1].block + 1)
    last_header = NOWHERE
    for index, record in enumerate(records):
        if record.kind == HEADER_RECORD:
            last_header = place_of(records, index)
        if record.position == BLOCK_HEADER_SIZE:
            blocks[record.block] = struct.pack("<III", place_of(records, index - 1), place_of(records, index), 0)
        blocks[record.block] += record.bytes(place_of(records, index - 1), place_of(records, index + 1))
        blocks[record.block] = blocks[record.block][:8] + struct.pack("<I", last_header) + blocks[record.block][12:]
    return b"".join(block.ljust(BLOCK_SIZE, b"\0") for block in blocks[:-1]) + blocks[-1]


# --- the other files ---

def tree(structure, entries, page_size, flags=2):
    """A B+ tree of (key, entry) in order: pages of entries, and a root above them when there are several."""
    leaves, room = [[]], 0
    for key, entry in entries:
        if room < len(entry):
            leaves.append([])
            room = page_size - 8
        leaves[-1].append((key, entry))
        room -= len(entry)
    leaves = leaves[1:]
    pages = []
    for number, leaf in enumerate(leaves):
        body = b"".join(entry for _, entry in leaf)
        behind = number + 1 if number + 1 < len(leaves) else -1
        pages.append(struct.pack("<HHhh", page_size - 8 - len(body), len(leaf), number - 1, behind) + body)
    if len(leaves) > 1:
        body = b"".join(leaf[0][0] + struct.pack("<H", number) for number, leaf in enumerate(leaves) if number)
        pages.append(struct.pack("<HHh", page_size - 6 - len(body), len(leaves) - 1, 0) + body)
    levels = 2 if len(leaves) > 1 else 1
    header = struct.pack("<HHH16sHHHhHHI", TREE_MAGIC, flags, page_size, structure, 0, 0, len(pages) - 1, -1,
                         len(pages), levels, len(entries))
    return header + b"".join(page.ljust(page_size, b"\0") for page in pages)


def font_file():
    face_size = 32
    faces = b"".join(name.encode(ENCODING).ljust(face_size, b"\0") for name in FACES)
    descriptors = b"".join(struct.pack("<BBBH", *font) + bytes(6) for font in FONTS.values())  # black on any colour
    return struct.pack("<HHHH", len(FACES), len(FONTS), 8, 8 + len(faces)) + faces + descriptors


def system_file(title, first_offset):
    def record(kind, content):
        return struct.pack("<HH", kind, len(content)) + content
    # The date is a constant, so that the same sources make the same file.
    return (struct.pack("<HHHIH", SYSTEM_MAGIC, VERSION, 1, 0x40000000, 0) +
            record(1, title.encode(ENCODING) + b"\0") + record(3, struct.pack("<I", first_offset)))


def context_file(topics):
    entries = []
    for value, offset in sorted((context_hash(context_name(topic.page.name)), topic.offset) for topic in topics):
        key = struct.pack("<i", value)
        entries.append((key, key + struct.pack("<I", offset)))
    return tree(b"L4", entries, 2048)


def title_file(topics):
    entries = []
    for topic in topics:
        key = struct.pack("<I", topic.offset)
        entries.append((key, key + topic.page.title.encode(ENCODING) + b"\0"))
    return tree(b"Lz", entries, 2048)


def run_lengths(data):
    """A count and the byte that is repeated, or a count with its highest bit set and as many bytes."""
    packed = bytearray()
    for match in re.finditer(rb"(.)\1{2,126}|(?:(.)(?!\2\2)){1,127}", data, re.DOTALL):
        size = match.end() - match.start()
        packed += bytes([size]) + match[1] if match[1] else bytes([0x80 | size]) + match[0]
    return bytes(packed)


def picture_file(path):
    """One bitmap of 256 colours, from the lowest row to the highest, each filled up to whole longs."""
    palette, rows = with_palette(read_png(path))
    width, dots_per_inch, planes, bits = len(rows[0]), 96, 1, 8
    data = run_lengths(b"".join(row + bytes(-width % 4) for row in reversed(rows)))
    bitmap_kind, packed_by_run_lengths = 6, 1
    header = struct.pack("<BB", bitmap_kind, packed_by_run_lengths) + packed_size(dots_per_inch) * 2
    header += packed_word(planes) + packed_word(bits) + packed_size(width) + packed_size(len(rows))
    header += packed_size(len(palette)) + packed_size(0) + packed_size(len(data)) + packed_size(0)
    colours = b"".join(struct.pack("<BBBB", blue, green, red, 0) for red, green, blue in palette)
    positions = struct.pack("<II", len(header) + 8 + len(colours), 0)
    return struct.pack("<HHI", PICTURE_MAGIC, 1, 8) + header + positions + colours + data


def whole_file(files):
    def with_header(content, flags):
        return struct.pack("<IIB", len(content) + 9, len(content), flags) + content
    body, entries = b"", []
    for name in sorted(files):
        key = name.encode(ENCODING) + b"\0"
        entries.append((key, key + struct.pack("<I", 16 + len(body))))
        body += with_header(files[name], 0)
    directory = with_header(tree(b"z4", entries, 1024, flags=0x402), 4)
    return struct.pack("<IIiI", FILE_MAGIC, 16 + len(body), -1, 16 + len(body) + len(directory)) + body + directory


def write_help_file(pages, path):
    pictures = []
    topics = [Topic(page, pictures) for page in pages]
    topic = topic_file(topics)
    files = {"|SYSTEM": system_file(pages[0].title, topics[0].offset), "|FONT": font_file(), "|TOPIC": topic,
             "|CONTEXT": context_file(topics), "|TTLBTREE": title_file(topics)}
    files.update((f"|bm{number}", picture_file(picture)) for number, picture in enumerate(pictures))
    path.write_bytes(whole_file(files))


def write_contents(pages, path):
    """The contents that older Windows shows beside the index; Wine starts at the contents page."""
    lines = [f":Base {path.stem}.hlp", f":Title {pages[0].title}"]
    lines += [f"1 {page.title}={context_name(page.name)}" for page in pages[1:]]
    path.write_text("\r\n".join(lines) + "\r\n", encoding=ENCODING, newline="")
