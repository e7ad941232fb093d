"""One day at the desk: everything that a shop prepares, sends and fetches, through the screens of one run.

With TOLVAN_PICTURES naming a folder it also leaves there the manual's pictures (tools/take_pictures.sh).
"""

import os
import shutil
import subprocess
import time

import test_files as files
import test_library as library
import test_programming as programming
from desktop import IDCANCEL, IDYES, VK_RETURN
from script import ScriptTest, cancels, closes, holds, key, row, run, shows, spin, waits
from test_monitor import OPENS, captured, in_monitor
from test_shell import RESET_ITEMS, setup_file
from test_transfer import SEND_TITLE, WARNING
from tolvan import DRIVE_C, ID, ROOT, TITLE, crc

WORK, PICTURES = DRIVE_C / "Work", os.environ.get("TOLVAN_PICTURES")
MAIN, UPGRADE = TITLE + " (SHOP.CFT)", "Upgrade Flash"


def picture(name):
    """Of the window in front, and of nothing else on the screen."""
    def take(program):
        if PICTURES:
            time.sleep(0.5)  # until it is painted
            left, top, right, bottom = program.screen.place()
            subprocess.check_call(["import", "-window", "root", "-crop", f"{right - left}x{bottom - top}+{left}+{top}",
                                   "+repage", "-strip", "+dither", "-colors", "64", f"PNG8:{PICTURES}/{name}.png"])
    return take


FIELDS = [  # what the operator does, and what the record then holds beside the defaults
    (["Header Input|Prompt Text: Store:|Input Source: K|Input Max: 4|Input Min: 4|Input Mask: N"],
     dict(flags=0xDE, prompt=b"Store:", source="K", max=4, min=4, mask=b"N")),
    (["Prompt Text: Clerk:|Input Max: 4|Input Mask: N", programming.defines(programming.FILE),
      "Lookup Filename: PEOPLE|Fields Per Record: 2|Compare Field: 2|Display Field: 1|Start Row: 1|End Row: 1",
      "Add Display Field to Data|Target Field: 2|Error Message: NOBODY HAS THIS CODE", picture("lookup-file"), "OK",
      programming.WARNS_OF_TARGET],
     dict(prompt=b"Clerk:", max=4, mask=b"N", lookup=b"FD2,PEOPLE,2,2,1,1,1,?NOBODY HAS THIS CODE")),
    (["New Screen|Input Source: L|Start Row: 1|End Row: 1"],
     dict(flags=0x92, source="L", bar_codes=0x8000, row=1, end_row=1)),
    (["New Screen|Start Row: 2|End Row: 2|Prompt Text: Colour:", programming.defines(programming.TABLE),
      "Add|Table Entries: RED", key(VK_RETURN, "GREEN"), key(VK_RETURN, "BLUE"), "Error Message: NO SUCH COLOUR",
      picture("lookup-table"), "OK", shows(programming.FIELD)],
     dict(flags=0xD2, row=2, end_row=2, prompt=b"Colour:", lookup=b"T,RED,GREEN,BLUE,?NO SUCH COLOUR")),
    (["New Screen|Start Row: 3|End Row: 3|Prompt Text: Qty:|Input Source: K|Input Max: 5|Input Mask: D",
      picture("field")], dict(flags=0xD2, row=3, end_row=3, prompt=b"Qty:", source="K", max=5, mask=b"D"))]
COUNT = programming.program_file(b"COUNT", [record for _, record in FIELDS], counts=(1, 1, 1, 4, 4, 4), sof=b"\xA0\r")
SHOP = setup_file([RESET_ITEMS[0] | 8, *RESET_ITEMS[1:]])
PEOPLE = files.system_file(b"PEOPLE", [b"Anna", b"0012", b"Bert", b"000", b"M\xFCller", b"0700", b"", b"0001"])
COLLECTED = [files.text_file(b"D", b"COUNT", b"COUNT", *records) for records in (
    [b"4711", b"0012", b"Anna", b"RED", b"12"], [b"4711", b"0700", b"M\xFCller", b"BLUE", b"7"])]
NAMES = ["COUNT.001", "COUNT.002"]

