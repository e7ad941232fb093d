"""The editors of lookup and data files: what each edit leaves in the file, down to the last byte, and each message."""

import os
import struct

from desktop import (IDCANCEL, IDNO, IDOK, IDYES, VK_CONTROL, VK_DOWN, VK_END, VK_ESCAPE, VK_HOME, VK_NEXT, VK_PRIOR,
                     VK_RETURN, VK_SHIFT, VK_SPACE, VK_TAB, VK_UP, call, focused, wait_for)
from looks import looks
from script import ScriptTest, asks, holds, key, row, run, shows, step_by_keys, the_list
from tolvan import ID, TITLE, crc

MAIN, LOOKUP, DATA = TITLE + " (Default)", "Lookup File Editor", "Data File Editor"
IMPORT, OVERWRITE, INVALID = "Translate Database File", "? Overwrite Current Data?", "Invalid/Corrupt"
INSERTS, DELETES = "Repetitive Field Insert", "Repetitive Field Delete"
DIALOGS = {"Rep. Add": INSERTS, "Rep. Insert": INSERTS, "Rep. Delete": DELETES}  # by their buttons
LINE, OUT_OF_RANGE = "Starting with line #: ", "! Starting with line# {} out of range."
WM_SYSCHAR, WM_VSCROLL, WM_MOUSEWHEEL, KEYEVENTF_KEYUP, LBN_DBLCLK = 0x106, 0x115, 0x20A, 2, 2
SB_LINEDOWN, SB_THUMBPOSITION, SB_BOTTOM = 1, 4, 7
NOT_HELD = "! Records cannot hold the characters with the numbers 254 and 255.\nEach was replaced by a question mark."

START, START_DATA = ([shows(MAIN), command, shows(editor)] for command, editor in (
    (ID.CMD_LOOKUP_EDITOR, LOOKUP), (ID.CMD_DATA_EDITOR, DATA)))
AS_SYSTEM, AS_ASCII = ([shows("Save Lookup File Choice"), choice] for choice in (
    ["Lookup System File", "OK"], key(VK_DOWN, VK_RETURN)))
OVER = asks(OVERWRITE, IDYES, "Open")
TOGGLE = [[row(number), key(VK_SPACE)] for number in range(4)]


def system_file(name, records):
    rest = b"".join(bytes([255, (255 + len(text) + sum(text)) % 256, len(text)]) + text for text in records)
    start, middle = (22 + len(rest)).to_bytes(4, "big"), struct.pack(">9sxxI", name, len(records))
    return start + b"R" + middle + crc(start + middle + rest) + rest


def text_file(*lines):
    return b"".join(line + b"\r\n" for line in lines)


def opens(path, then=LOOKUP, *question):
    return [ID.CMD_OPEN, *question, shows("Open"), path, shows(then)]


def saves(path, *script, then=LOOKUP):
    return [ID.CMD_SAVE, shows("Save As"), path, *script, shows(then)]


def double_click(program):
    program.screen.command(the_list(program).identifier() | LBN_DBLCLK << 16)


def repeats(button, *script):
    return [button, shows(DIALOGS[button]), *script, "OK", shows(LOOKUP)]


def refuses(number, message, caption, then):
    return [number, "OK", asks(message, IDOK, then, caption)]


def sends(message, what):
    """To the editor what the scroll bar or the wheel sends, or to the line a key that is held with Alt."""
    return lambda program: (focused() if message == WM_SYSCHAR else program.screen).post(message, what)


def press_with(held, code):
    """The editor asks the system whether the first key is held, so that the system itself presses both."""
    def press(_):
        for pressed, flags in ((held, 0), (code, 0), (code, KEYEVENTF_KEYUP), (held, KEYEVENTF_KEYUP)):
            call("keybd_event", pressed, 0, flags, 0)
    return press


def is_at(place):
    """The number of the first visible line, behind a * that of the line with the focus; then I and R while Insert and
    Rep. Insert are enabled."""
    def held(screen):
        row = focused(screen).identifier() - ID.IDC_FILE_LINE
        first, number = (screen.control(ID.IDC_FILE_NUMBER + max(line, 0)).text() for line in (0, row))
        enabled = [button[0] for button in ("Insert", "Rep. Insert") if screen.button(button).enabled()]
        return "".join((first, "*" + number if row >= 0 else "", *enabled))
    return lambda program: wait_for(place, lambda: held(program.screen) == place)


