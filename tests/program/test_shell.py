"""The main window: setup files, settings that last, one instance, and commands."""

import shutil

from desktop import IDNO, IDYES, LIMIT, SC_MINIMIZE, WM_SYSCOMMAND, Window, call, wait_for
from tolvan import ID, PROGRAM, TITLE, Program, ProgramTest, crc, read_settings, start_wine, windows_path

DIRECTORY_KEYS = ["P_DIRECT", "D_DIRECT", "L_DIRECT", "S_DIRECT", "R_DIRECT", "U_DIRECT", "C_DIRECT", "M_DIRECT"]

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


class SetupFileTest(ProgramTest):
    def wait_title(self, program, title):
        wait_for(title, lambda: program.main.text() == f"{TITLE} ({title})")

    def assert_saves(self, program, name, items):
        program.command(ID.CMD_SAVE_SETUP)
        program.choose_file("Save As", self.folder / name)
        self.wait_title(program, name + ".cft")
        self.assertEqual((self.folder / (name + ".cft")).read_bytes(), setup_file(items))

    def test_open_reset_and_save(self):
        items = [item ^ 1 for item in RESET_ITEMS]
        with Program() as program:
            self.wait_title(program, "Default")
            program.command(ID.CMD_OPEN_SETUP)
            program.choose_file("Open", self.file("good.cft", setup_file(items) + bytes(40)))  # padded by a transfer
            self.wait_title(program, "good.cft")
            program.command(ID.CMD_RESET_SETUP)
            self.assertEqual(program.answer("Reset Setups", IDNO), "- Reset Setup to Defaults?")
            self.assert_saves(program, "kept", items)
            program.command(ID.CMD_RESET_SETUP)
            program.answer("Reset Setups", IDYES)
            self.assertEqual(program.answer("Reset Setups"), "i Setup Reset to Defaults.")
            self.wait_title(program, "Default")
            self.assert_saves(program, "reset", RESET_ITEMS)
            self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["DIRECT"]["C_DIRECT"], windows_path(self.folder) + "\\")


class SettingsTest(ProgramTest):
    def test_first_run_writes_the_directories(self):
        with Program() as program:
            directories = read_settings()["DIRECT"]
            self.assertEqual(list(directories), DIRECTORY_KEYS)
            self.assertEqual(len(set(directories.values())), 1)
            width, height = program.main.size()  # the default, or more where menu or toolbar would be cut
            self.assertGreaterEqual((width, height), (437, 86))
            self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["MAIN_WINDOW"], {"CX": str(width), "CY": str(height)})

    def test_directories_last_until_the_first_is_empty(self):
        kept = {key: f"C:\\{key}" for key in DIRECTORY_KEYS}
        with Program(settings={"DIRECT": kept}) as program:
            self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["DIRECT"], kept)
        with Program(settings={"DIRECT": {**kept, "P_DIRECT": ""}}):
            self.assertEqual(set(read_settings()["DIRECT"].values()) & set(kept.values()), set())

    def test_window_size_lasts(self):
        with Program(settings={"MAIN_WINDOW": {"CX": 700, "CY": 300}}) as program:
            self.assertEqual(program.main.size(), (700, 300))
            minimise(program)
            program.main.close()
            self.assertEqual(program.wait_exit(), 0)
        self.assertEqual(read_settings()["MAIN_WINDOW"], {"CX": "700", "CY": "300"})


class CommandTest(ProgramTest):
    def test_second_instance_brings_the_first_forward(self):
        with Program() as program:
            minimise(program)
            self.assertEqual(start_wine(PROGRAM).wait(LIMIT), 0)
            self.assertFalse(program.main.get("IsIconic"))
            program.command(ID.CMD_ABOUT)
            about = program.window("About Tolvan Programmer")
            self.assertEqual(start_wine(PROGRAM).wait(LIMIT), 0)
            self.assertEqual(call("GetForegroundWindow"), about.handle)
            about.close()
            about.wait_gone()
            self.assertEqual(program.exit(), 0)

    def test_help(self):
        def viewer():
            return Window(call("FindWindowA", "MS_WINHELP", 0))
        with Program() as program:
            program.command(ID.CMD_HELP_TOPICS)
            window = wait_for("the help viewer", viewer)
            self.assertIn("Choose what you want", "".join(child.text() for child in window.children()))
            window.close()
            window.wait_gone()
            self.assertEqual(program.exit(), 0)
        with Program(program=windows_path(shutil.copy(PROGRAM, self.folder))) as program:
            program.command(ID.CMD_HELP_TOPICS)
            self.assertIn("The help cannot be shown.", program.answer(TITLE))
