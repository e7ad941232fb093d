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
import contextlib
import os
import pathlib
import re
import select
import shutil
import struct
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
LAUNCH = ROOT / "build/win64/launch.exe"
FAKE_MODEM = ROOT / "build/native/libfake_modem.so"
PREFIX = pathlib.Path(os.environ.get("WINEPREFIX", ROOT / "build/test-prefix"))
COM1 = ROOT / "build/test-com1"
DRIVE_C = PREFIX / "drive_c"
INI = DRIVE_C / "windows/TolvanP.INI"
APP_DATA_INI_PATTERN = "drive_c/users/*/AppData/Roaming/TolvanP.INI"

TITLE = "Tolvan Programmer V1.17"  # of the program, of its questions, and its window class
LIMIT = 20  # seconds; what takes longer by its nature says so
POLL = 0.02  # seconds

WM_NULL, WM_SETTEXT, WM_GETTEXT, WM_CLOSE, WM_NEXTDLGCTL, WM_COMMAND = 0, 0xC, 0xD, 0x10, 0x28, 0x111
WM_KEYDOWN, WM_KEYUP, WM_CHAR, WM_SYSCOMMAND, SC_MINIMIZE = 0x100, 0x101, 0x102, 0x112, 0xF020
WM_LBUTTONDOWN, WM_LBUTTONUP = 0x201, 0x202
BM_GETCHECK, CB_GETCOUNT, CB_GETLBTEXT, STM_GETICON = 0xF0, 0x146, 0x148, 0x171
LB_GETTEXT, LB_GETCOUNT, LB_GETTOPINDEX, LB_SETTOPINDEX, LB_GETITEMHEIGHT = 0x189, 0x18B, 0x18E, 0x197, 0x1A1
ICONS = {32513: "X", 32514: "?", 32515: "!", 32516: "i"}  # of message boxes, by their numbers in the system
TEXT_LIMIT = 1024  # bytes
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


class Bridge:
    """Into the program that was started last: its process, and its thread once the main window is there."""
    process, thread = None, 0


def call(name, *arguments):
    """The result as a number of 32 bits. A text is passed as bytes and a NUL; a bytearray comes back as the call left it."""
    def word(argument):
        argument = argument.encode("latin-1") + b"\0" if isinstance(argument, str) else argument
        return " =" + argument.hex() if isinstance(argument, (bytes, bytearray)) else f" {int(argument)}"

    stdin, stdout = Bridge.process.stdin, Bridge.process.stdout
    try:
        stdin.write((name + "".join(map(word, arguments)) + "\n").encode())
        stdin.flush()
        answer = select.select([stdout], [], [], 3 * LIMIT)[0] and stdout.readline().decode().split()
    except BrokenPipeError:
        answer = None
    if not answer:
        raise ProgramEnded(f"no answer to {name}{arguments}")
    buffers = (argument for argument in arguments if isinstance(argument, (str, bytes, bytearray)))
    for buffer, content in zip(buffers, answer[1:]):
        if isinstance(buffer, bytearray):
            buffer[:] = bytes.fromhex(content[1:])
    return int(answer[0])


class ProgramEnded(AssertionError):
    pass


def text_in(buffer, encoding="latin-1"):
    return buffer.decode(encoding).partition("\0")[0]


def numbers_in(buffer):
    return struct.unpack(f"{len(buffer) // 4}i", buffer)


def plain(caption):
    return re.sub("[&:]", "", caption)


def settle():
    """Waits until the program has taken every message posted to it so far."""
    assert call("settle", Bridge.thread), "the program takes no messages"


def focused(dialog=None):
    """The control that has the keyboard, in a dialog without the parts of controls."""
    info = bytearray(struct.pack("i", 72) + bytes(68))
    call("GetGUIThreadInfo", Bridge.thread, info)
    control = Window(numbers_in(info)[4])
    while dialog and control and control.get("GetParent") != int(dialog):
        control = Window(control.get("GetParent"))
    return control


def press(*keys):
    """Presses keys by their codes, or types texts, as an operator does: each goes to the control that has the focus."""
    for key in keys:
        if isinstance(key, str):
            focused().type_here(key)
        else:
            settle()
            focused().post(WM_KEYDOWN, key, 1)
            focused().post(WM_KEYUP, key, -0x3FFFFFFF)
        settle()


