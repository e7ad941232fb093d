"""The real program under Wine, driven from outside, with a pseudo-terminal behind its COM1.

    with Program(line=line) as program:
        program.command(ID.CMD_SEND)
        program.choose_file("Enter Filename To Send", path)
        screen = program.window("Send File")
        screen.click("Send")
        screen.wait_value("Status:", "Completed")

Every wait has a limit and fails the test with what it waited for.
"""

import configparser
import json
import os
import pathlib
import re
import select
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import types
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
import portable  # noqa: E402 (the stand-in's line procedures)

PROGRAM = ROOT / "build/win64/TolvanP.exe"
DRIVE = ROOT / "build/win64/drive.exe"
FAKE_MODEM = ROOT / "build/native/libfake_modem.so"
PREFIX = pathlib.Path(os.environ.get("WINEPREFIX", ROOT / "build/test-prefix"))
COM1 = ROOT / "build/test-com1"
DRIVE_C = PREFIX / "drive_c"
INI = DRIVE_C / "windows/TolvanP.INI"
APP_DATA_INI_PATTERN = "drive_c/users/*/AppData/Roaming/TolvanP.INI"

TITLE = "Tolvan Programmer V1.17"  # of the program, of its questions, and its window class
LIMIT = 20  # seconds; what takes longer by its nature says so
POLL = 0.02  # seconds

WM_NULL, WM_CLOSE, WM_KEYDOWN, WM_COMMAND, WM_SYSCOMMAND, SC_MINIMIZE = 0, 0x10, 0x100, 0x111, 0x112, 0xF020
WM_LBUTTONDOWN, WM_LBUTTONUP, WM_NEXTDLGCTL = 0x201, 0x202, 0x28
BM_GETCHECK, LB_GETTOPINDEX, LB_SETTOPINDEX, LB_GETITEMHEIGHT = 0xF0, 0x18E, 0x197, 0x1A1
IDOK, IDCANCEL, IDYES, IDNO = 1, 2, 6, 7
FILE_NAME_EDIT = 0x47C  # of the file dialogs

DIALOG_CLASS = "#32770"


ID = types.SimpleNamespace(**{  # every identifier of the resources by its name
    name: int(value) for header in ("define.h", "control.h")
    for name, value in re.findall(r"#define (\w+) (\d+)", (ROOT / "resources" / header).read_text())})


def wait_for(what, condition, limit=LIMIT):
    """Polls until the condition gives something true, and returns that."""
    deadline = time.monotonic() + limit
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {limit} s in vain for {what}")
        time.sleep(POLL)


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


class Desktop:
    """The drive process, through which all windows are reached."""

    def __init__(self):
        self.process = None

    def ask(self, *command):
        if not self.process or self.process.poll() is not None:
            self.process = subprocess.Popen(["wine", DRIVE], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                            stderr=subprocess.DEVNULL)
        words = ["." + str(part).encode("latin-1").hex() for part in command]
        watchdog = threading.Timer(3 * LIMIT, self.process.kill)
        watchdog.start()
        self.process.stdin.write((" ".join(words) + "\n").encode())
        self.process.stdin.flush()
        answer = self.process.stdout.readline()
        watchdog.cancel()
        if not answer:
            raise AssertionError(f"no answer to {command}")
        return json.loads(answer)

    def windows(self):
        return [Window(known) for known in self.ask("windows")]

    def close(self):
        if self.process is not None:
            self.process.stdin.close()
            self.process.wait(LIMIT)
            self.process.stdout.close()


desktop = Desktop()


