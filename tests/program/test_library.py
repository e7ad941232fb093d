"""The librarian, and libraries in the three openers that take a file out of one."""

import pathlib

from desktop import (IDCANCEL, IDNO, IDOK, IDYES, VK_DELETE, VK_DOWN, VK_END, VK_ESCAPE, VK_INSERT, VK_RETURN, VK_UP,
                     Window)
from looks import looks
from script import ScriptTest, asks, holds, key, row, run, shows, the_list
from test_files import double_click, system_file
from tolvan import ID, PREFIX, ROOT, TITLE, windows_path

MAIN, LIBRARIAN, LOOKUP = TITLE + " (Default)", "Librarian", "Lookup File Editor"
EXTRACTION, INVALID, END = "File Extraction", "Invalid/Corrupt", "<<END OF LIST>>"
LB_GETCURSEL, TB_ISBUTTONENABLED = 0x188, 0x409
SAMPLE, SAMPLE_SETUP = ((ROOT / "samples" / name).read_bytes() for name in ("STOCK.PGT", "STOCK.CFT"))
PRICES = system_file(b"NINELONGS", [b"ONE", b"TWO"])
START = [shows(MAIN), ID.CMD_LIBRARIAN, shows(LIBRARIAN)]


def adds(path, button="Add"):
    return [button, shows("Open"), path, shows(LIBRARIAN)]


def opens(path, then=LIBRARIAN):
    return [ID.CMD_OPEN, shows("Open"), path, shows(then)]


def saves(path, then=LIBRARIAN):
    return [ID.CMD_SAVE, shows("Save As"), path, shows(then)]


def deletes(answer, delete="Delete"):
    return [delete, asks("? Delete File from Library?", answer, LIBRARIAN)]


def leaves(answer, then):
    return [ID.CMD_EXIT, asks("? Save Library Changes?", answer, then)]


def lists(*rows):
    def compare(program):
        assert the_list(program).entries() == [*rows, END], the_list(program).entries()
    return compare


def is_at(state):
    """The files, each by its first letter, and the selected row; then what is enabled: I and D for the buttons, S and s
    for Save in the menu and the toolbar."""
    def compare(program):
        screen, files = program.screen, the_list(program)
        enabled = {"I": screen.button("Insert").enabled(), "D": screen.button("Delete").enabled(),
                   "S": Window(screen.get("GetMenu")).get("GetMenuState", ID.CMD_SAVE, 0) == 0,
                   "s": screen.control(ID.ID_FILE_TOOLBAR).send(TB_ISBUTTONENABLED, ID.CMD_SAVE)}
        names = [pathlib.PureWindowsPath(name).name for name in files.entries()[:-1]]
        selected, marks = files.send(LB_GETCURSEL), filter(enabled.get, enabled)
        held = " ".join(("".join(name[0] for name in names), str(selected), "".join(marks)))
        assert held == state, f"{held!r} instead of {state!r}"
    return compare