PLACES = [  # what the operator does in a file of three lines, one after the other, and where that leads
    (key(VK_UP), "1*1IR"),
    (key(VK_NEXT), "1*3IR"),
    (key(VK_RETURN, "d"), "1*4IR"),
    (key(*[VK_RETURN] * 10, "e", VK_DOWN), "3*14IR"),
    (key(VK_UP, VK_UP), "3*12IR"),
    (key("f", VK_PRIOR), "1*1IR"),
    ([sends(WM_VSCROLL, SB_LINEDOWN)] * 4, "3*3IR"),
    (sends(WM_VSCROLL, SB_THUMBPOSITION | 1 << 16), "1*1IR"),
    (sends(WM_MOUSEWHEEL, -120 << 16), "3*3IR"),
    (sends(WM_MOUSEWHEEL, 120 << 16), "1*1IR"),
    ([key("a"), sends(WM_VSCROLL, SB_BOTTOM)], "3*3IR"),
    (press_with(VK_CONTROL, VK_END), "3*14IR"),
    (press_with(VK_CONTROL, VK_HOME), "1*1IR"),
    (press_with(VK_SHIFT, VK_TAB), "1R"),
    ([key(VK_TAB, VK_TAB, VK_TAB, "c"), sends(WM_SYSCHAR, ord("i"))], "1*3IR"),
    ([key("g", VK_DOWN, VK_DOWN), sends(WM_SYSCHAR, ord("D"))], "1*5IR"),
    (["Delete"] * 6, "1*5IR"),
    ("Insert", "1*5IR"),
    ("Add", "1*10IR"),
    (key(VK_TAB, VK_TAB), "1IR"),
    (key(VK_TAB, VK_TAB), "1R"),
]

X, Y = b"x" * 250, b"y" * 249  # as much as can be typed into a line, and repeated
BIG = [b"?A", b"?B", b"FIG", b"NEW", Y] + [b"Z"] * 65535
EDITS = [  # what the operator does in one file, one after the other, and what it then holds
    (["Add", "1: APPLE", key(VK_RETURN, "PEAR"), key(VK_RETURN, "FIG")], [b"APPLE", b"PEAR", b"FIG"]),
    (["2: B//W\xE9", "Insert", "2: /0D"], [b"APPLE", b"/0D", b"B//W\xE9", b"FIG"]),
    (["3: B|Delete", "1: ", "Add", "4: " + "x" * 251], [b"", b"/0D", b"FIG", X]),
    (repeats("Rep. Add", step_by_keys("Add", "-"), holds("Add: 65535"), step_by_keys("Add", "+"), holds("Add: 1"),
             refuses("Add: 65536", "! Add 65536 fields greater than 65535.", "Repeating Add", INSERTS),
             "Add: 3|Default Data: " + "y" * 250), [b"", b"/0D", b"FIG", X, Y, Y, Y]),
    (repeats("Rep. Insert", looks, refuses(LINE + "8", OUT_OF_RANGE.format(8), "Repeating Delete", INSERTS), row(2),
             LINE + "3|Default Data: NEW"), [b"", b"/0D", b"NEW", b"FIG", X, b"NEW", Y, Y, b"NEW", Y]),
    (repeats("Rep. Delete", step_by_keys(LINE[:-2], "-"), holds(LINE + "10"),
             refuses(LINE + "0", OUT_OF_RANGE.format(0), "Repeating Delete", DELETES), row(3), LINE + "2"),
     [b"", b"NEW", b"FIG", b"NEW", Y, b"NEW", Y]),
    (repeats("Rep. Delete", LINE + "6"), [b"", b"NEW", b"FIG", b"NEW", Y]),
    (["1: \xFFA", key(VK_RETURN), asks(NOT_HELD, IDOK, LOOKUP, "Lookup File"), "2: \xFEB", key(VK_UP)], BIG[:5]),
    (repeats("Rep. Add", "Add: 65535|Default Data: Z"), BIG),
]

CSV = b'Name,Code\r\n"Smith, J",  0012 \r\n\r\n,000\nTWENTY-ONE CHARACTERS,A\tB'
RECORDS = [b"ONE", b"", b"TWO"]
GOOD = system_file(b"INSIDE", RECORDS)


