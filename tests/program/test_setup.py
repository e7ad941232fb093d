"""The portable's setup dialogs: what each stores in a setup file, down to the last byte, and what it leaves alone."""

import re

from desktop import IDOK, VK_RETURN, VK_TAB
from script import ScriptTest, closes, holds, key, row, run, shows, spin, step_by_keys
from test_shell import setup_file
from tolvan import ID, TITLE

ITEMS_OFFSET, FLAGS_END, ITEMS_END, TEXT_COUNT = 5, 18, 73, 6
BOX = re.compile(r"(\d+)\.(\d+) ([^|]+)")

SPECIAL = [ID.CMD_SPECIAL_ASCII, shows("Special ASCII Characters"), row(33), "Add", row(0), "Add|Done"]
LONG_PREAMBLE = "/1B///E9/0D" + "p" * 238  # of the 250 characters that can be typed, in their normal form

# Each dialog: its boxes, each behind the offset of its item and its bit; what is done to its other controls; and by
# offset the items before and after both. Flags without a box are set and stay so; some items are in no list or range.
SCREENS = {
    "Code 39 Options": (ID.CMD_CODE39, "5.1 Allow Decode|5.8 Full ASCII|5.2 Check Digit|5.4 Send Check|"
                        "5.16 Concatenate", [], {5: "EA F5"}),
    "UPC Options": (ID.CMD_UPC, "6.1 Allow Decode|6.32 Expand UPCE|6.64 Expand UPCA|6.2 UPCA #System|"
                    "6.4 UPCE #System|6.8 UPCA Check Digit|6.16 UPCE Check Digit", [], {6: "AA D5"}),
    "EAN Options": (ID.CMD_EAN, "7.1 Allow Decode|7.32 EAN8 Zero Fill|7.2 EAN13 Country Code|7.4 EAN8 Country Code|"
                    "7.8 EAN13 Check Digit|7.16 EAN8 Check Digit|7.64 ISBN Number Convert", [], {7: "D5 AA"}),
    "UPC/EAN Addon Options": (ID.CMD_ADDONS, "8.1 Allow Decode|8.2 2 Digit|8.4 5 Digit|8.8 UPC Supplement|"
                              "8.16 EAN Supplement|8.32 Bookland Supplement|8.64 Send Space", [], {8: "B3 CC"}),
    "Interleaved 2 of 5 Options": (  # the two check digits exclude each other
        ID.CMD_I2OF5, "9.1 Allow Decode|9.8 OPCC Check Digit|9.2 USS Check Digit|9.4 Send Check|9.16 Fixed Size|"
        "9.10 OPCC Check Digit|9.10 USS Check Digit",
        [spin("Fixed Size 1", "+"), spin("Fixed Size 2", "++-"), spin("Fixed Size 3", "-")], {9: "E93B0701 F63C0900"}),
    "Codabar Options": (ID.CMD_CODABAR, "13.1 Allow Decode|13.4 Start/Stop|13.8 CLSI Format|13.16 CLSI Check Digit",
                        [], {13: "E7 FA"}),
    "Code 128 Options": (ID.CMD_CODE128, "14.1 Allow Decode|14.2 UCC Verify|14.4 Send Mod 10", [], {14: "FA FD"}),
    "Code 93 Options": (ID.CMD_CODE93, "15.1 Allow Decode|15.16 Concatenate", [], {15: "FE EF"}),
    "MSI/PLESSEY Options": (ID.CMD_MSI_PLESSEY, "16.1 Allow Decode|16.2 2 Check Digit|16.4 Mod 11 Check Digit|"
                            "16.8 Send Check 1|16.16 Send Check 2|16.32 ISBN", [], {16: "D6 E9"}),
    "Code11 Options": (ID.CMD_CODE11, "17.1 Allow Decode|17.2 2 Check Digit|17.8 Send Check 1|17.16 Send Check 2",
                       [], {17: "EE F5"}),
    "Preamble/Postamble Options": (  # the postamble's edit is not left before Enter ends the dialog
        ID.CMD_AMBLES, "",
        [spin("Preamble Send Delay", "-"), spin("Postamble Send Delay", "+++"), "Preamble: /1b/G //\xE9/0d" + "p" * 239,
         key(VK_TAB), holds(f"Preamble: {LONG_PREAMBLE}"), "Postamble: /0d/00" + "q" * 28], {21: "7807 770A"}),
    "Term Char Options": (ID.CMD_TERMCHAR, "20.1 Termination Overide", ["Termination Character: T",
                          spin("User Termination", "+")], {18: "097F02770A 018C000000"}),
    "Bar Code Edit Options": (ID.CMD_BAR_EDIT, "23.1 Editing|26.1 Space Strip", [spin("Leading Strip", "-"),
                              spin("Trailing Strip", "++"), "Code: A"], {23: "001F000104 011E02000B"}),
    "Bar Code Beep Options": (ID.CMD_BAR_BEEPER, "", ["Tone: H|Length: S"], {28: "0003 0300"}),
    "Laser/CCD Options": (
        ID.CMD_LASER_CCD, "", [spin("Timeout", "+"), "Continuous", spin("Read Delay", "++")], {30: "000309 01020B"}),
    "Other Options": (ID.CMD_BAR_OTHER, "33.1 Bar Code ID|34.1 Duplicate Reads|35.1 F1-F10 Keys|36.1 Special Keys",
                      [spin("Read Verify #", "--")], {33: "0001FF00 01000001", 72: "05 03"}),
    "Communications Setup": (
        ID.CMD_SETUP_TRANSMIT, "64.1 Modem Time Out",
        ["Data: S|Mode: M|Dialing: T|Protocol: X|Baud Rate: 2|Data Bits: 7|Parity: O|Stop Bits: 2|Flow Control: R",
         spin("Char Delay", "+"), spin("SOT Delay", "-"), spin("EOT Delay", "+"), "Phone Number: 9,/0D" + "5" * 25,
         "Modem Init: AT//" + "Z" * 96, "SOT Text: /00/0d//" + "S" * 243, "EOT Text: " + "E" * 244, SPECIAL,
         shows("Communications Setup"), holds("SOT Text: /00/0D//" + "S" * 242)],
        {53: "0001010001080002000901000A62 0103000100030101010A00010963", 69: "01 02"}),
    "Other Setup": (
        ID.CMD_SETUP_OTHER, "38.1 Password|39.1 Auto Input|40.1 Auto Save|42.1 Overwrite|43.1 Halt On Error|"
        "44.1 Wedge Keypad|67.1 Keypad Beep",
        [spin("Timeout", "-"), spin("View Delay", "+"), spin("LCD Contrast", "++"), "Left Trigger: L|Right Trigger: A"],
        {37: "0100010013000101 0001000114010000", 67: "0231 0033", 70: "0002 0201"}),
    "Keyboard Wedge Setup": (ID.CMD_WEDGE, "49.1 Auto Caps|50.1 Caps Lock|51.1 Num Lock|52.1 Scan Code set #3",
                             ["Type: I|Version: G|Output: F"], {46: "03040200010001 00020001000100"}),
    "Non Portable Mode": (ID.CMD_NON_PORTABLE, "", ["Keyboard Wedge"], {45: "01 00"}),
}
CLEARED = {"Term Char Options": (21, 22), "Communications Setup": (57, 63)}  # by OK alone

