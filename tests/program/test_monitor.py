"""The monitor: its settings, captures from the line and the keyboard, its files, and how it ends."""

import fcntl
import random
import termios
import time

from desktop import (IDCANCEL, IDNO, IDOK, IDYES, SC_MINIMIZE, VK_CONTROL, VK_ESCAPE, VK_PRIOR, VK_RETURN, WM_COMMAND,
                     WM_KEYDOWN, WM_KEYUP, WM_SYSCOMMAND, call, focused, settle, text_in)
from line import COM1
from script import ScriptTest, asks, key, run, shows
from tolvan import ID, read_settings

BYTES_A_SECOND, DRIVER_QUEUE, LINE_LIMIT = 3840, 4095, 40  # at 38400 bit/s; bytes; characters
CONTROL_NAMES = ("NUL SOH STX ETX EOT ENQ ACK BEL BS HT LF VT FF CR SO SI "
                 "DLE DC1 DC2 DC3 DC4 NAK SYN ETB CAN EM SUB ESC FS GS RS US").split()
SETTINGS = {"MONITOR": {"M_PORT": 1, "M_BAUDRATE": 38400, "M_FKEYS": 0, "M_SKEYS": 0}}
IDLE_TIME, IDLE_SHARE = 10, 0.05  # seconds; of one core
SC_KEYMENU, WM_KILLFOCUS, WM_SYSKEYDOWN, WM_SYSKEYUP = 0xF100, 0x8, 0x104, 0x105
VK_MENU, VK_SNAPSHOT, VK_F4, VK_F10 = 0x12, 0x2C, 0x73, 0x79
MF_GRAYED, MF_CHECKED, SB_VERT = 1, 8, 1
BOX, MAIN, SETUP = "Tolvan Programmer", "Tolvan Programmer V1.17*", "Communication Setup"
PROMPTS = [  # in the menu's order: key, name, first and last choice, and what the last is stored as
    ("M_PORT", "Serial Port", "NONE", "COM:4", "4"), ("M_BAUDRATE", "Baud Rate", "300", "38400", "38400"),
    ("M_DATABITS", "Data Bits", "7", "8", "8"), ("M_STOPBITS", "Stop Bits", "1", "2", "2"),
    ("M_PARITY", "Parity", "None", "Even", "2"), ("M_XON", "Use XON/XOFF", "No", "Yes", "1"),
    ("M_FKEYS", "Function Keys", "None", "Both", "3"), ("M_SKEYS", "Special Keys", "None", "Both", "3"),
    ("M_CR", "Translate {CR}", "No", "Yes", "1")]
SETTING_COMMANDS = range(ID.CMD_MON_SETTING, ID.CMD_MON_SETTING + len(PROMPTS))


def token(byte):
    if byte < 0x20:
        return f"{{{CONTROL_NAMES[byte]}}}"
    if byte < 0x80:
        return chr(byte) if byte < 0x7F else ""
    return f"{{{byte:02X}H}}" if byte < 0xFF else "{0FFH}"


def captured(data):
    """The capture file of these bytes."""
    lines = [""]
    for text in map(token, data):
        if len(lines[-1] + text) > LINE_LIMIT:
            lines.append("")
        lines[-1] += text
        if text == "{CR}":
            lines.append("")
    return "".join(line + "\n" for line in lines).encode()


def in_monitor(program):
    """Goes on in the monitor's window, wherever it lies."""
    program.screen = program.monitor()


def in_main(program):
    program.screen = program.main


OPENS = [in_main, ID.CMD_MONITOR, in_monitor]


def ends(program):
    """A monitor in capture closes once its loop has ended."""
    program.screen.close()
    program.screen.wait_gone()


def says(command, text, answer=IDOK):
    return [command, asks(text, answer, MAIN, BOX), in_monitor]


def saves(path):
    return [ID.CMD_SAVE, shows("Save As"), path, shows(MAIN), in_monitor]


def takes(message, *parameters):
    return lambda program: [*(program.screen.post(message, parameter) for parameter in parameters), settle()]


def menu_text(monitor, command):
    text = bytearray(100)
    call("GetMenuStringA", monitor.get("GetMenu"), command, text, len(text), 0)
    return text_in(text)


def menu_states(monitor, flag):
    """The commands that have it."""
    commands = [ID.CMD_OPEN, ID.CMD_SAVE, ID.CMD_MON_PRINT, ID.CMD_MON_CLOSE, ID.CMD_MON_CAPTURE, *SETTING_COMMANDS]
    return [command for command in commands if call("GetMenuState", monitor.get("GetMenu"), command, 0) & flag]