class FilesTest(ScriptTest):
    def test_moving_between_lines(self):
        lines = self.file("lines.txt", text_file(b"L", b"LINES", b"", b"A", b"B", b"C"))
        program = self.start(START, is_at(""), opens(lines), is_at("1R"))
        self.assertEqual(program.screen.control(ID.IDC_FILE_LINE + 3).text(), "< End of Entries >")
        run(program, key(VK_TAB), looks, [[script, is_at(place)] for script, place in PLACES],
            saves(self.folder / "moved", AS_ASCII))
        self.assert_holds("moved.lkt", text_file(
            b"L", b"moved", b"", b"a", b"B", b"g", b"c", b"", b"", b"f", b"", b"e", b""))

    def test_lack_of_memory(self):
        def takes_too_much(label, *leave, then):
            return [lambda program: program.screen.after(label).set_text("x" * 40000), *leave,
                    asks("! System out of memory!", IDOK, then, "Memory Allocation")]

        self.start(START, "Add", "1: KEPT", [
            [button, shows(INSERTS), takes_too_much("Default Data", "OK", then=LOOKUP), holds("1: KEPT")]
            for button in ("Rep. Add", "Rep. Insert")], "1: ", takes_too_much("1", key(VK_DOWN), then=MAIN))

    def test_edits(self):
        program = self.start(START)
        for number, (script, records) in enumerate(EDITS):
            run(program, script, saves(self.folder / f"edit{number}", AS_SYSTEM))
            self.assert_holds(f"edit{number}.lkt", system_file(b"edit%d" % number, records))
        path = self.folder / "longfilename.lkt"
        run(program, saves(path, AS_ASCII))
        self.assert_holds(path, text_file(b"L", b"longfile", b"", *BIG))
        run(program, opens(path, LOOKUP, OVER), holds("Lookup Filename: longfile|5: " + "y" * 249))

    def test_import(self):
        program = self.start(START, opens(self.file("cut.csv", CSV), IMPORT),
                             key(VK_SPACE, VK_DOWN, VK_RETURN, VK_SPACE, VK_END, VK_RETURN))
        self.assertEqual(the_list(program).entries(), [f"\tYes\t{'Name':19}", f"\tNo\t{'Code':19}", "<End Of Fields>"])
        run(program, key(VK_UP), double_click, "Strip Leading Spaces|Strip Leading Zeroes|Truncate to 20 Chars.",
            "Translate", shows(LOOKUP), saves(self.folder / "cut.lkt", AS_SYSTEM))
        self.assert_holds("cut.lkt", system_file(b"cut", [
            b"Name", b"Code", b"Smith, J", b"  0012", b"", b"", b"TWENTY-ONE CHARACTER", b"AB"]))

    def test_questions_and_names(self):
        def leaves(answer, then):
            return [IDCANCEL, asks("? Save File Changes?", answer, then)]

        kept, good = self.folder / "kept.lkt", self.file("good.lkt", GOOD)
        data = self.file("data.dat", text_file(b"D", b"OTHER", b"COLLECTS", *RECORDS))
        self.start(
            START, IDCANCEL, START, "Add", "1: KEPT", ID.CMD_OPEN, asks(OVERWRITE, IDNO, LOOKUP), ID.CMD_NEW,
            asks(OVERWRITE, IDNO, LOOKUP), leaves(IDCANCEL, LOOKUP), leaves(IDYES, "Save As"), IDCANCEL, shows(LOOKUP),
            saves(kept, AS_SYSTEM[0], "Cancel"), lambda _: kept.unlink(), leaves(IDYES, "Save As"), kept, AS_SYSTEM,
            START, "Add", ID.CMD_NEW, asks(OVERWRITE, IDYES, LOOKUP), "Add", leaves(IDNO, MAIN), START, opens(good),
            holds("Lookup Filename: INSIDE|1: ONE|2: |3: TWO"), saves(IDOK, AS_SYSTEM), IDCANCEL, START_DATA, "Add",
            ID.CMD_SAVE, asks("! Data File Missing Associated Program Name!", IDOK, DATA, "Data File"),
            opens(data, DATA, OVER), holds("Data Filename: OTHER|Program Name: COLLECTS|3: TWO"),
            "Program Name: NINECHARS", saves(self.folder / "saved", then=DATA), holds("Data Filename: saved"), IDCANCEL,
            shows(MAIN))
        self.assert_holds("INSIDE.lkt", GOOD)
        self.assert_holds(kept, system_file(b"kept", [b"KEPT"]))
        self.assert_holds("saved.dat", text_file(b"D", b"saved", b"NINECHAR", *RECORDS))

    def test_files_that_cannot_be_opened(self):
        csv, damaged = self.file("any.csv", CSV), self.file("damaged.lkt", GOOD[:-1] + b"?")
        program = self.start(START, opens(csv, IMPORT), key(VK_ESCAPE), shows(LOOKUP), opens(csv, IMPORT), "Translate",
                             asks("! Invalid Lookup File!", IDOK, LOOKUP, INVALID))
        self.assertFalse(any(program.screen.button(caption).enabled()
                             for caption in ("Insert", "Delete", "Rep. Insert", "Rep. Delete")))
        run(program, opens(damaged, "Invalid Checksum"),
            asks("! Invalid Checksum in Lookup File!", IDOK, LOOKUP, "Invalid Checksum"),
            holds("1: ONE|2: |3: TW?"), IDCANCEL, START_DATA, opens(self.file("bad.dat", b"D\r\nNAME"), INVALID),
            asks("! Invalid Data File!", IDOK, DATA, INVALID))

    def test_what_cannot_be_saved(self):
        (self.folder / "~TOLVAN0.TMP").mkdir()  # keeps a new file from being written
        too_long = "! Line 2 is longer than 255 characters.\nA lookup system file cannot hold it."
        new, long = self.folder / "new", self.file("long.csv", b"ONE\n" + b"x" * 256)
        self.start(
            START, opens(long, IMPORT), TOGGLE[1], "Translate", shows(LOOKUP),
            saves(new, AS_SYSTEM, asks(too_long, IDOK, "Lookup File", "Lookup File"),
                  asks("! Error Saving Lookup File!", IDOK, LOOKUP, "Lookup File")), IDCANCEL,
            START_DATA, "Add", "Program Name: PROG",
            saves(new, asks("! Error Saving Data File!", IDOK, DATA, "Data File"), then=DATA))
        self.assertEqual(sorted(os.listdir(self.folder)), ["long.csv", "~TOLVAN0.TMP"])
