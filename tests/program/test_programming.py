"""The program editor: a program written from nothing, its questions, its checks and the files it refuses.

A script is a list of what a person does in the window in front: press a button (its caption), type behind a
label (label, text), choose a command or an answer (a number), answer a file dialog (a path; None cancels), or
one of the procedures below. What opens or closes a window is followed by shows().
"""

import fnmatch
import os
import struct

from tolvan import (BM_GETCHECK, FILE_NAME_EDIT, ID, IDCANCEL, IDNO, IDOK, IDYES, LB_GETITEMHEIGHT, LB_GETTOPINDEX, LB_SETTOPINDEX, TITLE,
                    WM_CONTEXTMENU, WM_CHAR, WM_KEYDOWN, Program, ProgramTest, Window, crc, desktop, wait_for,
                    windows_path)

VK_RETURN, VK_INSERT, VK_DELETE = 0x0D, 0x2D, 0x2E
END_ROW = "<<END OF PROGRAM>>"
MAIN, WINDOW, FIELD, DEFINITION = TITLE + " (Default)", "Programming (*)", "Field Definition #*", "Field Definition"

# --- the program file, from explicit values ---

DEFAULTS = {
    "bar codes": 0x8001, "manipulated": 0,
    "flags": 0xDA, "type": "D", "row": 0, "col": 0, "end row": 0, "end col": 19, "max": 250, "min": 1, "source": "B",
    "format": "V", "prefix delay": 0, "suffix delay": 0, "flags 2": 0, "strip": 0, "strip end": 0, "roles": 0,
    "prompt": b"", "pattern": b"", "mask": b"A", "default": b"", "lookup": b"", "prefix": b"", "suffix": b"\r\n",
    "condition": b"", "transmit": b"", "calculation": b"", "branch": b"",
}


def record(changes):
    values = [ord(value) if isinstance(value, str) else value for value in {**DEFAULTS, **changes}.values()]
    return struct.pack(">HH16B", *values[:18]) + b"".join(text + b"\0" for text in values[18:])


def program_file(name, records, counts=None, delays=(0, 0), flags=0x20, sof=b"", eof=b""):
    counts = counts or (0, 0, 0, *[len(records)] * 3)
    body = (b"I" + bytes(counts) + name.ljust(9, b"\0") + bytes([*delays, flags]) + sof + b"\0" + eof + b"\0"
            + b"".join(map(record, records)))
    return (len(body) + 4).to_bytes(4, "big") + body + crc(body[1:])


# --- what scripts are made of ---


def shows(title, text=None):
    """Waits until a window is in front: a message box with this text, or a dialog."""
    def wait(program):
        def is_there():
            program.screen = program.front()
            return program.screen and fnmatch.fnmatchcase(program.screen.known["text"], title) and (
                text is None or told(program.screen)[1] == text)
        try:
            wait_for((title, text), is_there, 5)
        except AssertionError as error:
            raise AssertionError(f"{error}; there is {program.screen and told(program.screen)}") from None
    return wait


def told(window):
    return window.known["text"], "".join(child.known["text"] for child in window.children()
                                         if child.known["class"] == "Static")


def field_list(program):
    return next(child for child in program.screen.children() if child.known["class"] == "ListBox")


def rows(program):
    return field_list(program).entries()


