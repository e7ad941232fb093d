"""The main window: its toolbar, setup files, settings that last, one instance, and commands."""

import shutil
import struct

from desktop import (IDNO, IDOK, IDYES, LIMIT, SC_MINIMIZE, VK_ESCAPE, VK_RETURN, WM_SYSCOMMAND, Window, call,
                     numbers_in, press, settle, text_in, wait_for)
from script import ScriptTest, asks, run, shows
from tolvan import ID, INI, PROGRAM, TITLE, Program, crc, read_settings, start_wine, windows_path

MAIN, ABOUT = TITLE + " (Default)", "About Tolvan Programmer"
WM_NOTIFY, TTN_GETDISPINFO = 0x4E, -520
WM_QUERYENDSESSION, WM_ENDSESSION, TB_GETBUTTON, TB_GETITEMRECT = 0x11, 0x16, 0x417, 0x41D
DIRECTORY_KEYS = ["P_DIRECT", "D_DIRECT", "L_DIRECT", "S_DIRECT", "R_DIRECT", "U_DIRECT", "C_DIRECT", "M_DIRECT"]
TOOLBAR = {"PROGRAMMING": "Programming", "LOOKUP_EDITOR": "Lookup File Editor", "DATA_EDITOR": "Data File Editor",
           "LIBRARIAN": "Librarian", "SEND": "Send File", "RECEIVE": "Receive File",
           "AUTO_RECEIVE": "Auto Receive File", "UPGRADE": "Upgrade Flash", "MONITOR": "Comm Monitor", "EXIT": "Exit"}

# A setup file as a reset leaves it: length word, kind, 68 items, six texts, checksum.
RESET_ITEMS = [
    0x01, 0x1F, 0x1F, 0x06, 0x01, 6, 0, 0, 0x01, 0x05, 0x01, 0x00, 0x00,  # symbologies, from Code 39 on
    2, 0x00, 0, 0, 0, 0, 0, 0, 0, 11, 2, 1, 3, 0, 10, 0, 1,  # termination to duplicate reads
    1, 1, 5, 0, 0, 0, 5, 1, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0,  # keys, power, display, keyboard wedge
    0, 0, 0, 1, 0, 5, 0, 0, 0, 0, 1, 0, 0, 0,  # communications
    1, 50, 2, 2, 2, 0,  # beep, contrast, flow control, triggers, read verify
]
RESET_TEXTS = b"\0" b"\0" b"\0" b"AT&F&C1\0" b"\0" b"\0"


def setup_file(items, texts=RESET_TEXTS):
    body = (5 + len(items) + len(texts)).to_bytes(4, "big") + b"S" + bytes(items) + texts
    return body + crc(body)


def minimise(program):
    program.main.post(WM_SYSCOMMAND, SC_MINIMIZE)
    wait_for("the window to be minimised", lambda: program.main.get("IsIconic"))


class SetupFileTest(ScriptTest):
    def test_open_reset_and_save(self):
        def saves(name):
            return [ID.CMD_SAVE_SETUP, shows("Save As"), self.folder / name, shows(f"{TITLE} ({name}.cft)")]

        items, opened = [item ^ 1 for item in RESET_ITEMS], f"{TITLE} (good.cft)"
        good = self.file("good.cft", setup_file(items) + bytes(40))  # padded by a transfer
        resets = [ID.CMD_RESET_SETUP, shows("Reset Setups", "- Reset Setup to Defaults?")]
        program = self.start(
            shows(MAIN), ID.CMD_OPEN_SETUP, shows("Open"), good, shows(opened), resets, IDNO, shows(opened),
            saves("kept"), resets, IDYES, asks("i Setup Reset to Defaults.", IDOK, MAIN, "Reset Setups"),
            saves("reset"))
        self.assert_holds("kept.cft", setup_file(items))
        self.assert_holds("reset.cft", setup_file(RESET_ITEMS))
        self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["DIRECT"]["C_DIRECT"], windows_path(self.folder) + "\\")


