"""The librarian, and libraries in the three openers that take a file out of one."""

from desktop import IDCANCEL, IDNO, IDOK, IDYES
from script import ScriptTest, asks, holds, row, run, shows, the_list
from test_files import system_file
from tolvan import ID, PREFIX, ROOT, TITLE

MAIN, LIBRARIAN, LOOKUP = TITLE + " (Default)", "Librarian", "Lookup File Editor"
EXTRACTION, INVALID, END = "File Extraction", "Invalid/Corrupt", "<<END OF LIST>>"
SAMPLE, SAMPLE_SETUP = ((ROOT / "samples" / name).read_bytes() for name in ("STOCK.PGT", "STOCK.CFT"))
PRICES = system_file(b"NINELONGS", [b"ONE", b"TWO"])
DELETE = "? Delete File from Library?"
START = [shows(MAIN), ID.CMD_LIBRARIAN, shows(LIBRARIAN)]


def adds(path, button="Add"):
    return [button, shows("Open"), path, shows(LIBRARIAN)]


def opens(path, then=LIBRARIAN):
    return [ID.CMD_OPEN, shows("Open"), path, shows(then)]


def saves(path, then=LIBRARIAN):
    return [ID.CMD_SAVE, shows("Save As"), path, shows(then)]


def lists(*rows):
    def compare(program):
        assert the_list(program).entries() == [*rows, END], the_list(program).entries()
    return compare


class LibraryTest(ScriptTest):
    def test_building_and_changing(self):
        program, lookup, setup = (self.file(name, content) for name, content in (
            ("STOCK.PGT", SAMPLE + b"\0" * 77), ("NINELONGS.LKT", PRICES), ("my shop.CFT", SAMPLE_SETUP)))
        self.start(
            START, adds(lookup), row(1), adds(program, "Insert"), adds(setup), saves(self.folder / "my shop"),
            ID.CMD_EXIT, START, opens(self.folder / "my shop.lbt"), lists("STOCK.PGT", "NINELONGS.LKT", "my shop.CFT"),
            row(2), "Delete", asks(DELETE, IDNO, LIBRARIAN), "Delete", asks(DELETE, IDYES, LIBRARIAN), ID.CMD_EXIT,
            shows(TITLE, "? Save Library Changes?"), IDYES, shows("Save As"), IDOK, shows(MAIN))
        self.assert_holds("my shop.lbt", SAMPLE + PRICES + SAMPLE_SETUP)
        self.assert_holds("myshop.lbt", SAMPLE + SAMPLE_SETUP)

    def test_taking_files_out(self):
        library = self.file("shop.lbt", SAMPLE + PRICES + SAMPLE_SETUP + b"\0" * 77)
        choice = [shows(EXTRACTION), lists("Program (STOCK)", "Lookup (NINELONGS)", "Setup")]
        left_over = set(PREFIX.glob("drive_c/**/TLV*.tmp"))
        program = self.start()
        for enter, window, wrong, refusal, caption, right, then in (
                ([ID.CMD_PROGRAMMING], "Programming (*)", 2, "! Invalid/Corrupt Program File!", INVALID, 1,
                 [shows("Programming (STOCK)"), IDCANCEL]),
                ([ID.CMD_LOOKUP_EDITOR], LOOKUP, 3, "! Invalid Lookup File!", INVALID, 2,
                 [shows(LOOKUP), holds("Lookup Filename: NINELONG|1: ONE|2: TWO"), IDCANCEL]),
                ([], MAIN, 1, "! Not a Valid Setup File!", "Open File", 3,
                 [shows(TITLE + " (shop.lbt)"), ID.CMD_SAVE_SETUP, shows("Save As"), self.folder / "out",
                  shows(TITLE + " (out.cft)")])):
            takes = [ID.CMD_OPEN if enter else ID.CMD_OPEN_SETUP, shows("Open"), library, choice]
            run(program, shows(MAIN), enter, shows(window), takes, "Cancel", shows(window), takes, row(wrong), "Open",
                asks(refusal, IDOK, window, caption), takes, row(right), "Open", then)
        self.assert_holds("out.cft", SAMPLE_SETUP)
        self.assertEqual(set(PREFIX.glob("drive_c/**/TLV*.tmp")), left_over)