def row(number):
    """Clicks a row of the list, counting from 1; 0 is the last."""
    def click(program):
        rows_of = field_list(program)
        index = (number or len(rows_of.entries())) - 1
        rows_of.send(LB_SETTOPINDEX, index)
        height = rows_of.send(LB_GETITEMHEIGHT)
        rows_of.push(5, (index - rows_of.send(LB_GETTOPINDEX)) * height + height // 2)
    return click


def focused(program):
    return Window({"handle": int(desktop.ask("focus", program.screen.handle))})


def key(code):
    """Presses a key that takes the keyboard elsewhere."""
    def press(program):
        before = focused(program)
        before.post(WM_KEYDOWN, code)
        wait_for(f"the key {code:#x} to move the focus", lambda: focused(program).handle != before.handle)
    return press


def here(text):
    return lambda program: focused(program).type_here(text)


def spin(label, *directions):
    def press(program):
        controls = program.screen.children()
        edit = program.screen.after(label)
        arrows = next(controls[i + 1] for i, control in enumerate(controls) if control.handle == edit.handle)
        width, height = arrows.size()
        for up in directions:
            arrows.push(width // 2, height // 4 if up == "up" else height * 3 // 4)
    return press


def edit_menu(mnemonic):
    """Opens the context menu of the focused edit and chooses from it."""
    def choose(program):
        focused(program).tell(WM_CONTEXTMENU, focused(program).handle, -1)
        wait_for("the menu", lambda: any(w.known["class"] == "#32768" for w in program.own_windows()))
        program.screen.post(WM_CHAR, ord(mnemonic))
    return choose


def holds(*values):
    """The values behind labels, and the ticks of boxes."""
    def compare(program):
        for label, value in values:
            held = (program.screen.after(label).text() if isinstance(value, str)
                    else bool(program.screen.button(label).send(BM_GETCHECK)))
            assert held == value, f"{label} {held!r} instead of {value!r}"
    return compare


def run(program, *script):
    for step in script:
        if isinstance(step, list):
            run(program, *step)
        elif callable(step):
            step(program)
        elif isinstance(step, str):
            program.screen.button(step).push()
        elif isinstance(step, tuple):
            program.screen.type(*step)
        elif isinstance(step, int):
            program.screen.command(step)
        else:
            program.screen.control(FILE_NAME_EDIT).set_text(windows_path(step))
            program.screen.command(IDOK)


def asks(text, answer, then, title=TITLE):
    return [shows(title, text), answer, shows(then)]


def saves_new(answer, then=WINDOW):
    return asks("Save New Field Definition?", answer, then, DEFINITION)


def field_at_end(*script):
    return [row(0), "Insert", shows(FIELD), *script, "Done", saves_new(IDYES)]


def opens(path, then=WINDOW):
    return [ID.CMD_OPEN, shows("Open"), path, shows(then)]


START = [shows(MAIN), ID.CMD_PROGRAMMING, shows("Programming (Untitled)")]
NEW_PROGRAM = [ID.CMD_NEW, asks("Create a new program file?", IDYES, "Programming (Untitled)")]
NO_TARGET = ("Target field to accept Lookup data does not exist,\nbe sure to create target field for lookup data\n"
             "before saving program.")

# --- a program of thirty fields: what the operator does, and what the file then holds beside the defaults ---

FIELDS = [
    (["Header Input", ("Prompt Text:", "STORE:"), ("Input Source:", "K"), ("Input Max:", "4"), ("Input Min:", "4"),
      ("Input Mask:", "nnnn")],
     {"flags": 0xDE, "prompt": b"STORE:", "source": "K", "max": 4, "min": 4, "mask": b"NNNN"}),
    (["Header Input", ("Input Type:", "S"), ("Stamp Commands:", "M//D//Y")],
     {"flags": 0xDE, "type": "S", "prompt": b"M/D/Y", "pattern": b"__/__/____", "mask": b"AAIAAIAAAA"}),
    (["Header Input", ("Input Type:", "N"), ("Prompt Text:", "CLERK:"), ("Default Data:", "@"), ("Prefix:", "/02/a1"),
      ("Prefix: > Delay:", "7"), ("Suffix:", "/0d"), ("Suffix: > Delay:", "12")],
     {"flags": 0xDE, "type": "N", "prompt": b"CLERK:", "default": b"@", "prefix": b"\x02\xA1", "prefix delay": 7,
      "suffix": b"\r", "suffix delay": 12}),
    ([("Input Type:", "E"), ("Exhibit Text:", "SCAN ITEMS")], {"type": "E", "prompt": b"SCAN ITEMS"}),
    (["New Screen", ("Start Row:", "1"), ("End Row:", "1"), ("Prompt Text:", "ITEM:"), ("Display Pattern:", "______"),
      "Bar Code Types...", shows("Bar Code Types"), "All", "Code 39", "UPC-A", "Exit", shows(FIELD)],
     {"flags": 0xD2, "row": 1, "end row": 1, "prompt": b"ITEM:", "pattern": b"______", "bar codes": 0x6001}),
    ([("Prompt Text:", "COLOUR:"), "Define", shows("Lookup Choice"), "Lookup Table Definition", "OK",
      shows("Lookup Table Definition"), "Accept Mismatches", "Add", ("Table Entries", "RED"), key(VK_RETURN),
      here("GREEN"), key(VK_RETURN), here("B//W"), ("Error Message", "NOT A COLOUR"), "OK", shows(FIELD)],
     {"prompt": b"COLOUR:", "lookup": b"TA,RED,GREEN,B/W,?NOT A COLOUR"}),
    ([("Prompt Text:", "PART:"), "Define", shows("Lookup Choice"), "OK", shows("Lookup File Definition"),
      "Accept Mismatches", "Partial Matches", "Lookup File Optional", ("Lookup Filename:", "PARTS"),
      ("Fields Per Record:", "2"), ("Display Field:", "2"), ("Start Row:", "0"), "Add Display Field to Data",
      "Auto Advance", ("Target Field:", "5"), "Disable View Lookup", ("Error Message", "UNKNOWN PART"), "OK",
      asks(NO_TARGET, IDOK, FIELD, "Target Field")],
     {"prompt": b"PART:", "lookup": b"FD5SAPO,PARTS,2,1,2,0,1,?UNKNOWN PART"}),
    ([("Input Source:", "L"), ("Prompt Text:", "DESC:")],
     {"flags": 0x9A, "source": "L", "prompt": b"DESC:", "bar codes": 0x8000}),
    (["Allow Calculation", "Transmit Total of Field", ("Prompt Text:", "QTY:"), ("Output Format:", "R"),
      ("Input Source:", "K")],
     {"prompt": b"QTY:", "mask": b"D", "flags 2": 0x18, "format": "R", "source": "K"}),
    ([("Prompt Text:", "PALLET:")], {"prompt": b"PALLET:", "flags": 0xDB, "roles": 0x03}),
    ([("Prompt Text:", "BOX NO:"), ("Input Mask:", "AAA")],
     {"prompt": b"BOX NO:", "mask": b"DDD", "flags 2": 0x01, "condition": b"0005"}),
    ([("Prompt Text:", "GROSS:")], {"prompt": b"GROSS:", "roles": 0x04}),
    ([("Prompt Text:", "TARE:")], {"prompt": b"TARE:", "roles": 0x48}),
    ([("Prompt Text:", "NET:")], {"prompt": b"NET:", "roles": 0x10}),
    ([("Input Type:", "Y"), ("Prompt Text:", "RECOUNT?")], {"type": "Y", "prompt": b"RECOUNT?"}),
    ([("Input Source:", "S"), ("Prompt Text:", "/1bQ/00&")], {"source": "S", "prompt": b"\x1BQ\xFF&"}),
    (["Shift Input to Upper Case", "Allow Duplicate Inputs"], {"flags": 0xFB}),
    (["Auto Advance", "Require Input", "Enable Input Transmit", "Bar Code Append"],
     {"flags": 0x88, "bar codes": 0x8003}),
    ([spin("End Row:", "up", "up", "up", "up", "down"), spin("Start Col:", "down", "up", "up"),
      spin("Input Max:", "up", "down", "down"), spin("Input Min:", "up")],
     {"end row": 3, "col": 1, "max": 249, "min": 2}),
    ([("Default Data:", "A//B/00"), ("Display Pattern:", "__/7f__")],
     {"default": b"A/B\xFF", "pattern": b"__\x7F__"}),
    ([("Prefix:", ""), edit_menu("s"), shows("Special ASCII Characters"), row(33), "Add", row(0), "Add", "Done",
      shows(FIELD)],
     {"prefix": b"\x8C\xFC"}),
    (["New Screen", ("Input Type:", "S"), ("Stamp Commands:", "hh:ii")],
     {"flags": 0xD2, "type": "S", "prompt": b"hh:ii", "pattern": b"____:____", "mask": b"AAAAIAAAA"}),
    ([("Input Type:", "E"), ("End Row:", "3"), ("Exhibit Text:", "PUT THE PORTABLE BACK INTO ITS CHARGER")],
     {"type": "E", "end row": 3, "prompt": b"PUT THE PORTABLE BACK INTO ITS CHARGER"}),
    ([("Prompt Text:", "A:"), ("End Col:", "9")], {"prompt": b"A:", "end col": 9}),
    (["New Screen", ("Prompt Text:", "B:"), ("Start Col:", "10")], {"flags": 0xD2, "prompt": b"B:", "col": 10}),
    (["New Screen", ("Start Row:", "1"), ("End Row:", "2")], {"flags": 0xD2, "row": 1, "end row": 2}),
    ([("Suffix:", ""), ("Output Format:", "L"), ("Input Min:", "0")], {"suffix": b"", "format": "L", "min": 0}),
    ([("Prompt Text:", "NINETEEN CHARACTERS")], {"prompt": b"NINETEEN CHARACTERS"}),
    ([("Suffix:", "/D3/FC")], {"suffix": b"\xD3\xFC"}),
    ([("Input Type:", "Y"), ("Input Source:", "K"), ("Default Data:", "Y")],
     {"type": "Y", "source": "K", "default": b"Y"}),
]
PROGRAM_SETTINGS = [
    ("SOF Text:", "/02BEGIN/0d"), ("SOF Delay:", "3"), ("EOF Text:", "/FB/00"), ("EOF Delay:", "12"),
    "Use Received Data Files Only", "Allow Append To End Of File", "Auto Alpha Switch",
    "Global Data Options", shows("Global Data Options"), ("Field to compare:", "10"), ("Field to increment:", "11"),
    ("Amount to increment:", "5"), ("Field One:", "12"), ("Field Two:", "13"), ("Field for Result:", "14"),
    "Subtract Field Two from Field One", "OK", shows("Programming (Untitled)"),
]
BUILT = program_file(b"BUILT", [changes for _, changes in FIELDS], counts=(3, 3, 2, 27, 25, 24), delays=(3, 12),
                     flags=0x43, sof=b"\x02BEGIN\r", eof=b"\xFB\xFF")
BUILT_ROWS = """\
  1|Header|Data|STORE:|  4|  4|   Keyboard|   Variable
  2|Header|Stamp|M//D//Y|250|  1|    Barcode|   Variable
  3|Header|No Edit|CLERK:|250|  1|    Barcode|   Variable
  4|Record|Exhibit|SCAN ITEMS|250|  1|    Barcode|   Variable
  5|Record|Data|ITEM:|250|  1|    Barcode|   Variable
  6|Record|Data|COLOUR:|250|  1|    Barcode|   Variable
  7|Record|Data|PART:|250|  1|    Barcode|   Variable
  8|Record|Data|DESC:|250|  1|Lookup File|   Variable
  9|Record|Data|QTY:|250|  1|   Keyboard|Right Justify
 10|Record|Data|PALLET:|250|  1|    Barcode|   Variable
 11|Record|Data|BOX NO:|250|  1|    Barcode|   Variable
 12|Record|Data|GROSS:|250|  1|    Barcode|   Variable
 13|Record|Data|TARE:|250|  1|    Barcode|   Variable
 14|Record|Data|NET:|250|  1|    Barcode|   Variable
 15|Record|Yes/No|RECOUNT?|250|  1|    Barcode|   Variable
 16|Record|Data|/1BQ/00&|250|  1|     Serial|   Variable
 17|Record|Data||250|  1|    Barcode|   Variable
 18|Record|Data||250|  1|    Barcode|   Variable
 19|Record|Data||249|  2|    Barcode|   Variable
 20|Record|Data||250|  1|    Barcode|   Variable
 21|Record|Data||250|  1|    Barcode|   Variable
 22|Record|Stamp|hh:ii|250|  1|    Barcode|   Variable
 23|Record|Exhibit|PUT THE PORTABLE BACK INTO ITS CHARGER|250|  1|    Barcode|   Variable
 24|Record|Data|A:|250|  1|    Barcode|   Variable
 25|Record|Data|B:|250|  1|    Barcode|   Variable
 26|Record|Data||250|  1|    Barcode|   Variable
 27|Record|Data||250|  0|    Barcode| Left Justify
 28|Record|Data|NINETEEN CHARACTERS|250|  1|    Barcode|   Variable
 29|Record|Data||250|  1|    Barcode|   Variable
 30|Record|Yes/No|Y|250|  1|   Keyboard|   Variable
<<END OF PROGRAM>>""".replace("|Yes/No|Y|", "|Yes/No||").replace("|", "\t").split("\n")

# --- the checks ---

SAVE_CHECKS = [  # the fields and options, and why they cannot be saved
    ([], "No User Input Fields Defined!"),
    ([field_at_end(), field_at_end("New Screen")], "Overlapping fields at Field #2!"),
    ([field_at_end("Define", shows("Lookup Choice"), "OK", shows("Lookup File Definition"), "Add Display Field to Data",
                   "OK", asks(NO_TARGET, IDOK, FIELD, "Target Field"))],
     "No Field for Lookup Data defined!"),
    ([field_at_end("Header Input"), field_at_end(("Lookup File/Tbl:", "FD9,PARTS,1,1,1,0,1")),
      field_at_end(("Input Source:", "L"))],
     "Lookup Data Dump Target Field\nis not the same field number as the\nfield designated to receive lookup data.\n\n"
     "Adjust target field number to exclude any header fields."),
    ([field_at_end(), "Global Data Options", shows("Global Data Options"), ("Field to compare:", "1"), "OK",
      asks("You must have a compare field\nand an increment field\nand an increment amount\n"
           "for this option to work.", IDOK, WINDOW, "Autoincrement Options")],
     "Global Data Options >>\nAutoincrement Fields not Complete."),
    ([field_at_end(), "Global Data Options", shows("Global Data Options"), ("Field for Result:", "1"), "OK",
      asks("All fields must have data\nfor this option to work.", IDOK, WINDOW, "Multiple Field Calculation Option")],
     "Multiple Field Calculation Option>>\nAll Fields not Complete."),
]
LONG_NAME = ("The Tolvan can only display filenames up to 9 characters.\nPlease reenter using a 9 character filename.")

SIZE_LABELS = ["Input Max:", "Input Min:", "Start Row:", "End Row:", "Start Col:", "End Col:"]
FIELD_CHECKS = [  # the six sizes, prompt, mask and the message
    ("1 2 0 0 0 19", "P", "A", "Max Input Value less than Min Input Value"),
    ("251 251 0 0 0 19", "P", "A", "Min Input Greater Than 250"),
    ("251 1 0 0 0 19", "P", "A", "Max Input Greater Than 250"),
    ("0 0 0 0 0 19", "P", "A", "Max Input Less Than 1"),
    ("9 1 4 2 0 19", "P", "A", "End Row less than Start Row"),
    ("9 1 1 1 5 4", "P", "A", "End Col less than Start Col"),
    ("9 1 4 4 0 19", "P", "A", "Start Row Greater Than 3"),
    ("9 1 0 4 0 19", "P", "A", "End Row Greater Than 3"),
    ("9 1 0 0 20 20", "P", "A", "Start Col Greater Than 19"),
    ("9 1 0 0 0 20", "P", "A", "End Col Greater Than 19"),
    ("9 1 0 0 0 19", "TWENTY CHARACTERS/0D", "A", "Prompt and data will not fit within start/end range"),
    ("9 4 0 0 0 19", "P", "NNNF", "Minimum Input value is greater than input allowed from Input Mask field."),
    ("9 4 0 0 0 19", "P", "AX", "Input Mask field can only contain the letters 'A', 'D', 'F', 'I', and 'N'."),
]


class ProgrammingTest(ProgramTest):
    def start(self, *script, arguments=()):
        program = self.enterContext(Program(*arguments))
        run(program, *script)
        return program

    def assert_rows(self, program, *prompts):
        self.assertEqual([shown.split("\t")[3] for shown in rows(program)[:-1]], list(prompts))
        self.assertEqual(rows(program)[-1], END_ROW)

    def test_thirty_fields_from_nothing(self):
        self.maxDiff = None
        path = self.folder / "built"
        program = self.start(START, [field_at_end(*script) for script, _ in FIELDS], PROGRAM_SETTINGS)
        self.assertEqual(rows(program), BUILT_ROWS)
        run(program, ID.CMD_SAVE, shows("Save As"), path, shows("Programming (BUILT)"))
        self.assertEqual(path.with_suffix(".pgt").read_bytes(), BUILT)
        run(program, ID.CMD_EXIT, START, opens(path.with_suffix(".pgt"), "Programming (BUILT)"))
        self.assertEqual(rows(program), BUILT_ROWS)
        run(program, ID.CMD_SAVE, shows("Save As"), self.folder / "again", shows("Programming (AGAIN)"))
        self.assertEqual((self.folder / "again.pgt").read_bytes()[20:-2], BUILT[20:-2])

    def test_questions(self):
        cancels = "Cancel Current Definition Changes?"
        changed = "Save Changed Field Definition?"
        delete = "Delete Field Definition #2?"
        insert = "Insert New Field Definition Before Field Definition #2?"
        leave = "Save File Changes?"
        x = ("Prompt Text:", "X")
        program = self.start(
            START, "Insert", shows("Field Definition #1"), "Cancel",
            asks(cancels, IDNO, "Field Definition #1", DEFINITION), "Done", saves_new(IDNO), ID.CMD_EXIT, START,
            field_at_end(("Prompt Text:", "A")),
            row(0), "Insert", shows("Field Definition #2"), "Previous", saves_new(IDNO, "Field Definition #1"),
            "Cancel", shows(WINDOW), field_at_end(("Prompt Text:", "C")),
            row(2), "Insert", asks(insert, IDNO, WINDOW), "Insert", asks(insert, IDYES, "Field Definition #2"),
            "Next", saves_new(IDNO, "Field Definition #2"), holds(("Prompt Text:", "C")), x,
            "Previous", asks(changed, IDNO, "Field Definition #1", DEFINITION), holds(("Prompt Text:", "A")),
            "Next", shows("Field Definition #2"), holds(("Prompt Text:", "C")), x,
            "Cancel", asks(cancels, IDNO, "Field Definition #2", DEFINITION), holds(x),
            "Done", asks(changed, IDNO, WINDOW, DEFINITION))
        self.assert_rows(program, "A", "C")
        run(program, row(1), "Edit", shows("Field Definition #1"), x, "Next",
            asks(changed, IDYES, "Field Definition #2", DEFINITION), "Done", shows(WINDOW),
            "Delete", asks(delete, IDNO, WINDOW))
        self.assert_rows(program, "X", "C")
        run(program, row(2), key(VK_DELETE), asks(delete, IDYES, WINDOW))
        self.assert_rows(program, "X")
        run(program, row(2), key(VK_INSERT), shows("Field Definition #2"), "Cancel",
            asks(cancels, IDYES, WINDOW, DEFINITION),
            ID.CMD_NEW, asks("Create a new program file?", IDNO, WINDOW),
            ID.CMD_OPEN, asks(leave, IDCANCEL, WINDOW),
            ID.CMD_OPEN, asks(leave, IDNO, "Open"), IDCANCEL, shows(WINDOW),
            ID.CMD_EXIT, asks(leave, IDCANCEL, WINDOW), ID.CMD_EXIT, asks(leave, IDYES, "Save As"), IDCANCEL, shows(WINDOW))
        self.assert_rows(program, "X")
        run(program, NEW_PROGRAM)
        self.assert_rows(program)
        run(program, field_at_end(x), ID.CMD_EXIT, asks(leave, IDYES, "Save As"), self.folder / "x", shows(MAIN))
        self.assertEqual((self.folder / "x.pgt").read_bytes(), program_file(b"X", [{"prompt": b"X"}]))

    def test_save_checks(self):
        program = self.start(START)
        refused = "Cannot Save Program File.\n"
        for script, message in SAVE_CHECKS:
            with self.subTest(message):
                run(program, script, ("SOF Text:", "KEPT"))
                before = rows(program)
                run(program, ID.CMD_SAVE, shows("Save As"), self.folder / "checked",
                    asks(refused + message, IDOK, "Programming (CHECKED)", "Save File"), holds(("SOF Text:", "KEPT")))
                self.assertEqual(rows(program), before)
                self.assertEqual(os.listdir(self.folder), [])
                run(program, NEW_PROGRAM)
        (self.folder / "folder.pgt").mkdir()
        run(program, field_at_end(("Prompt Text:", "KEPT")),
            ID.CMD_SAVE, shows("Save As"), self.folder / "folder",
            shows(TITLE, windows_path(self.folder / "folder.pgt") + " already exists.\nDo you want to replace it?"), IDYES,
            asks(refused + "File Creation Error!", IDOK, "Programming (FOLDER)", "Save File"),
            ID.CMD_SAVE, shows("Save As"), self.folder / "tenletters.pgt",
            asks(LONG_NAME, IDOK, "Save As", "Filename Size Error"), IDCANCEL, shows("Programming (FOLDER)"))
        self.assert_rows(program, "KEPT")
        self.assertEqual(os.listdir(self.folder), ["folder.pgt"])
        full = self.file("full.pgt", program_file(b"FULL", [{}] * 250))
        too_many = asks("Maximum number of Field Definitions allowed is 250.", IDOK, WINDOW, DEFINITION)
        run(program, NEW_PROGRAM, opens(full, "Programming (FULL)"), "Insert", too_many, row(0), "Insert", too_many)
        self.assertEqual(len(rows(program)), 251)

    def test_field_checks(self):
        program = self.start(START, "Insert", shows(FIELD))
        save = ["Done", shows(DEFINITION, "Save New Field Definition?"), IDYES]
        for sizes, prompt, mask, message in FIELD_CHECKS:
            with self.subTest(message):
                edits = [*zip(SIZE_LABELS, sizes.split()), ("Prompt Text:", prompt), ("Input Mask:", mask)]
                run(program, *edits, save, asks(message, IDOK, FIELD, DEFINITION), holds(*edits))
        kept = [("Allow Calculation", True), ("Input Mask:", "A"), ("Header Input", True), ("Input Type:", "Data")]
        run(program, "Allow Calculation", ("Input Mask:", "A"), save,
            asks("When Allow Calculation is ON\nInput Mask must be Decimal.", IDOK, FIELD, "Input Mask Error"),
            "Header Input", ("Input Type:", "E"),
            asks("Header Input can not be\nof Input Type EXHIBIT.", IDOK, FIELD, "Field Definition Error"), holds(*kept),
            ("Input Min:", "1"), "Allow Calculation", save, shows(WINDOW))
        self.assert_rows(program, "P")

    def test_opening_from_the_command_line(self):
        records = [{"prompt": b"FIRST"}, {"prompt": b"SECOND"}]
        path = self.file("started.pgt", program_file(b"STARTED", records))
        (self.folder / "two words").mkdir()
        blank = self.file("two words/a b.pgt", path.read_bytes())
        for argument in (path, blank):
            with self.subTest(argument), Program("-F=" + windows_path(argument)) as program:
                run(program, shows("Programming (STARTED)"))
                self.assert_rows(program, "FIRST", "SECOND")
        program = self.start(asks("Cannot Open Program File!", IDOK, "Invalid/Corrupt", "Open File"),
                             IDOK, shows("Programming (Untitled)"), opens(path),
                             arguments=["-F=" + windows_path(self.folder / "missing.pgt")])
        self.assert_rows(program, "FIRST", "SECOND")

    def test_opening_what_is_no_program(self):
        records = [{"prompt": b"KEPT"}, {"prompt": b"TOO"}]
        good = program_file(b"GOOD", records)
        library = "This version cannot take a file out of a library yet.\nIf the file is no library, it is damaged."
        earlier = ("This version cannot read files of the Quendal terminal yet.\n"
                   "If the file is a Tolvan file, it is damaged.")
        program = self.start(START, opens(self.file("good.pgt", good), "Programming (GOOD)"))
        for name, content, message in (("cut.pgt", good[:-9], library), ("text.pgt", b"no program at all", earlier),
                                       ("setup.pgt", good.replace(b"I", b"S", 1), None), ("empty.pgt", b"", earlier)):
            with self.subTest(name):
                run(program, opens(self.file(name, content), "*"), message and asks(message, IDOK, "*", "Open File") or [],
                    asks("Invalid/Corrupt Program File!", IDOK, "Programming (Untitled)", "Invalid/Corrupt"))
                self.assert_rows(program)
                run(program, opens(self.folder / "good.pgt", "Programming (GOOD)"))
                self.assert_rows(program, "KEPT", "TOO")
        ten = self.file("tenletters.pgt", good)
        run(program, opens(ten, "Filename Size Error"), asks(LONG_NAME, IDOK, "Open", "Filename Size Error"),
            self.folder / "good.pgt", shows("Programming (GOOD)"))
        self.assert_rows(program, "KEPT", "TOO")
        run(program, opens(self.file("damaged.pgt", good[:-1] + b"?"), "Invalid Checksum"),
            asks("Invalid Checksum in Program File!", IDOK, WINDOW, "Invalid Checksum"),
            ID.CMD_SAVE, shows("Save As"), self.folder / "good.pgt", shows("Error"), IDYES, shows("Programming (GOOD)"))
        self.assertEqual((self.folder / "good.pgt").read_bytes(), good)
