"""The monitor: captures from the line, its files, and how it ends."""

import fcntl
import random
import termios
import time

from desktop import IDCANCEL, IDOK, IDYES, WM_KEYDOWN, WM_NULL, WM_SYSCOMMAND, call
from line import COM1
from tolvan import ID, Program, ProgramTest

BYTES_A_SECOND, DRIVER_QUEUE, LINE_LIMIT = 3840, 4095, 40  # at 38400 bit/s; bytes; characters
CONTROL_NAMES = ("NUL SOH STX ETX EOT ENQ ACK BEL BS HT LF VT FF CR SO SI "
                 "DLE DC1 DC2 DC3 DC4 NAK SYN ETB CAN EM SUB ESC FS GS RS US").split()
SETTINGS = {"MONITOR": {"M_PORT": 1, "M_BAUDRATE": 38400, "M_FKEYS": 0, "M_SKEYS": 0}}
IDLE_TIME, IDLE_SHARE = 10, 0.05  # seconds; of one core
SC_KEYMENU, VK_ESCAPE = 0xF100, 0x1B


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


class MonitorTest(ProgramTest):
    def open_monitor(self, program):
        program.command(ID.CMD_MONITOR)
        return program.monitor()

    def capture(self, monitor):
        monitor.command(ID.CMD_MON_CAPTURE)
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

    def save(self, program, monitor, name):
        monitor.command(ID.CMD_SAVE)
        program.choose_file("Save As", self.folder / name)
        monitor.send(WM_NULL)  # is answered when the file is written

    def test_loses_nothing_at_full_speed(self):
        sent = random.Random(1).randbytes(100_000)
        program = self.enterContext(Program(settings=SETTINGS))
        monitor = self.open_monitor(program)
        self.capture(monitor)
        self.send_at_line_speed(sent, [
            lambda: program.command(ID.CMD_ABOUT), lambda: program.window("About Tolvan Programmer").command(IDOK),
            lambda: monitor.post(WM_SYSCOMMAND, SC_KEYMENU, ord("s")),
            lambda: [monitor.post(WM_KEYDOWN, VK_ESCAPE) for _ in range(2)]])
        time.sleep(1)  # until the last bytes are read
        monitor.command(ID.CMD_MON_CAPTURE)
        self.line.wait_closed()
        self.save(program, monitor, "first")
        self.assertEqual((self.folder / "first.cap").read_bytes(), captured(sent))
        monitor.command(ID.CMD_OPEN)
        self.assertEqual(program.answer("Tolvan Programmer", IDYES), "? Overwrite Captured Data?")
        program.choose_file("Open", self.folder / "first.cap")
        self.save(program, monitor, "v1.again")
        self.assertEqual((self.folder / "v1.again").read_bytes(), captured(sent))

    def test_idles_and_ends_in_capture(self):
        def processor_time():
            times = [bytearray(8) for _ in range(4)]  # the last two in the system and in the program, in 100 ns
            call("GetProcessTimes", -1, *times)
            return sum(int.from_bytes(part, "little") for part in times[2:]) / 10_000_000

        program = self.enterContext(Program(settings=SETTINGS))
        monitor = self.open_monitor(program)
        self.capture(monitor)
        before = processor_time()
        time.sleep(IDLE_TIME)
        self.assertLess(processor_time() - before, IDLE_TIME * IDLE_SHARE)
        monitor.close()
        monitor.wait_gone()
        self.line.wait_closed()
        # Begun behind a dialog, capture must not keep the dialog from ending.
        monitor = self.open_monitor(program)
        program.command(ID.CMD_COMM_SETUP)
        setup = program.window("Communication Setup")
        self.capture(monitor)
        setup.command(IDCANCEL)
        setup.wait_gone()
        monitor.close()
        monitor.wait_gone()
        self.capture(self.open_monitor(program))  # which ends with the program
        self.assertEqual(program.exit(), 0)
        self.line.wait_closed()