class LibraryTest(ScriptTest):
    def test_building_and_changing(self):
        program, lookup, setup, bad = (self.file(name, content) for name, content in (
            ("STOCK.PGT", SAMPLE + b"\0" * 77), ("NINELONGS.LKT", PRICES), ("my shop.CFT", SAMPLE_SETUP),
            ("bad.lbt", b"\1\1\1\1?")))
        new, blocked = "? Create a new library file?", self.folder / "~TOLVAN0.TMP"
        self.start(
            START, is_at(" 0 "), adds(lookup), is_at("N 0 IDSs"), row(1), adds(program, "Insert"), is_at("SN 0 IDSs"),
            adds(setup), looks, saves(self.folder / "my shop"), row(1), key(VK_END), is_at("SNm 3 Ss"), key(VK_DELETE),
            adds(program, key(VK_INSERT)), is_at("SNmS 3 IDSs"), deletes(IDNO, key(VK_DELETE)), is_at("SNmS 3 IDSs"),
            deletes(IDYES, key(VK_DELETE)), is_at("SNm 2 IDSs"), leaves(IDNO, MAIN),
            START, opens(self.folder / "my shop.lbt"), lists("STOCK.PGT", "NINELONGS.LKT", "my shop.CFT"),
            is_at("SNm 0 IDSs"), row(2), deletes(IDYES), is_at("Sm 1 IDSs"), lambda _: blocked.mkdir(),
            leaves(IDYES, "Save As"), IDOK, shows("File Error", "! Could not Save Library File!"), IDOK,
            shows(LIBRARIAN), leaves(IDCANCEL, LIBRARIAN), lambda _: blocked.rmdir(), leaves(IDYES, "Save As"), IDOK,
            START, opens(self.folder / "myshop.lbt"), is_at("S 0 IDSs"), deletes(IDYES), is_at(" 0 "),
            opens(self.folder / "my shop.lbt"), ID.CMD_NEW, asks(new, IDNO, LIBRARIAN), is_at("SNm 0 IDSs"),
            ID.CMD_NEW, asks(new, IDYES, LIBRARIAN), is_at(" 0 "), opens(self.folder / "my shop.lbt"),
            opens(bad, INVALID), asks("! Invalid/Corrupt Library File!", IDOK, LIBRARIAN, INVALID), is_at(" 0 "),
            ID.CMD_EXIT, shows(MAIN))
        self.assert_holds("my shop.lbt", SAMPLE + PRICES + SAMPLE_SETUP)
        self.assert_holds("myshop.lbt", SAMPLE + SAMPLE_SETUP)

    def test_most_files(self):
        setup, library, saved = (self.folder / name for name in ("full.CFT", "full.lbt", "saved.lbt"))
        setup.write_bytes(SAMPLE_SETUP)
        library.write_bytes(199 * SAMPLE_SETUP)
        full = [shows(LIBRARIAN, "X Maximum number of files allowed is 200."), key(VK_RETURN), shows(LIBRARIAN)]
        self.start(
            START, opens(library), adds(setup), is_at("f" * 200 + " 199 IDSs"), "Add", full,
            row(1), key(VK_INSERT), full, saves(saved), lambda _: self.assert_holds(saved, 200 * SAMPLE_SETUP),
            lambda _: setup.unlink(), saves(library, "Error"), IDYES, asks(
                f"! The file {windows_path(setup)} not found. Could not add to Library!", IDOK, LIBRARIAN,
                "File Not Found"))
        self.assert_holds(library, 199 * SAMPLE_SETUP)

    def test_taking_files_out(self):
        library = self.file("shop.lbt", SAMPLE + PRICES + SAMPLE_SETUP + b"\0" * 77)
        choice = [shows(EXTRACTION), lists("Program (STOCK)", "Lookup (NINELONGS)", "Setup")]
        nothing = [key(VK_END, VK_RETURN), double_click, shows(EXTRACTION), lambda program: self.assertFalse(
            program.screen.button("Open").enabled())]
        left_over = set(PREFIX.glob("drive_c/**/TLV*.tmp"))
        program = self.start()
        for enter, window, cancel, wrong, refusal, caption, right, then in (
                ([ID.CMD_PROGRAMMING], "Programming (*)", "Cancel", [row(2), "Open"],
                 "! Invalid/Corrupt Program File!", INVALID, [key(VK_RETURN)],
                 [shows("Programming (STOCK)"), IDCANCEL]),
                ([ID.CMD_LOOKUP_EDITOR], LOOKUP, key(VK_ESCAPE), [key(VK_END, VK_UP), "Open"],
                 "! Invalid Lookup File!", INVALID, [key(VK_DOWN), double_click],
                 [shows(LOOKUP), holds("Lookup Filename: NINELONG|1: ONE|2: TWO"), IDCANCEL]),
                ([], MAIN, [nothing, "Cancel"], "Open", "! Not a Valid Setup File!", "Open File", [row(3), "Open"],
                 [shows(TITLE + " (shop.lbt)"), ID.CMD_SAVE_SETUP, shows("Save As"), self.folder / "out",
                  shows(TITLE + " (out.cft)")])):
            takes = [ID.CMD_OPEN if enter else ID.CMD_OPEN_SETUP, shows("Open"), library, choice]
            run(program, shows(MAIN), enter, shows(window), takes, cancel, shows(window), takes, wrong,
                asks(refusal, IDOK, window, caption), takes, right, then)
        self.assert_holds("out.cft", SAMPLE_SETUP)
        self.assertEqual(set(PREFIX.glob("drive_c/**/TLV*.tmp")), left_over)
