"""The program editor: a program written from nothing, its questions, its checks and the files it refuses."""

import operator
import os
import struct

from desktop import (IDCANCEL, IDNO, IDOK, IDYES, VK_DELETE, VK_DOWN, VK_END, VK_ESCAPE, VK_HOME, VK_INSERT, VK_RETURN,
                     VK_SPACE, VK_TAB, WM_KEYDOWN, Window, call, focused, plain, press, text_in, wait_for)
from looks import text_size
from script import ScriptTest, asks, closes, disabled, holds, key, row, run, shows, spin, the_list
from tolvan import ID, TITLE, Program, crc, windows_path

EM_SETSEL, WM_CONTEXTMENU, MN_GETHMENU, MF_GRAYED, MF_BYPOSITION = 0xB1, 0x7B, 0x1E1, 1, 0x400
EMPTY = "\x7F"  # cell of the portable's display

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


def done_changed(answer, then=WINDOW):
    return asks("? Save Changed Field Definition?", answer, then, DEFINITION)


def new_field(*script):
    return [row(0), "Insert", shows(FIELD), *script, "Done", done_new(IDYES)]


def defines(kind):
    return ["Define", shows("Lookup Choice"), kind, "OK", shows(kind)]


def sets(*numbers):
    return [OPTIONS, shows(OPTIONS), "Field to compare: {}|Field to increment: {}|Amount to increment: {}|"
            "Field One: {}|Field Two: {}|Field for Result: {}".format(*numbers)]


def opens(path, then=WINDOW):
    return [ID.CMD_OPEN, shows("Open"), path, shows(then)]


def saves(path, then):
    return [ID.CMD_SAVE, shows("Save As"), path, shows(then)]


START = [shows(MAIN), ID.CMD_PROGRAMMING, shows(UNTITLED)]
WARNS_OF_TARGET = asks("! Target field to accept Lookup data does not exist,\nbe sure to create target field for "
                       "lookup data\nbefore saving program.", IDOK, FIELD, "Target Field")

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
    sets(6, 7, 5, 8, 9, 10), "Subtract Field Two from Field One|OK", shows(UNTITLED),
    "Use Received Data Files Only|Allow Append To End Of File|Auto Alpha Switch|SOF Text: /02BEGIN/0d",
    key(VK_TAB, "3"), "EOF Delay: 12|EOF Text: /fb/00"]
BUILT = program_file(b"BUILT", [record for _, record in FIELDS], (3, 3, 2, 27, 26, 26), delays=(3, 12), flags=0x41,
                     sof=b"\x02BEGIN\r", eof=b"\xFB\xFF")

SIZE, BAR_CODE = "Input Max+|Input Min+", "Bar Code Append|Bar Code Auto Advance|Bar Code Types..."
ANSWER = "Input Source|Output Format|Display Pattern|Input Mask|Default Data|Lookup File/Tbl|Define"
TOTALS = "Allow Calculation|Transmit Total of Field"
LOOKED_UP = disabled("Header Input|Require Input|Shift Input to Upper Case|Allow Duplicate Inputs|Allow Calculation",
                     BAR_CODE)
CHANGES = [  # fields of a file, what is disabled while they are changed, and what is stored beside that
    (dict(flags=0x8D, bar_codes=0), [
        "Bar Code Append|Input Type: E",
        asks("X Header Input can not be\nof Input Type EXHIBIT.", IDOK, FIELD, "Field Definition Error"),
        disabled("Allow Duplicate Inputs|Bar Code Auto Advance"), "Header Input|Bar Code Append", disabled(),
        "Header Input|Allow Calculation", holds("Prompt Text: |Input Type: Data|Input Mask: D"),
        "Allow Calculation"], {}),
    (dict(type="E", flags=0x89, prompt=b"C"), [
        holds("Exhibit Text: C"),
        disabled(ANSWER, "Prefix|Delay|Suffix|Delay", SIZE, "Header Input|Require Input|Auto Advance",
                 "Shift Input to Upper Case|Allow Duplicate Inputs|Enable Input Transmit", TOTALS, BAR_CODE),
        "Input Type: S", holds("Stamp Commands: C"),
        disabled(ANSWER, "Start Row+|Start Col+|Input Max+|End Row+|End Col+|Input Min+|Require Input|Auto Advance",
                 "Shift Input to Upper Case|Allow Duplicate Inputs", TOTALS, BAR_CODE), "Header Input"],
     dict(type="S", flags=0x8D)),
    (dict(type="Y", source="K", flags=0xE9, flags2=0x08, mask=b"D", bar_codes=0x4003), [
        disabled(SIZE, "Auto Advance", BAR_CODE), "Input Source: L", LOOKED_UP],
     dict(type="D", source="L", flags=0x8A, flags2=0, bar_codes=0x4000)),
    (dict(source="L", flags=0x89), [LOOKED_UP, "Input Source: K", disabled("Header Input", BAR_CODE)],
     dict(source="K", flags=0xCA)),
    (dict(type="Y", source="S", flags=0x89), [
        disabled(SIZE, "Header Input|Auto Advance"), "Input Source: B", disabled(SIZE, "Header Input")],
     dict(source="B", flags=0xCA))]
