"""The other end of the program's COM1."""

import os
import pathlib
import select
import sys
import threading
import time

from desktop import LIMIT, POLL, wait_for

ROOT = pathlib.Path(__file__).resolve().parents[2]
COM1 = ROOT / "build/test-com1"
sys.path.insert(0, str(ROOT / "tools"))
import portable  # noqa: E402 (the stand-in's line procedures)


class Line:
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