class Window:
    """A window or a control. `known` is what was found out when it was looked up; the rest asks afresh."""

    def __init__(self, known):
        self.known = known
        self.handle = known["handle"]

    def now(self):
        return desktop.ask("describe", self.handle)

    def alive(self):
        return self.now() is not None

    def text(self):
        return self.now()["text"]

    def enabled(self):
        return self.now()["enabled"]

    def size(self):
        left, top, right, bottom = self.now()["rect"]
        return right - left, bottom - top

    def post(self, message, wparam=0, lparam=0):
        return desktop.ask("post", self.handle, message, wparam, lparam)

    def send(self, message, wparam=0, lparam=0):
        return desktop.ask("send", self.handle, message, wparam, lparam)

    def tell(self, message, wparam=0, lparam=0):
        """As send, but what it opens may stay open; what is sent or asked afterwards comes after it."""
        desktop.ask("tell", self.handle, message, wparam, lparam)

    def command(self, identifier):
        self.post(WM_COMMAND, identifier)

    def close(self):
        self.post(WM_CLOSE)

    def press(self, x=5, y=5):
        """A click at a point, as the mouse makes it."""
        self.post(WM_LBUTTONDOWN, 1, x | y << 16)
        self.post(WM_LBUTTONUP, 0, x | y << 16)

    def push(self, x=5, y=5):
        """The same in the order of tell, once there is something to click at."""
        self.wait_enabled()
        self.tell(WM_LBUTTONDOWN, 1, x | y << 16)
        self.tell(WM_LBUTTONUP, 0, x | y << 16)

    def set_text(self, text):
        desktop.ask("set_text", self.handle, text)

    def entries(self):
        return desktop.ask("entries", self.handle)

    def children(self):
        return [Window(known) for known in desktop.ask("children", self.handle)]

    def control(self, identifier):
        handle = desktop.ask("child", self.handle, identifier)
        assert handle, f"no control {identifier} in {self.known['text']!r}"
        return Window(desktop.ask("describe", handle))

    def find(self, caption):
        """The visible label or button with this caption and the controls behind it, up to two."""
        found = desktop.ask("find", self.handle, caption)
        assert found[0], f"no {caption!r} in {self.known['text']!r}"
        return [Window(desktop.ask("describe", handle)) for handle in found if handle]

    def button(self, caption):
        return self.find(caption)[0]

    def click(self, caption):
        self.button(caption).press()

    def after(self, label):
        return self.find(label)[1]

    def type(self, label, text):
        """Goes to a control as the tab key does, which selects an edit's text, and types."""
        control = self.after(label)
        control.wait_enabled()
        self.send(WM_NEXTDLGCTL, control.handle, 1)
        control.type_here(text)

    def type_here(self, text):
        desktop.ask("type", self.handle, text or "\b")

    def value(self, label):
        return self.after(label).known["text"]

    def wait_value(self, label, value, limit=LIMIT):
        control = self.after(label)
        wait_for(f"{label} {value}", lambda: control.text() == value, limit)

    def label_text(self):
        return "".join(child.known["text"] for child in self.children() if child.known["class"] == "Static")

    def wait_enabled(self):
        wait_for(f"{self.known['text']!r} to take input", self.enabled)

    def wait_gone(self, limit=LIMIT):
        wait_for(f"the end of {self.known['text']!r}", lambda: not self.alive(), limit)


class Line:
    """The other end of COM1."""

    def __init__(self):
        self.master = portable.open_line(COM1)

    def close(self):
        """Also what a pulled-out cable looks like to the program."""
        if self.master is not None:
            os.close(self.master)
        self.master = None

    def wait_open(self):
        wait_for("the program to open the port", lambda: portable.is_open(self.master))

    def wait_closed(self):
        wait_for("the program to close the port", lambda: not portable.is_open(self.master))

    def write(self, data):
        while data:
            data = data[os.write(self.master, data):]

    def read(self, limit=LIMIT):
        """Some bytes, b"" when none came in time."""
        return portable.read(self.master, limit) or b""

    def read_exactly(self, count, limit=LIMIT):
        data = bytearray()
        wait_for(f"{count} bytes", lambda: data.extend(self.some(count - len(data))) or len(data) == count, limit)
        return bytes(data)

    def expect(self, wanted, limit=LIMIT):
        """Reads until the wanted bytes have come and returns all up to and with them."""
        data = b""
        deadline = time.monotonic() + limit
        while not data.endswith(wanted):
            if time.monotonic() > deadline:
                raise AssertionError(f"waited {limit} s for {wanted!r} and read {data!r}")
            data += self.some(1)
        return data

    def some(self, count):
        """What waits, or comes within a moment, also before the program has opened the port."""
        if not portable.is_open(self.master):
            time.sleep(POLL)
        try:
            return os.read(self.master, count) if select.select([self.master], [], [], 0.1)[0] else b""
        except OSError:
            return b""

    def start(self, *command, folder):
        """Runs rx or sx on the line as soon as the program has opened it."""
        return Transfer(self, command, folder)


