"""The windows of the running program, through the library that was loaded into it. Every wait has a limit and fails the
test with what it waited for."""

import re
import select
import struct
import time

LIMIT = 20  # seconds; what takes longer by its nature says so
POLL = 0.02  # seconds

WM_NULL, WM_SETTEXT, WM_GETTEXT, WM_CLOSE, WM_NEXTDLGCTL, WM_COMMAND = 0, 0xC, 0xD, 0x10, 0x28, 0x111
WM_KEYDOWN, WM_KEYUP, WM_CHAR, WM_SYSCOMMAND, SC_MINIMIZE = 0x100, 0x101, 0x102, 0x112, 0xF020
WM_LBUTTONDOWN, WM_LBUTTONUP = 0x201, 0x202
BM_GETCHECK, CB_GETCOUNT, CB_GETLBTEXT, STM_GETICON = 0xF0, 0x146, 0x148, 0x171
LB_GETTEXT, LB_GETCOUNT, LB_GETTOPINDEX, LB_SETTOPINDEX, LB_GETITEMHEIGHT = 0x189, 0x18B, 0x18E, 0x197, 0x1A1
VK_TAB, VK_RETURN, VK_SHIFT, VK_CONTROL, VK_ESCAPE, VK_SPACE = 0x09, 0x0D, 0x10, 0x11, 0x1B, 0x20
VK_PRIOR, VK_NEXT, VK_END, VK_HOME = 0x21, 0x22, 0x23, 0x24
VK_UP, VK_DOWN, VK_INSERT, VK_DELETE = 0x26, 0x28, 0x2D, 0x2E
DIALOG_CLASS = "#32770"
ICONS = {32513: "X", 32514: "?", 32515: "!", 32516: "i"}  # of message boxes, by their numbers in the system
TEXT_LIMIT = 1024  # bytes
IDOK, IDCANCEL, IDYES, IDNO = 1, 2, 6, 7


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


class Bridge:
    """Into the program that was started last: its process, and its thread once the main window is there."""
    process, thread = None, 0


def call(name, *arguments):
    """The result, a number of 32 bits. A text goes as bytes and a NUL; a bytearray comes back as the call left it."""
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
    info = bytearray(struct.pack("i68x", 72))  # a GUITHREADINFO: its size in front, the focus as the fifth number
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
