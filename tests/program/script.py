"""What a person does in the window in front, as a list of steps.

"Insert" pushes a button and "Prompt Text: QTY" types behind a label, with | between several of both; a number is a
command or an answer, a path goes to a file dialog, a list is a script within the script, and the rest are procedures
below. Whatever opens or closes a window is followed by shows(), which finds the next window in front.
"""

import fnmatch
import os
import pathlib
import re
import shutil
import tempfile
import unittest

from desktop import (IDOK, LB_GETITEMHEIGHT, LB_GETTOPINDEX, LB_SETTOPINDEX, VK_DOWN, VK_UP, WM_KEYDOWN, WM_NEXTDLGCTL,
                     focused, plain, press, settle, wait_for)
from line import Line
from looks import is_own, looks
from tolvan import TITLE, Program, windows_path

FILE_NAME_EDIT = 0x47C  # of the file dialogs
LOOKED_AT = set()  # dialogs by their titles


def run(program, *script):
    for step in script:
        if callable(step):
            step(program)
        elif isinstance(step, list):
            run(program, *step)
        elif isinstance(step, str):
            for part in step.split("|"):
                settle()
                label, colon, text = part.partition(": ")
                program.screen.type(label, text) if colon else program.screen.button(part).push()
        else:
            settle()
            if not isinstance(step, int):
                program.screen.control(FILE_NAME_EDIT).set_text(windows_path(step))
            program.screen.command(step if isinstance(step, int) else IDOK)


def shows(title, text=None):
    """Waits until a window is in front: a message box with this text, or a dialog."""
    def wait(program):
        def is_there():
            program.screen = program.front()
            return program.screen and fnmatch.fnmatchcase(program.screen.text(), title) and (
                text is None or program.screen.message() == text)
        settle()  # a window that is ending may still be in front
        try:
            wait_for((title, text), is_there)
        except AssertionError as error:
            shown = program.screen and (program.screen.text(), program.screen.message())
            raise AssertionError(f"{error}; there is {shown}") from None
        settle()  # a title may change before a file is written
        name = re.split("[(#]", program.screen.text())[0]
        if name not in LOOKED_AT and program.screen != program.main and is_own(program.screen):
            LOOKED_AT.add(name)
            looks(program)
    return wait


def asks(text, answer, then, title=TITLE):
    return [shows(title, text), answer, shows(then)]


def the_list(program):
    return next(child for child in program.screen.children() if child.kind() == "ListBox")


def row(number):
    """Clicks a row of the list, counting from 1; 0 is the last."""
    def click(program):
        rows = the_list(program)
        index = (number or len(rows.entries())) - 1
        rows.send(LB_SETTOPINDEX, index)
        height = rows.send(LB_GETITEMHEIGHT)
        rows.push(5, (index - rows.send(LB_GETTOPINDEX)) * height + height // 2)
        wait_for("the list to have the focus", lambda: focused() == rows)
    return click


def key(*keys):
    return lambda program: press(*keys)


def spin(label, directions):
    """Clicks the arrows beside the edit behind a label, + for up and - for down."""
    def press(program):
        arrows = program.screen.find(label)[2]
        width, height = arrows.size()
        for direction in directions:
            arrows.push(width // 2, height // 4 if direction == "+" else height * 3 // 4)
    return press


def step_by_keys(label, directions):
    """The same with the arrow keys, in the edit."""
    def press(program):
        edit = program.screen.after(label)
        program.screen.send(WM_NEXTDLGCTL, edit.handle, 1)
        for direction in directions:
            edit.tell(WM_KEYDOWN, VK_UP if direction == "+" else VK_DOWN)
    return press


def closes(program):
    program.screen.close()


def holds(values):
    """Compares what stands behind labels and captions, and the ticks of boxes."""
    def compare(program):
        settle()
        for part in values.split("|"):
            label, colon, value = part.partition(": ")
            found = program.screen.find(label)
            held = found[1].text() if colon else found[0].ticked()
            assert held == (value if colon else 1), f"{label} {held!r} instead of {part!r}"
    return compare


def disabled(*captions):
    """Compares what is disabled: buttons by their captions, others by their labels, and arrows by a + behind those."""
    def compare(program):
        settle()
        children, off = program.screen.children(), ""
        for before, control in zip(children, children[1:]):
            if not control.enabled():
                label = control if control.kind() == "Button" else before
                off += "+" if control.kind() == "msctls_updown32" else "|" + plain(label.text())
        assert off[1:] == "|".join(captions), off
    return compare


def waits(values):
    """Waits until these values stand behind their labels."""
    return lambda program: [program.screen.wait_value(*part.split(": ")) for part in values.split("|")]


def cancels(program):
    """By the mouse: a transfer takes only what is posted."""
    program.screen.click("Cancel")
    program.screen.wait_value("Status:", "User Abort")


class ScriptTest(unittest.TestCase):
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

    def start(self, *script, arguments=(), **options):
        program = self.enterContext(Program(*arguments, **options))
        program.screen = program.main
        run(program, *script)
        return program

    def assert_holds(self, name, content):
        """Shows where a file begins to differ."""
        stored = (self.folder / name).read_bytes()
        same = len(os.path.commonprefix([stored, content]))
        self.assertEqual(stored[same:][:50], content[same:][:50], f"{name} from byte {same}")
