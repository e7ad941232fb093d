"""The real program under Wine, its settings, and what every test of it has.

    with Program() as program:
        program.command(ID.CMD_ABOUT)
        program.window("About Tolvan Programmer").close()
"""

import configparser
import contextlib
import os
import pathlib
import re
import subprocess
import types

from desktop import DIALOG_CLASS, LIMIT, Bridge, ProgramEnded, Window, call, wait_for

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = ROOT / "build/win64/TolvanP.exe"
LAUNCH = ROOT / "build/win64/launch.exe"
FAKE_MODEM = ROOT / "build/native/libfake_modem.so"
PREFIX = pathlib.Path(os.environ.get("WINEPREFIX", ROOT / "build/test-prefix"))
DRIVE_C = PREFIX / "drive_c"
INI = DRIVE_C / "windows/TolvanP.INI"
APP_DATA_INI_PATTERN = "drive_c/users/*/AppData/Roaming/TolvanP.INI"

TITLE = "Tolvan Programmer V1.17"  # of the program, of its questions, and its window class

ID = types.SimpleNamespace(**{  # every identifier of the resources by its name
    name: int(value) for header in ("define.h", "control.h")
    for name, value in re.findall(r"#define (\w+) (\d+)", (ROOT / "resources" / header).read_text())})


def crc(data):
    """Bit by bit: polynomial 0x1021, starting at 0."""
    value = 0
    for byte in data:
        value ^= byte << 8
        for _ in range(8):
            value = (value << 1 ^ (0x1021 if value & 0x8000 else 0)) & 0xFFFF
    return value.to_bytes(2, "big")


def windows_path(path):
    """As the program names it: the prefix has its own drive, all else is on drive Z."""
    path = pathlib.Path(path)
    drive, root = ("C:", DRIVE_C) if path.is_relative_to(DRIVE_C) else ("Z:", "/")
    return f"{drive}\\" + str(path.relative_to(root)).replace("/", "\\")


def start_wine(*command, **options):
    return subprocess.Popen(["wine", *command], stderr=subprocess.DEVNULL,
                            **{"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, **options})


class Program:
    """The running program. Settings are {section: {key: value}}; None keeps those of an earlier run."""

    def __init__(self, *arguments, settings=(), folder=None, environment=(), program=windows_path(PROGRAM)):
        if settings is not None:
            write_settings(dict(settings))
        self.process = Bridge.process = start_wine(
            LAUNCH, program, *arguments, stdin=subprocess.PIPE, stdout=subprocess.PIPE, cwd=folder,
            env={**os.environ, **dict(environment)})
        self.main = None
        self.screen = None  # the window that a script is in

    def __enter__(self):
        wait_for("the main window", lambda: self.process.poll() is not None or self.find_main())
        return self

    def __exit__(self, *_):
        """A program that still runs ends with its input."""
        with contextlib.suppress(BrokenPipeError):  # what was written last may not have been taken any more
            self.process.stdin.close()
        self.process.wait(LIMIT)
        self.process.stdout.close()

    def find_main(self):
        try:
            self.main = Window(call("FindWindowA", TITLE, 0))
            Bridge.thread = self.main.get("GetWindowThreadProcessId", 0)
            return self.main.visible()
        except ProgramEnded:
            return False

    def windows(self):
        """Its visible top-level windows from the front to the back."""
        return [window for window in Window(0).children()
                if window.visible() and window.get("GetWindowThreadProcessId", 0) == Bridge.thread]

    def window(self, title, limit=LIMIT):
        """A dialog or message box by its title, as soon as it is there and takes input."""
        def ready():
            return next((window for window in self.windows() if window.enabled()
                         and window.kind() == DIALOG_CLASS and window.text() == title), None)
        there = [window.text() for window in self.windows()]
        return wait_for(f"the window {title!r} (there were {there})", ready, limit)

    def monitor(self):
        """The monitor's window, as soon as it is there."""
        return wait_for("the monitor", lambda: next(
            (window for window in self.windows() if window.kind() == "MONITOR"), None))

    def command(self, identifier):
        self.main.command(identifier)

    def front(self):
        """The one window that takes input now, if there is one."""
        return next((window for window in self.windows()
                     if window.kind() in (DIALOG_CLASS, TITLE) and window.enabled()), None)

    def wait_exit(self, limit=LIMIT):
        """The exit code."""
        try:
            return self.process.wait(limit)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"the program did not end within {limit} s") from None

    def exit(self):
        self.command(ID.CMD_EXIT)
        return self.wait_exit()


def write_settings(settings):
    for other in PREFIX.glob(APP_DATA_INI_PATTERN):
        other.unlink()
    INI.unlink(missing_ok=True)
    if settings:
        INI.write_text("".join(
            f"[{section}]\r\n" + "".join(f"{key}={value}\r\n" for key, value in keys.items())
            for section, keys in settings.items()), encoding="latin-1", newline="")


def read_settings():
    settings = configparser.RawConfigParser()
    settings.optionxform = str
    settings.read_string(INI.read_text(encoding="latin-1"))
    return {section: dict(settings[section]) for section in settings.sections()}