# By the dialog, the place of its first text and its texts before and after, all as long as they can be.
TEXTS = {
    "Preamble/Postamble Options": (
        0, [b"/02//" + b"P" * 24 + b"/0D", b"//" * 16], [LONG_PREAMBLE[:32].encode(), b"/0d/00" + b"q" * 26]),
    "Communications Setup": (
        2, [b"&/0D" + b"9" * 25, b"AT//&" + b"X" * 94, bytes(range(1, 251)), b"\xFF/" + b"\x80" * 248],
        [b"9,/0D" + b"5" * 24, b"AT//" + b"Z" * 95, b"\xFF\r/" + b"S" * 242, b"E" * 244 + b"\x8C\xFC"]),
}

# By the dialog, each stepped value: its offset, and from where two steps go to where, up and down, with what is shown.
TENTHS, PERCENT = [(98, 99, "9.9s"), (1, 0, "0.0s")], [(98, 99, "99"), (1, 0, "0")]
SIZE, STRIP = [(59, 60, "60"), (1, 0, "0")], [(29, 30, "30"), (1, 0, "0")]
LIMITS = {
    "Interleaved 2 of 5 Options": {f"Fixed Size {number}": (9 + number, *SIZE) for number in (1, 2, 3)},
    "Preamble/Postamble Options": {"Preamble Send Delay": (21, *TENTHS), "Postamble Send Delay": (22, *TENTHS)},
    "Term Char Options": {"User Termination": (19, (0xF8, 0xF9, "F9H"), (1, 0, "00H"))},
    "Bar Code Edit Options": {"Leading Strip": (24, *STRIP), "Trailing Strip": (25, *STRIP)},
    "Laser/CCD Options": {"Timeout": (30, (8, 9, " 9s"), (1, 0, "OFF")), "Read Delay": (32, *TENTHS)},
    "Other Options": {"Read Verify #": (72, (8, 0, "0"), (1, 9, "9"))},
    "Communications Setup": {"SOT Delay": (65, *TENTHS), "EOT Delay": (66, *TENTHS),
                             "Char Delay": (62, (98, 99, "99ms"), (1, 0, "00ms"))},
    "Other Setup": {"Timeout": (37, (59, 60, "60m"), (1, 0, "OFF")), "View Delay": (41, *TENTHS),
                    "LCD Contrast": (68, *PERCENT)},
}


