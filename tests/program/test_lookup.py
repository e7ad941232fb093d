"""The definitions of a field's lookup, each written as a text that the field then holds."""

from desktop import IDOK, IDYES, VK_DOWN, VK_RETURN, VK_TAB, VK_UP, focused, settle
from script import ScriptTest, asks, disabled, holds, key, row, shows
from test_programming import (FIELD, FILE, START, TABLE, WARNS_OF_TARGET, WINDOW, defines, done_changed, opens,
                              program_file, saves)
from tolvan import ROOT

WM_SYSCHAR, WM_VSCROLL, SB_LINEDOWN, SB_THUMBPOSITION = 0x106, 0x115, 1, 4


def scroll(code, place=0):
    return lambda program: program.screen.post(WM_VSCROLL, code | place << 16)


def has_rows(rows):
    """Compares the rows of a table; a star is where the focus is."""
    def compare(program):
        settle()
        edits = [child for child in program.screen.children() if child.kind() == "Edit"][:6]
        shown = "|".join(edit.text() + "*" * (focused() == edit) for edit in edits)
        assert shown == rows, (shown, rows)
    return compare


LONG, MESSAGE = b"T," + b"x" * 240, "m" * 40
LOOKUPS = [  # of a field, what the operator does, and what the field then holds
    (b"ta,A,B,C,D,E,F,G,?\r", [
        "Define", shows(TABLE), key(*[VK_DOWN] * 7), has_rows("B|C|D|E|F|G*"), key(VK_RETURN), has_rows("C|D|E|F|G|*"),
        key(","), has_rows("C|D|E|F|G|,*"), key(VK_UP), has_rows("C|D|E|F|G*|"),  # and one more empty entry below
        [scroll(SB_LINEDOWN)] * 3, has_rows("E|F|G||*|< End of Entries >"),
        scroll(SB_THUMBPOSITION, 2), has_rows("B|C|D|E|F*|G"), "Insert", has_rows("B|C|D|E|*|F"),
        "Delete|Delete", has_rows("B|C|D|E|G*|"), lambda _: focused().post(WM_SYSCHAR, ord("d")),
        has_rows("B|C|D|E|*|"), key(VK_TAB, VK_TAB), has_rows("B|C|D|E||"), key(VK_RETURN),  # on Insert
        has_rows("B|C|D|E||*"), key(*[VK_UP] * 7), has_rows("A*|B|C|D|E|"), "Add", has_rows("D|E||||*"),
        "Partial Matches", has_rows("D|E||||"), disabled("Insert|Delete"), "OK"], b"TAP,A,B,C,D,E,,,,,?\r"),
    (LONG + b",y", [  # there is room for seven characters, and then for nothing
        "Define", shows(TABLE), key(VK_DOWN, "123456789"), "Accept Mismatches|Add|Error Message: m", key(VK_RETURN)],
     LONG + b",1234567"),
    (b"fd3s,PARTS,2,,9", [
        "Define", shows(FILE), holds("Error Message Display: Input Not Found In  "),
        "Lookup Filename", shows("Open"), ROOT / "PARTSLIST", shows(FILE), holds("Lookup Filename: PARTSLIS"),
        "Lookup Filename: ,?|Start Row: 4", "OK",
        asks("X Start Row/End Row Greater than 3", IDOK, FILE, FILE),
        f"Start Row: |Target Field: 07|Disable View Lookup|Error Message: {MESSAGE}x",
        holds("Error Message Display: " + MESSAGE[:20]), key(VK_RETURN), WARNS_OF_TARGET],
     b"FD07S,PARTSLIS,2,1,9,1,1,?" + MESSAGE.encode()),
    (b"", [defines(TABLE)[:2], key(VK_DOWN, VK_RETURN), shows(TABLE), "OK"], b"T")]


class LookupTest(ScriptTest):
    def test_definitions(self):
        kept, *befores = (dict(lookup=text) for text in (b"ta,A", *(before for before, _, _ in LOOKUPS)))
        path = self.file("a.pgt", program_file(b"A", [kept, *befores, {}], flags=0x22))
        self.start(
            START, opens(path, "Programming (A)"), row(1), "Edit", shows(FIELD), "Define", shows(TABLE), "OK",
            shows(FIELD), "Next", shows(FIELD),
            [[script, shows(FIELD), "Next", done_changed(IDYES, FIELD)] for _, script, _ in LOOKUPS],
            "Done", shows(WINDOW), saves(self.folder / "b", "Save File"),
            asks("! Cannot Save Program File.\nNo Field for Lookup Data defined!", IDOK, WINDOW, "Save File"),
            "Edit", shows(FIELD), "Input Source: L", "Done", done_changed(IDYES), saves(self.folder / "b", "*(B)"))
        changed = [dict(lookup=after) for _, _, after in LOOKUPS]
        self.assert_holds("b.pgt", program_file(b"B", [
            kept, *changed, dict(source="L", flags=0x9A, bar_codes=0x8000)]))