ODD = dict(  # as odd as a file can hold it
    bar_codes=0xDFF3, manipulated=0x5FF3, flags=0xFE, type=0xFE, row=3, end_row=3, source=0xFE, format=0xFE,
    prefix_delay=0xFE, suffix_delay=0xFE, flags2=0xFE, strip=0xFE, strip_end=0xFE, prompt=b"A&B", mask=b"D",
    lookup=b"T,Red", suffix=b"\xFF" * 250, condition=b"\xFF", transmit=b"\xFF", calculation=b"\r", branch=b"\xFF" * 250)

LONG_NAME = "X The Tolvan can only display filenames up to 9 characters.\nPlease reenter using a 9 character filename."


def visits_all(program):
    """Goes round by the tab key and on to the lookup; the help of each control is shown, and whole."""
    shown, stops = program.screen.control(ID.IDC_FIELD_HELP), 0
    while stops < 40 or focused() != program.screen.control(ID.IDC_FIELD_LOOKUP):
        press(VK_TAB)
        stops += 1
        assert shown.text() and all(map(operator.le, text_size(shown), shown.size())), shown.text()


def chooses(text, start, end, greyed, code):
    """Opens the context menu of an edit that holds a text with a part selected, and presses a key in it."""
    def choose(program):
        edit = program.screen.after("Default Data")
        edit.set_text(text)
        edit.send(EM_SETSEL, start, end)
        edit.post(WM_CONTEXTMENU, 0, -1)
        menu = wait_for("the menu", lambda: Window(call("FindWindowA", "#32768", 0))).send(MN_GETHMENU)
        found = []
        for position in range(call("GetMenuItemCount", menu)):
            caption = bytearray(40)
            call("GetMenuStringA", menu, position, caption, len(caption), MF_BYPOSITION)
            if call("GetMenuState", menu, position, MF_BYPOSITION) & MF_GRAYED:
                found.append(plain(text_in(caption)))
        assert "|".join(filter(None, found)) == greyed, found
        press(code)
    return choose