PREPARES = [
    programming.START, [programming.new_field(*script) for script, _ in FIELDS],
    "SOF Text: ", ID.CMD_SPECIAL_ASCII, shows("Special ASCII Characters"), row(49), "Add", row(14), "Add",
    picture("characters"), "Done", shows(programming.WINDOW),
    programming.saves(WORK / "COUNT.PGT", "Programming (COUNT)"), picture("programming"), ID.CMD_EXIT,
    shows(programming.MAIN), ID.CMD_CODE39, shows("Code 39 Options"), "Full ASCII", picture("setup"), "OK",
    shows(programming.MAIN), ID.CMD_SAVE_SETUP, shows("Save As"), WORK / "SHOP.CFT", shows(MAIN), picture("main"),
    ID.CMD_LOOKUP_EDITOR, shows(files.LOOKUP), files.opens(WORK / "people.csv", files.IMPORT), files.TOGGLE[1:3],
    picture("import"), "Translate", shows(files.LOOKUP), ["1: |Delete"] * 2, "5: M\xFCller",
    files.saves(WORK / "PEOPLE.LKT", files.AS_SYSTEM), picture("edit-lookup"), IDCANCEL, shows(MAIN), library.START[1:],
    [library.adds(WORK / name) for name in ("COUNT.PGT", "PEOPLE.LKT", "SHOP.CFT")],
    library.saves(WORK / "DAY.LBT"), picture("library"), ID.CMD_EXIT, shows(MAIN),
    ID.CMD_COMM_SETUP, shows("Communication Setup"), "File mode: I", picture("comm-setup"), "OK", shows(MAIN)]
LOOKS = [
    ID.CMD_DATA_EDITOR, shows(files.DATA), files.opens(WORK / NAMES[1], files.DATA),
    holds("Data Filename: COUNT|Program Name: COUNT|1: 4711|2: 0700|3: M\xFCller|4: BLUE|5: 7"), picture("edit-data"),
    IDCANCEL, shows(MAIN), ID.CMD_RECEIVE, shows("Enter Filename To Receive"), WORK / "COUNT.DAT",
    shows("Receive File"),
    picture("receive"), "Close", shows(MAIN)]
UPGRADES = [
    shows(MAIN), ID.CMD_UPGRADE, shows(UPGRADE, WARNING), IDYES, shows(SEND_TITLE), WORK / "NEW.UPG", shows(UPGRADE),
    waits("Status: File OK"), picture("flash"), "Close", shows(MAIN)]


class DayTest(ScriptTest):
    def sends(self, program):
        run(program, ID.CMD_SEND, shows(SEND_TITLE), WORK / "DAY.LBT", shows("Send File"))
        transfer = self.line.start("rx", "-c", "got", folder=self.portable)
        run(program, "Send", waits("Status: Completed"), picture("send"), "Close", shows(MAIN))
        self.assertEqual(transfer.finish(), 0)
        self.assert_padded((self.portable / "got").read_bytes(), COUNT + PEOPLE + SHOP)

    def receives(self, program):
        run(program, ID.CMD_AUTO_RECEIVE, shows("Enter Filename Without*"), WORK / "COUNT", shows("Extension*"), spin(
            "Select Auto Receive Starting Number", "+"), "OK", shows("Auto Receive File"), "Receive")
        for name, content in zip(NAMES, COLLECTED):
            run(program, waits(f"File: {name}|Status: Waiting"))
            (self.portable / "COUNT").write_bytes(content + bytes(-len(content) % 128))
            self.assertEqual(self.line.start("sx", "COUNT", folder=self.portable).finish(), 0)
        run(program, waits("File: COUNT.003|Status: Waiting"), picture("auto-receive"),
            cancels, "Close", shows(MAIN))
        for name, content in zip(NAMES, COLLECTED):
            self.assert_holds(name, content)
        self.assertEqual([line.split()[-3:] for line in (WORK / "LOG.TXT").read_text().splitlines()[4:]],
                         [[name, "128", "OK"] for name in NAMES])

    def watches(self, program):
        def portable_sends(_):
            self.line.wait_open()
            self.line.write(COLLECTED[1])
            time.sleep(1)  # until it is read

        run(program, OPENS, ID.CMD_MON_SETTING, shows("Serial Port"), "COM1|OK", shows(MAIN),
            in_monitor, ID.CMD_MON_CAPTURE, portable_sends, picture("monitor"), ID.CMD_MON_CAPTURE)
        self.line.wait_closed()
        run(program, ID.CMD_SAVE, shows("Save As"), WORK / "LINE.CAP", shows(MAIN), in_monitor, closes)
        self.assert_holds("LINE.CAP", captured(COLLECTED[1]))

    def test_day(self):
        self.portable, self.folder = self.folder, WORK
        shutil.rmtree(WORK, ignore_errors=True)  # of a run that was broken off
        self.addCleanup(shutil.rmtree, WORK)
        WORK.mkdir()
        shutil.copy(ROOT / "tests/data/people.csv", WORK)
        self.file("NEW.UPG", b"HEAD" + bytes(5000) + crc(bytes(5000)))
        program = self.start(PREPARES, self.sends, self.receives, LOOKS, self.watches, UPGRADES)
        self.assertEqual(program.exit(), 0)