class Transfer:
    def __init__(self, line, command, folder):
        self.status = "still running"
        self.command = command
        self.thread = threading.Thread(target=self.run, args=(line, folder), daemon=True)
        self.thread.start()

    def run(self, line, folder):
        try:
            line.wait_open()
            self.status = portable.relay(line.master, self.command, folder)
        except (AssertionError, OSError, TypeError) as error:  # the test may have closed the line by now
            self.status = error

    def finish(self, limit=3 * LIMIT):
        """Waits for the end and returns the exit status, or what kept the transfer from ending."""
        self.thread.join(limit)
        return self.status


def start_wine(*command, **options):
    return subprocess.Popen(["wine", *command], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL, **options)


class Program:
    """The running program. Settings are {section: {key: value}}; None keeps those of an earlier run."""

    def __init__(self, *arguments, settings=(), folder=None, environment=(), program=PROGRAM):
        if settings is not None:
            write_settings(dict(settings))
        self.process = start_wine(program, *arguments, cwd=folder, env={**os.environ, **dict(environment)})
        self.main = None
        self.screen = None  # the window that a script is in

    def __enter__(self):
        wait_for("the main window", lambda: self.find_main() or self.process.poll() is not None)
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait(LIMIT)
            wait_for("the end of the program", lambda: not self.own_windows())

    def find_main(self):
        self.main = next((window for window in desktop.windows() if window.known["class"] == TITLE), None)
        return self.main

    def own_windows(self):
        return [window for window in desktop.windows() if window.known["process"] == self.main.known["process"]]

    def window(self, title, limit=LIMIT):
        """A dialog or message box by its title, as soon as it is there and takes input."""
        def ready():
            return next((window for window in self.own_windows() if window.known["enabled"]
                         and window.known["class"] == DIALOG_CLASS and window.known["text"] == title), None)
        return wait_for(f"the window {title!r} (there are "
                        f"{[window.known['text'] for window in self.own_windows()]})", ready, limit)

    def monitor(self):
        """The monitor's window, as soon as it is there."""
        return wait_for("the monitor", lambda: next(
            (window for window in self.own_windows() if window.known["class"] == "MONITOR"), None))

    def command(self, identifier):
        self.main.command(identifier)

    def front(self):
        """The one window that takes input now, if there is one."""
        return next((window for window in self.own_windows()
                     if window.known["class"] in (DIALOG_CLASS, TITLE) and window.known["enabled"]), None)

    def answer(self, caption, button=IDOK, limit=LIMIT):
        """Presses a button of a message box and returns the box's text."""
        box = self.window(caption, limit)
        text = box.label_text()
        box.command(button)
        box.wait_gone()
        return text

    def choose_file(self, title, path):
        """Answers a file dialog; `path` None cancels it."""
        dialog = self.window(title)
        if path is not None:
            dialog.control(FILE_NAME_EDIT).set_text(windows_path(path))
        dialog.command(IDCANCEL if path is None else IDOK)
        dialog.wait_gone()

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


class ProgramTest(unittest.TestCase):
    """A folder of its own and a line for each test."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tolvan-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.line = Line()
        self.addCleanup(self.line.close)

    def file(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        return path

    def assert_padded(self, stored, sent, padding=b"\0"):
        """What was sent, filled up to whole blocks."""
        self.assertEqual(stored, sent + padding * (-len(sent) % 128))