class MonitorTest(ScriptTest):
    def capture(self, program):
        run(program, ID.CMD_MON_CAPTURE)
        self.line.wait_open()

    def send_at_line_speed(self, data, events):
        """Also does the events, at even distances. A port's driver would lose what a pseudo-terminal keeps."""
        began, sent, unread, step = time.monotonic(), 0, 0, len(data) // (len(events) + 1)
        with open(COM1, "rb", buffering=0) as port:
            while sent < len(data):
                due = min(len(data), int((time.monotonic() - began) * BYTES_A_SECOND))
                self.line.write(data[sent:due])
                sent = due
                if events and len(data) - sent <= step * len(events):
                    events.pop(0)()
                time.sleep(0.005)
                unread = max(unread, int.from_bytes(fcntl.ioctl(port, termios.FIONREAD, bytes(4)), "little"))
        self.assertLess(unread, DRIVER_QUEUE)

    def test_settings_are_chosen_shown_and_stored(self):
        def is_focused(caption):
            return lambda _: self.assertEqual(focused().text(), caption)

        program = self.start(OPENS)
        for command, (_, name, first, last, _) in zip(SETTING_COMMANDS, PROMPTS):
            for steps in ([last, key(VK_RETURN)], [first, key(VK_ESCAPE)], [is_focused(last), key(VK_ESCAPE)]):
                run(program, command, shows(name), steps, shows(MAIN), in_monitor)
        self.assertEqual([menu_text(program.screen, command) for command in SETTING_COMMANDS],
                         [f"{name} [{last}]" for _, name, _, last, _ in PROMPTS])
        self.assertEqual(read_settings()["MONITOR"], {name: stored for name, *_, stored in PROMPTS})

    def test_captures_the_keyboard_alone(self):
        program = self.start(
            OPENS, says(ID.CMD_SAVE, "X No Captured Data to Save."),
            says(ID.CMD_MON_PRINT, "X No Captured Data to Print."),
            says(ID.CMD_MON_CAPTURE, "X Error Opening Com Port."), settings={"MONITOR": {"M_PORT": 9}})
        monitor = program.screen
        self.assertEqual(monitor.text(), "Tolvan Monitor--Capture Mode[ON]")
        self.assertEqual(menu_states(monitor, MF_CHECKED), [ID.CMD_MON_CAPTURE])
        self.assertEqual(menu_states(monitor, MF_GRAYED),
                         [ID.CMD_OPEN, ID.CMD_SAVE, ID.CMD_MON_PRINT, *SETTING_COMMANDS[:6]])
        run(program, takes(WM_SYSKEYDOWN, VK_MENU, VK_F4),  # neither the menu nor the end
            takes(WM_SYSKEYUP, VK_F4, VK_MENU, VK_F10), takes(WM_KEYDOWN, VK_CONTROL),
            takes(WM_KILLFOCUS, 0),  # takes its release away
            takes(WM_KEYUP, ord("B"), VK_SNAPSHOT), takes(WM_SYSCOMMAND, SC_MINIMIZE))
        self.assertTrue(monitor.get("IsIconic"))
        run(program, OPENS, takes(WM_KEYUP, *[VK_RETURN] * 40), takes(WM_COMMAND, ID.CMD_MON_CAPTURE))
        self.assertEqual([window for window in program.windows() if window.kind() == "MONITOR"], [monitor])
        self.assertEqual((monitor.text(), monitor.get("IsIconic")), ("Tolvan Monitor--Capture Mode[OFF]", 0))
        self.assertEqual(monitor.get("GetScrollPos", SB_VERT), 41 - 15)
        run(program, takes(WM_KEYDOWN, VK_PRIOR), says(ID.CMD_OPEN, "? Overwrite Captured Data?", IDNO))
        self.assertEqual(monitor.get("GetScrollPos", SB_VERT), 41 - 17 - 16)
        run(program, saves(self.folder / "keys"))
        self.assert_holds("keys.cap", b"{Alt {F4}}{F10}b{PrtScr}{CR}\n" + b"{CR}\n" * 39 + b"\n")

    def test_loses_nothing_at_full_speed(self):
        sent = random.Random(1).randbytes(100_000)
        program = self.start(OPENS, self.capture, settings=SETTINGS)
        monitor = program.screen
        self.send_at_line_speed(sent, [
            lambda: program.command(ID.CMD_ABOUT), lambda: program.window("About Tolvan Programmer").command(IDOK),
            lambda: monitor.post(WM_SYSCOMMAND, SC_KEYMENU, ord("s")),
            lambda: [monitor.post(WM_KEYDOWN, VK_ESCAPE) for _ in range(2)]])
        time.sleep(1)  # until the last bytes are read
        run(program, ID.CMD_MON_CAPTURE)
        self.line.wait_closed()
        first, again = self.folder / "first.cap", self.folder / "v1.again"
        run(program, saves(self.folder / "first"), ID.CMD_OPEN, asks("? Overwrite Captured Data?", IDYES, "Open", BOX),
            first, shows(MAIN), in_monitor, saves(again))
        for path in (first, again):
            self.assert_holds(path, captured(sent))

    def test_idles_and_ends_in_capture(self):
        def processor_time():
            times = [bytearray(8) for _ in range(4)]  # the last two in the system and in the program, in 100 ns
            call("GetProcessTimes", -1, *times)
            return sum(int.from_bytes(part, "little") for part in times[2:]) / 10_000_000

        program = self.start(OPENS, self.capture, settings=SETTINGS)
        before = processor_time()
        time.sleep(IDLE_TIME)
        self.assertLess(processor_time() - before, IDLE_TIME * IDLE_SHARE)
        run(program, ends)
        self.line.wait_closed()
        # Begun behind a dialog, capture must not keep the dialog from ending.
        run(program, OPENS, in_main, ID.CMD_COMM_SETUP, shows(SETUP), in_monitor, self.capture)
        setup = program.window(SETUP)
        setup.command(IDCANCEL)
        setup.wait_gone()
        run(program, ends, OPENS, self.capture)
        self.assertEqual(program.exit(), 0)  # with the capture
        self.line.wait_closed()
