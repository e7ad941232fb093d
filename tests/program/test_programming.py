"""The program editor: a program written from nothing, its questions, its checks and the files it refuses."""

import os
import struct

from desktop import IDCANCEL, IDNO, IDOK, IDYES, VK_DELETE, VK_INSERT, VK_TAB, WM_KEYDOWN
from script import ScriptTest, asks, closes, holds, key, row, run, shows, spin, the_list
from tolvan import ID, TITLE, Program, crc, windows_path

MAIN, WINDOW, UNTITLED = TITLE + " (Default)", "Programming (*)", "Programming (Untitled)"
FIELD, DEFINITION = "Field Definition #*", "Field Definition"
TABLE, FILE, OPTIONS = "Lookup Table Definition", "Lookup File Definition", "Global Data Options"

# The record of a field, in the order of the file, as a new field has it.
DEFAULTS = dict(
    bar_codes=0x8001, manipulated=0, flags=0xDA, type="D", row=0, col=0, end_row=0, end_col=19, max=250, min=1,
    source="B", format="V", prefix_delay=0, suffix_delay=0, flags2=0, strip=0, strip_end=0, roles=0,
    prompt=b"", pattern=b"", mask=b"A", default=b"", lookup=b"", prefix=b"", suffix=b"\r\n",
    condition=b"", transmit=b"", calculation=b"", branch=b"")


def record(changes):
    values = [ord(value) if isinstance(value, str) else value for value in {**DEFAULTS, **changes}.values()]
    return struct.pack(">HH16B", *values[:18]) + b"".join(text + b"\0" for text in values[18:])


def program_file(name, records, counts=None, delays=(0, 0), flags=0x20, sof=b"", eof=b""):
    counts = counts or (0, 0, 0, *[len(records)] * 3)
    body = (bytes(counts) + name.ljust(9, b"\0") + bytes([*delays, flags]) + sof + b"\0" + eof + b"\0"
            + b"".join(map(record, records)))
    return (len(body) + 5).to_bytes(4, "big") + b"I" + body + crc(body)


def done_new(answer, then=WINDOW):
    return asks("? Save New Field Definition?", answer, then, DEFINITION)


def new_field(*script):
    return [row(0), "Insert", shows(FIELD), *script, "Done", done_new(IDYES)]


def defines(kind):
    return ["Define", shows("Lookup Choice"), kind, "OK", shows(kind)]


def opens(path, then=WINDOW):
    return [ID.CMD_OPEN, shows("Open"), path, shows(then)]


def saves(path, then):
    return [ID.CMD_SAVE, shows("Save As"), path, shows(then)]


START = [shows(MAIN), ID.CMD_PROGRAMMING, shows(UNTITLED)]
WARNS_OF_TARGET = asks("! Target field to accept Lookup data does not exist,\nbe sure to create target field for lookup "
                       "data\nbefore saving program.", IDOK, FIELD, "Target Field")

FIELDS = [  # what the operator does, and what the record then holds beside the defaults
    (["Header Input|Prompt Text: STORE:|Input Source: K|Input Max: 4|Input Min: 4|Input Mask: nnnn"],
     dict(flags=0xDE, prompt=b"STORE:", source="K", max=4, min=4, mask=b"NNNN")),
    (["Header Input|Input Type: S|Stamp Commands: M//D//Y"],
     dict(flags=0xDE, type="S", prompt=b"M/D/Y", pattern=b"__/__/____", mask=b"AAIAAIAAAA")),
    (["Header Input|Input Type: N|Default Data: @|Prefix: /02/a1", key(VK_TAB, "7"), "Suffix: /0d", key(VK_TAB, "12"),
      holds("Prefix: /02/A1|Suffix: /0D")],
     dict(flags=0xDE, type="N", default=b"@", prefix=b"\x02\xA1", prefix_delay=7, suffix=b"\r", suffix_delay=12)),
    (["Input Type: E|End Row: 3|Exhibit Text: PUT IT BACK INTO ITS CHARGER"],
     dict(type="E", end_row=3, prompt=b"PUT IT BACK INTO ITS CHARGER")),
    (["New Screen|Start Row: 1|End Row: 1|Prompt Text: ITEM:", key(VK_TAB, "______"), "Bar Code Types...",
      shows("Bar Code Types"), "All|Code 39|UPC-A|Exit", shows(FIELD)],
     dict(flags=0xD2, row=1, end_row=1, prompt=b"ITEM:", pattern=b"______", bar_codes=0x6001)),
    (["Input Source: S|Prompt Text: /1bQ/00&"], dict(source="S", prompt=b"\x1BQ\xFF&", flags=0xDB, roles=0x03)),
    (["Input Mask: AAA|Suffix: |Output Format: L|Input Min: 0"],
     dict(mask=b"DDD", suffix=b"", format="L", min=0, flags2=0x01, condition=b"0005")),
    (["Allow Calculation|Transmit Total of Field|Shift Input to Upper Case|Allow Duplicate Inputs|Output Format: R"],
     dict(mask=b"D", flags=0xFB, flags2=0x18, format="R", roles=0x04)),
    (["Auto Advance|Require Input|Enable Input Transmit|Bar Code Append"],
     dict(flags=0x88, bar_codes=0x8003, roles=0x48)),
    ([spin("End Row", "++++-"), spin("Start Col", "-++"), spin("Input Max", "+--"), spin("Input Min", "+")],
     dict(end_row=3, col=1, max=249, min=2, roles=0x10)),
    (["Default Data: A//B/00|Display Pattern: __/7f__|Prefix: ?", ID.CMD_SPECIAL_ASCII,
      shows("Special ASCII Characters"), row(33), "Add", row(0), "Add|Done", shows(FIELD)],
     dict(default=b"A/B\xFF", pattern=b"__\x7F__", prefix=b"?\x8C\xFC")),
    (["Input Type: Y|Input Source: K|Default Data: Y"], dict(type="Y", source="K", default=b"Y")),
    *[([f"Prompt Text: PLAIN {number}"], dict(prompt=b"PLAIN %d" % number)) for number in range(13, 31)],
]
SETTINGS = [
    OPTIONS, shows(OPTIONS), "Field to compare: 6|Field to increment: 7|Amount to increment: 5|Field One: 8",
    "Field Two: 9|Field for Result: 10|Subtract Field Two from Field One|OK", shows(UNTITLED),
    "Use Received Data Files Only|Allow Append To End Of File|Auto Alpha Switch|SOF Text: /02BEGIN/0d",
    key(VK_TAB, "3"), "EOF Delay: 12|EOF Text: /fb/00"]