def tool(number):
    return lambda program: program.screen.control(ID.ID_FILE_TOOLBAR).push(21 * number - 10, 9)


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

    def test_what_a_field_disables(self):
        first, last = dict(flags=0x85), dict(prompt=b"LAST")
        fields = [first, *(before for before, _, _ in CHANGES), last]
        path = self.file("a.pgt", program_file(b"A", fields, (2, 2, 2, 5, 5, 5)))
        self.start(
            START, opens(path, "Programming (A)"), row(1), "Edit", shows(FIELD),
            disabled("Header Input|New Screen|Allow Duplicate Inputs|Previous"), "Next", shows(FIELD),
            [[script, "Next", done_changed(IDYES, FIELD)] for _, script, _ in CHANGES], holds("Prompt Text: LAST"),
            disabled("Header Input|Next"), "Done", shows(WINDOW), saves(self.folder / "b", "Programming (B)"))
        changed = [{**before, **after} for before, _, after in CHANGES]
        self.assert_holds("b.pgt", program_file(b"B", [dict(flags=0x8D), *changed, last], (3, 3, 2, 4, 4, 4)))

    def test_edits_reach_an_odd_field_alone(self):
        a, c, counts = dict(prompt=b"A"), dict(flags=0xD2, prompt=b"C"), (1, 1, 1, 2, 2, 2)
        path = self.file("odd.pgt", program_file(b"ODD", [a, ODD, c], counts))
        symbologies = "Code 39|UPC-A|UPC-E|EAN-13|EAN-8|Int 2 of 5|Codabar|Code 128|Code 93|MSI/Plessey|Code 11"
        types = ["Bar Code Types...", shows("Bar Code Types")]

        def empty_clipboard(_):
            call("OpenClipboard", 0)
            call("EmptyClipboard")
            call("CloseClipboard")

        self.start(
            START, opens(path, "Programming (ODD)"), row(2), "Edit", shows(FIELD), types, disabled(symbologies), closes,
            shows(FIELD), "Done", shows(WINDOW), "Edit", shows(FIELD), visits_all, key(VK_END, VK_RETURN, "x/0d"),
            holds("Tolvan Display: C" + EMPTY * 19), spin("Start Row", "+"),
            holds(f"Tolvan Display: C&&B{EMPTY * 17}|Help: Starting Row for\rInput Display"),
            "Delay: 300", types, "All|UPC-A", disabled(), closes, shows(FIELD), "Done", done_changed(IDYES),
            row(3), "Edit", shows(FIELD), empty_clipboard,
            chooses("", 0, 0, "Undo|Cut|Copy|Paste|Delete|Select All", VK_ESCAPE),
            chooses("a//b", 0, 3, "Undo|Paste", ord("T")), holds("Default Data: b"),
            chooses("abc", 1, 2, "Undo", ord("S")), shows("Special ASCII Characters"),
            key(VK_SPACE, VK_HOME, VK_RETURN, VK_DOWN, VK_DOWN, VK_SPACE),  # the first finds nothing selected
            key(VK_TAB, VK_TAB, VK_TAB, VK_TAB, VK_END, "+", VK_RETURN), shows(FIELD),
            holds("Default Data: a/00/02+c"), "Done", done_changed(IDYES), saves(self.folder / "b", "Programming (B)"))
        odd = dict(ODD, bar_codes=0x7FF3, row=0, prefix_delay=255, lookup=b"T,RedX\r")
        self.assert_holds("b.pgt", program_file(b"B", [a, odd, dict(c, default=b"a\xFF\x02+c")], counts))

    def test_global_options(self):
        multiple, amount = "Multiple Field Calculation Option", dict(flags2=1, condition=b"-99999999999")
        path = self.file("a.pgt", program_file(b"A", [{}, amount, {}]))
        warnings = [asks("! You must have a compare field\nand an increment field\nand an increment amount\n"
                         "for this option to work.", IDOK, multiple, "Autoincrement Options"),
                    asks("! All fields must have data\nfor this option to work.", IDOK, WINDOW, multiple)]
        self.start(
            START, opens(path, "Programming (A)"), OPTIONS, shows(OPTIONS), holds("Amount to increment: -2147483648"),
            "Cancel", shows(WINDOW), sets(0, 0, 5, 0, 0, 0), "OK", shows(WINDOW),
            sets(2, 0, 5, 1, 2, 0), "OK", warnings, sets(0, 3, 5, 1, 0, 3), "OK", warnings,
            sets(2, 3, 0, 0, 2, 3), "OK", warnings, sets(2, 3, 5, 1, 2, 3),
            "Show duplicate warning message|Divide Field One by Field Two|OK", shows(WINDOW),
            saves(self.folder / "b", "Programming (B)"), "EOF Delay: 9", sets(9, 9, 9, 9, 9, 9), key(VK_ESCAPE),
            shows(WINDOW), OPTIONS, shows(OPTIONS), holds("Field to compare: 2|Field One: 1"), "Cancel", shows(WINDOW),
            ID.CMD_EXIT, shows(MAIN))  # Cancel forgets that anything was changed
        self.assert_holds("b.pgt", program_file(b"B", [
            dict(roles=0x04), dict(amount, flags=0xDB, flags2=0, roles=0x09),
            dict(mask=b"D", flags2=1, condition=b"0005", roles=0x10)]))

    def test_full_program(self):
        full = "Programming (FULL)"
        program = self.start(
            START, opens(self.file("full.pgt", program_file(b"FULL", [{}] * 250, flags=0x41)), full), disabled(),
            "Insert", asks("X Maximum number of Field Definitions allowed is 250.", IDOK, full, DEFINITION))
        self.assert_prompts(program, *[""] * 250)
        run(program, tool(1), asks("? Create a new program file?", IDNO, full), tool(2), shows("Open"), IDCANCEL,
            shows(full), tool(3), shows("Save As"), IDCANCEL, shows(full), tool(4), shows(MAIN))

    def test_questions(self):
        def cancels(answer, then):
            return ["Cancel", asks("? Cancel Current Definition Changes?", answer, then, DEFINITION)]

        one, two, a, c, x = "Field Definition #1", "Field Definition #2", *(f"Prompt Text: {text}" for text in "ACX")
        insert, delete = "? Insert New Field Definition Before Field Definition #2?", "? Delete Field Definition #2?"
        new, leave = "? Create a new program file?", "? Save File Changes?"
        program = self.start(
            START, "Insert", shows(one), cancels(IDNO, one), "Done", done_new(IDNO), ID.CMD_EXIT, START, new_field(a),
            row(0), "Insert", shows(two), "Previous", done_new(IDNO, one), "Cancel", shows(WINDOW), new_field(c),
            row(2), key(VK_INSERT), asks(insert, IDNO, WINDOW), "Insert", asks(insert, IDYES, two),
            "Next", done_new(IDNO, two), holds(c), x, "Previous", done_changed(IDNO, one), holds(a),
            "Next", shows(two), holds(c), x, cancels(IDNO, two), holds(x), "Done", done_changed(IDNO))
        self.assert_prompts(program, "A", "C")
        run(program, row(1), "Edit", shows(one), x, "Next", done_changed(IDYES, two), "Prompt Text: Y", "Done",
            done_changed(IDYES), "Edit", shows(two), "Done", shows(WINDOW),
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