class Window:
    """A window or a control by its handle, 0 for the desktop."""

    def __init__(self, handle):
        self.handle = handle

    def __int__(self):
        return self.handle

    def __eq__(self, other):
        return isinstance(other, Window) and self.handle == other.handle

    def __bool__(self):
        return self.handle != 0

    def get(self, name, *arguments):
        """The result of a call that takes the window first."""
        return call(name, self, *arguments)

    def kind(self):
        """The name of its class."""
        name = bytearray(64)
        self.get("GetClassNameA", name, len(name))
        return text_in(name)

    def alive(self):
        return self.get("IsWindow")

    def enabled(self):
        return self.get("IsWindowEnabled")

    def visible(self):
        return self.get("IsWindowVisible")

    def identifier(self):
        return self.get("GetDlgCtrlID")

    def ticked(self):
        return self.send(BM_GETCHECK) == 1

    def text(self):
        """Of an edit or a list what it says itself; of others what the system keeps, also while they are busy."""
        text = bytearray(TEXT_LIMIT)
        if self.kind() in ("Edit", "ComboBox", "RichEdit20A"):
            self.send(WM_GETTEXT, len(text), text)
            return text_in(text)
        self.get("InternalGetWindowText", text, len(text) // 2)
        return text_in(text, "utf-16-le")

    def place(self, owner=0):
        """Left, top, right and bottom, on the screen or in another window."""
        place = bytearray(16)
        self.get("GetWindowRect", place)
        call("MapWindowPoints", 0, owner, place, 2)
        return numbers_in(place)

    def size(self):
        left, top, right, bottom = self.place()
        return right - left, bottom - top

    def post(self, message, wparam=0, lparam=0):
        self.get("PostMessageA", message, wparam, lparam)

    def send(self, message, wparam=0, lparam=0):
        result = bytearray(8)
        self.get("SendMessageTimeoutA", message, wparam, lparam, 0, 1000 * LIMIT, result)
        return numbers_in(result)[0]

    def tell(self, message, wparam=0, lparam=0):
        """As send, but what it opens may stay open; what is sent or asked afterwards comes after it."""
        self.get("SendNotifyMessageA", message, wparam, lparam)

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
        self.send(WM_SETTEXT, 0, text)

    def entries(self):
        count, get_text = (CB_GETCOUNT, CB_GETLBTEXT) if self.kind() == "ComboBox" else (LB_GETCOUNT, LB_GETTEXT)
        texts = [bytearray(1024) for _ in range(self.send(count))]
        for index, text in enumerate(texts):
            self.send(get_text, index, text)
        return [text_in(text) for text in texts]

    def children(self):
        children = [Window(self.get("FindWindowExA", 0, 0, 0))]
        while children[-1]:
            children.append(Window(self.get("FindWindowExA", children[-1], 0, 0)))
        return children[:-1]

    def control(self, identifier):
        control = Window(self.get("GetDlgItem", identifier))
        assert control, f"no control {identifier} in {self.text()!r}"
        return control

    def find(self, caption):
        """The visible label or button with this caption and the controls behind it."""
        controls = [child for child in self.children() if child.visible()]
        for index, control in enumerate(controls):
            if control.kind() in ("Static", "Button") and plain(control.text()) == plain(caption):
                return controls[index:]
        raise AssertionError(f"no {caption!r} in {self.text()!r}")

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
        """A character may bring up a box, which takes messages too: WM_NULL is answered behind the last character."""
        for character in text or "\b":
            self.tell(WM_CHAR, ord(character), 1)
        self.send(WM_NULL)

    def value(self, label):
        return self.after(label).text()

    def wait_value(self, label, value, limit=LIMIT):
        control = self.after(label)
        wait_for(f"{label} {value}", lambda: control.text() == value, limit)

    def message(self):
        """Of a message box: its icon as X, !, ? or i, a blank, and its text."""
        icons = {call("LoadIconA", 0, number): mark for number, mark in ICONS.items()}
        labels = [child for child in self.children() if child.kind() == "Static"]
        marks = [icons.get(label.send(STM_GETICON)) for label in labels]
        return ("".join(filter(None, marks)) or "-") + " " + "".join(
            label.text() for label, mark in zip(labels, marks) if not mark)

    def wait_enabled(self):
        wait_for(f"{self.text()!r} to take input", self.enabled)

    def wait_gone(self, limit=LIMIT):
        wait_for(f"the end of {self.text()!r}", lambda: not self.alive(), limit)


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
        return wait_for(f"the window {title!r} (there are {[window.text() for window in self.windows()]})", ready, limit)

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

    def answer(self, caption, button=IDOK, limit=LIMIT):
        """Presses a button of a message box and returns the box's text."""
        box = self.window(caption, limit)
        text = box.message()
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
