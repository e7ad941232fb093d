"""Dialling and hanging up, with a scripted modem at the other end of the line."""

import time

from desktop import IDOK
from tolvan import FAKE_MODEM, ID, Program, ProgramTest, windows_path

CARRIER = 64  # TIOCM_CD


class ModemTest(ProgramTest):
    def set_carrier(self, on):
        # Renamed into place, so that the program never reads half a file.
        return self.file("modem-lines.new", str(CARRIER * on).encode()).rename(self.folder / "modem-lines")

    def expect_after(self, wanted, seconds):
        """The bytes come, and nothing earlier than after a pause of so many seconds."""
        began = time.monotonic()
        self.assertEqual(self.line.expect(wanted), wanted)
        self.assertGreaterEqual(time.monotonic() - began, seconds)

    def test_dial_transfer_and_hang_up(self):
        settings = {"COMM": {"INTERFACE": 1, "DIALMETHOD": 1, "MODEM_INIT": "ATZ"}}
        path = self.file("STOCK.PGT", b"stock" * 100)
        environment = {"LD_PRELOAD": str(FAKE_MODEM), "FAKE_MODEM_LINES": str(self.set_carrier(False))}
        with Program("-S=" + windows_path(path), settings=settings, environment=environment) as program:
            prompt = program.window("Phone Number")
            prompt.control(ID.IDC_PHONE_NUMBER).set_text("1 555 0100")
            prompt.command(IDOK)
            self.assertEqual(self.line.expect(b"\r"), b"ATZ\r")
            self.expect_after(b"ATDP1 555 0100\r", 0.9)
            self.set_carrier(True)
            time.sleep(5)  # the program gives the modem this time before it looks
            self.line.write(b"\r\nCONNECT 9600\r\n")
            time.sleep(1)
            self.assertEqual(self.line.start("rx", "-c", "got", folder=self.folder).finish(), 0)
            self.set_carrier(False)
            self.expect_after(b"+++", 1.4)
            self.expect_after(b"AT H0\r", 1.4)
            self.assertEqual(program.wait_exit(), 0)
        self.assert_padded((self.folder / "got").read_bytes(), path.read_bytes())