class SetupDialogTest(ScriptTest):
    def setUp(self):
        super().setUp()
        self.items, self.texts = bytearray(ITEMS_END), [b""] * TEXT_COUNT  # the items by their offsets
        for title in reversed(SCREENS):
            self.apply(title, 0)
        self.program = self.start(shows(f"{TITLE} (Default)"))

    def apply(self, title, when):
        """What stands in the file before (0) or after (1) a dialog's controls were changed."""
        for offset, values in SCREENS[title][-1].items():
            value = bytes.fromhex(values.split()[when])
            self.items[offset:offset + len(value)] = value
        if title in TEXTS:
            first, *values = TEXTS[title]
            self.texts[first:first + len(values[when])] = values[when]

    def content(self):
        return setup_file(self.items[ITEMS_OFFSET:], b"".join(text + b"\0" for text in self.texts))

    def open_file(self, name):
        path = self.file(name, self.content())
        run(self.program, ID.CMD_OPEN_SETUP, shows("Open"), path, shows(f"{TITLE} ({name})"))

    def use(self, title, *script):
        run(self.program, SCREENS[title][0], shows(title), *script, shows(f"{TITLE} (*.cft)"))

    def confirm(self, title, *script):
        self.use(title, *script)
        for offset in CLEARED.get(title, ()):
            self.items[offset] = 0

    def assert_saves(self, *what):
        """The first fault ends a test: the dialogs work on one setup, so it would be blamed on those that follow."""
        name = re.sub(r"\W", " ", f"{len(list(self.folder.iterdir()))} {what}") + ".cft"
        run(self.program, ID.CMD_SAVE_SETUP, shows("Save As"), self.folder / name, shows(f"{TITLE} ({name})"))
        self.assert_holds(name, self.content())

    def test_cancel_ok_and_change_of_everything(self):
        self.open_file("start.cft")
        for title, (_, boxes, others, _) in SCREENS.items():
            change = [caption for _, _, caption in BOX.findall(boxes)] + others
            self.use(title, change, "Cancel")
            self.use(title, change, closes)
            self.assert_saves(title, "Cancel")
            self.confirm(title, "OK")
            self.assert_saves(title, "OK")
            self.use(title, change, IDOK)
            self.apply(title, 1)
            self.assert_saves(title, "change")

    def test_each_box_is_its_own_bit(self):
        self.open_file("start.cft")
        for title, (_, boxes, _, _) in SCREENS.items():
            for offset, bit, caption in BOX.findall(boxes):
                self.confirm(title, caption, "OK")
                item = self.items[int(offset)]
                self.items[int(offset)] = item ^ int(bit) if int(offset) < FLAGS_END else not item
                self.assert_saves(title, caption)

    def test_steps_at_both_limits(self):
        for way, steps in enumerate((lambda label: spin(label, "++"), lambda label: step_by_keys(label, "--"))):
            for offset, *ways in (value for values in LIMITS.values() for value in values.values()):
                self.items[offset] = ways[way][0]
            self.open_file(f"way{way}.cft")
            for title, values in LIMITS.items():
                shown = "|".join(f"{label}: {ways[way][2]}" for label, (_, *ways) in values.items())
                self.confirm(title, *map(steps, values), holds(shown), IDOK)
                for offset, *ways in values.values():
                    self.items[offset] = ways[way][1]
                self.assert_saves(title, way)

    def test_enter_keeps_what_is_in_no_list_range_or_normal_form(self):
        self.items[ITEMS_OFFSET:] = b"\xFE" * (ITEMS_END - ITEMS_OFFSET)
        self.texts[0] = b"/0d/G " + b"/" * 26
        self.open_file("odd.cft")
        for title in SCREENS:
            self.use(title, closes)  # looking at it for the first time visits the edits
            self.confirm(title, key(VK_RETURN))
            self.assert_saves(title)