class SettingsTest(ScriptTest):
    def test_first_run_writes_the_directories(self):
        program = self.start(shows(MAIN))
        directories = read_settings()["DIRECT"]
        self.assertEqual(list(directories), DIRECTORY_KEYS)
        self.assertEqual(len(set(directories.values())), 1)
        width, height = program.main.size()  # the default, or more where menu or toolbar would be cut
        self.assertGreaterEqual((width, height), (437, 86))
        self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["MAIN_WINDOW"], {"CX": str(width), "CY": str(height)})

    def test_settings_last(self):
        directories = {key: f"C:\\{key}".ljust(255, "x") for key in DIRECTORY_KEYS}
        kept = {"DIRECT": directories, "MAIN_WINDOW": {"CX": "700", "CY": "300"}}
        too_long = {**kept, "DIRECT": {**directories, "M_DIRECT": directories["M_DIRECT"] + "x"}}
        with Program(settings=too_long) as program:
            self.assertEqual(program.main.size(), (700, 300))
            minimise(program)
            program.main.close()
            self.assertEqual(program.wait_exit(), 0)
        self.assertEqual(read_settings(), kept)
        with Program(settings=None) as program:  # which ends with the session
            INI.unlink()
            self.assertEqual(program.main.send(WM_QUERYENDSESSION), 1)
            program.main.send(WM_ENDSESSION, False)  # another program would not end
            self.assertFalse(INI.exists())
            program.main.send(WM_ENDSESSION, True)
            self.assertEqual(read_settings(), kept)
        with Program(settings={"DIRECT": {**directories, "P_DIRECT": ""}}):  # the first tells whether there are any
            self.assertEqual(set(read_settings()["DIRECT"].values()) & set(directories.values()), set())


class CommandTest(ScriptTest):
    def test_toolbar(self):
        program = self.start(shows(MAIN))
        toolbar = program.main.control(ID.ID_MAIN_TOOLBAR)
        for picture, (name, tip) in enumerate(TOOLBAR.items()):
            button, place, shown = bytearray(32), bytearray(16), bytearray(80)
            command = getattr(ID, "CMD_" + name)
            request = bytearray(struct.pack("QQixxxxQ", toolbar.handle, command, TTN_GETDISPINFO, 0) + bytes(112))
            toolbar.send(TB_GETBUTTON, picture, button)
            toolbar.send(TB_GETITEMRECT, picture, place)
            program.main.send(WM_NOTIFY, 0, request)
            call("lstrcpynA", shown, struct.unpack_from("Q", request, 24)[0], len(shown))
            left, top, right, bottom = numbers_in(place)
            self.assertEqual((*numbers_in(button[:8]), right - left, bottom - top, text_in(shown)),
                             (picture, command, 29, 30, tip))
        toolbar.press(left, top)
        self.assertEqual(program.wait_exit(), 0)

    def test_no_command_behind_a_dialog(self):
        program = self.start(shows(MAIN))
        for leaves in (lambda: press(VK_RETURN), lambda: press(VK_ESCAPE), lambda: about.close()):
            run(program, ID.CMD_ABOUT, shows(ABOUT))
            about = program.screen
            for command in (ID.CMD_EXIT, ID.CMD_ABOUT, ID.CMD_RESET_SETUP):
                program.command(command)
            program.main.close()
            settle()
            self.assertEqual(program.windows(), [about, program.main])
            leaves()
            run(program, shows(MAIN))
        program.command(104)  # a number without one
        self.assertEqual(program.exit(), 0)

    def test_second_instance_brings_the_first_forward(self):
        program = self.start(shows(MAIN))
        minimise(program)
        self.assertEqual(start_wine(PROGRAM).wait(LIMIT), 0)
        self.assertFalse(program.main.get("IsIconic"))
        program.command(ID.CMD_ABOUT)
        about = program.window(ABOUT)
        self.assertEqual(start_wine(PROGRAM).wait(LIMIT), 0)
        self.assertEqual(call("GetForegroundWindow"), about.handle)

    def test_help(self):
        def shown_text():
            return "".join(child.text() for child in viewer().children())

        def viewer():
            return Window(call("FindWindowA", "MS_WINHELP", 0))

        program = self.start(shows(MAIN), ID.CMD_HELP_TOPICS)
        wait_for("the manual", lambda: viewer() and "Choose what you want" in shown_text())
        viewer().close()
        wait_for("the viewer's end", lambda: not viewer())
        self.assertEqual(program.exit(), 0)
        with Program(program=windows_path(shutil.copy(PROGRAM, self.folder))) as program:
            pages = windows_path(self.folder / "help/index.html")
            run(program, shows(MAIN), ID.CMD_HELP_TOPICS, shows(
                TITLE, "i The help cannot be shown. Its files belong here:\n" + pages))