BUILT = program_file(b"BUILT", [record for _, record in FIELDS], counts=(3, 3, 2, 27, 26, 26), delays=(3, 12), flags=0x41,
                     sof=b"\x02BEGIN\r", eof=b"\xFB\xFF")

LONG_NAME = "X The Tolvan can only display filenames up to 9 characters.\nPlease reenter using a 9 character filename."


class ProgrammingTest(ScriptTest):
    def assert_prompts(self, program, *prompts):
        *rows, end = the_list(program).entries()
        self.assertEqual([row.split("\t")[3] for row in rows] + [end], [*prompts, "<<END OF PROGRAM>>"])

    def test_all_settings_from_nothing(self):
        path = self.folder / "built.x.pgt"
        program = self.start(START, [new_field(*script) for script, _ in FIELDS], SETTINGS,
                             saves(path, "Programming (BUILT)"))
        self.assertEqual(path.read_bytes(), BUILT)
        run(program, holds("EOF Text: /FB/00"), ID.CMD_EXIT, START, opens(path, "Programming (BUILT)"),
            holds("Use Received Data Files Only|EOF Delay: 12"))
        rows = the_list(program).entries()
        self.assertEqual(len(rows), len(FIELDS) + 1)
        self.assertEqual(rows[0], "  1\tHeader\tData\tSTORE:\t  4\t  4\t   Keyboard\t   Variable")
        run(program, saves(self.folder / "again", "Programming (AGAIN)"))
        self.assertEqual((self.folder / "again.pgt").read_bytes()[20:-2], BUILT[20:-2])

    def test_questions(self):
        def changed(answer, then):
            return asks("? Save Changed Field Definition?", answer, then, DEFINITION)

        def cancels(answer, then):
            return ["Cancel", asks("? Cancel Current Definition Changes?", answer, then, DEFINITION)]

        one, two, a, c, x = "Field Definition #1", "Field Definition #2", *(f"Prompt Text: {text}" for text in "ACX")
        insert, delete = "? Insert New Field Definition Before Field Definition #2?", "? Delete Field Definition #2?"
        new, leave = "? Create a new program file?", "? Save File Changes?"
        program = self.start(
            START, "Insert", shows(one), cancels(IDNO, one), "Done", done_new(IDNO), ID.CMD_EXIT, START, new_field(a),
            row(0), "Insert", shows(two), "Previous", done_new(IDNO, one), "Cancel", shows(WINDOW), new_field(c),
            row(2), key(VK_INSERT), asks(insert, IDNO, WINDOW), "Insert", asks(insert, IDYES, two),
            "Next", done_new(IDNO, two), holds(c), x, "Previous", changed(IDNO, one), holds(a),
            "Next", shows(two), holds(c), x, cancels(IDNO, two), holds(x), "Done", changed(IDNO, WINDOW))
        self.assert_prompts(program, "A", "C")
        run(program, row(1), "Edit", shows(one), x, "Next", changed(IDYES, two), "Prompt Text: Y", "Done",
            changed(IDYES, WINDOW), "Edit", shows(two), "Done", shows(WINDOW),
            "Insert", asks(insert, IDYES, two), "Prompt Text: B|Input Max: 0", "Next", done_new(IDYES, DEFINITION),
            asks("X Max Input Value less than Min Input Value", IDOK, two, DEFINITION),
            holds("Prompt Text: B|Input Max: 0"), "Input Max: 250", "Next", done_new(IDYES, "Field Definition #3"),
            holds("Prompt Text: Y"), "Done", shows(WINDOW), row(2), "Delete", asks(delete, IDNO, WINDOW))
        self.assert_prompts(program, "X", "B", "Y")
        run(program, row(2), key(VK_DELETE), asks(delete, IDYES, WINDOW), "Delete", asks(delete, IDYES, WINDOW),
            key(VK_INSERT), shows(two), cancels(IDYES, WINDOW),  # the list has the focus, not the disabled button
            lambda _: the_list(program).tell(WM_KEYDOWN, VK_DELETE),  # nothing stands in the selected row
            ID.CMD_NEW, asks(new, IDNO, WINDOW), ID.CMD_OPEN, asks(leave, IDCANCEL, WINDOW),
            ID.CMD_OPEN, asks(leave, IDYES, "Save As"), IDCANCEL, shows(WINDOW),
            ID.CMD_OPEN, asks(leave, IDNO, "Open"), IDCANCEL, shows(WINDOW), closes, asks(leave, IDCANCEL, WINDOW),
            ID.CMD_EXIT, asks(leave, IDYES, "Save As"), IDCANCEL, shows(WINDOW))
        self.assert_prompts(program, "X")
        run(program, ID.CMD_NEW, asks(new, IDYES, UNTITLED))
        self.assert_prompts(program)
        run(program, new_field(x), ID.CMD_EXIT, asks(leave, IDYES, "Save As"), self.folder / "x", shows(MAIN))
        self.assertEqual((self.folder / "x.pgt").read_bytes(), program_file(b"X", [dict(prompt=b"X")]))

    def test_what_cannot_be_saved(self):
        def is_refused(name, message, *questions):
            return [saves(self.folder / name, TITLE if questions else "Save File"), *questions, asks(
                "! Cannot Save Program File.\n" + message, IDOK, f"Programming ({name.upper()})", "Save File")]

        taken = self.folder / "taken.pgt"
        taken.mkdir()
        program = self.start(
            START, new_field("Prompt Text: KEPT"), "SOF Text: KEPT",
            is_refused("taken", "File Creation Error!",
                       shows(TITLE, f"! {windows_path(taken)} already exists.\nDo you want to replace it?"), IDYES),
            saves(self.folder / "tenletters", "Filename Size Error"),
            asks(LONG_NAME, IDOK, "Save As", "Filename Size Error"), IDCANCEL, shows(WINDOW),
            OPTIONS, shows(OPTIONS), "Field to compare: 1|OK", shows("Autoincrement Options"), IDOK, shows(WINDOW),
            is_refused("a", "Global Data Options >>\nAutoincrement Fields not Complete."), holds("SOF Text: KEPT"))
        self.assert_prompts(program, "KEPT")
        self.assertEqual(os.listdir(self.folder), ["taken.pgt"])

    def test_opening_from_the_command_line(self):
        (self.folder / "two words").mkdir()
        path = self.file("two words/a b.pgt", program_file(b"STARTED", [dict(prompt=b"FIRST")]))
        for name, script in ((path, [shows("Programming (STARTED)")]),
                             (self.folder / "none", [
                                 asks("! Cannot Open Program File!", IDOK, "Invalid/Corrupt", "Open File"),
                                 asks("! Invalid/Corrupt Program File!", IDOK, UNTITLED, "Invalid/Corrupt"),
                                 opens(path, "Programming (STARTED)")])):
            with self.subTest(name), Program("-F=" + windows_path(name)) as program:
                run(program, script)
                self.assert_prompts(program, "FIRST")

    def test_opening_what_is_no_program(self):
        good = program_file(b"GOOD", [dict(prompt=b"FIRST")])
        path = self.file("good.pgt", good)
        program = self.start(START)
        for name, content, answer in (("cut", good[:-9], [shows("File Extraction"), IDCANCEL, shows(UNTITLED)]),
                                      ("text", b"no program at all", [shows("Open File"), IDOK, shows(UNTITLED)])):
            run(program, opens(path, "Programming (GOOD)"), opens(self.file(name + ".pgt", content), "*"), answer)
            self.assert_prompts(program)
        run(program, opens(self.file("tenletters.pgt", good), "Filename Size Error"),
            asks(LONG_NAME, IDOK, "Open", "Filename Size Error"), path, shows("Programming (GOOD)"))
        self.assert_prompts(program, "FIRST")
        run(program, opens(self.file("damaged.pgt", good[:-1] + b"?"), "Invalid Checksum"),
            asks("! Invalid Checksum in Program File!", IDOK, UNTITLED, "Invalid Checksum"),
            saves(path, "Error"), IDYES, shows("Programming (GOOD)"))  # the file dialog asks about the old file
        self.assertEqual(path.read_bytes(), good)
