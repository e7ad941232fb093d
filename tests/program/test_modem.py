"""Dialling and hanging up, with a scripted modem at the other end of the line."""

import time

from desktop import VK_ESCAPE
from script import ScriptTest, holds, key, run, shows, waits
from test_transfer import MAIN, SEND, SEND_TITLE
from tolvan import FAKE_MODEM, ID

CARRIER = 64  # TIOCM_CD
PROMPT = "Phone Number"
NUMBER = "1 555 0100" + "7" * 19  # as long as it may be


class ModemTest(ScriptTest):
    def set_carrier(self, on):
        # Renamed into place, so that the program never reads half a file.
        return self.file("modem-lines.new", str(CARRIER * on).encode()).rename(self.folder / "modem-lines")

    def expect_after(self, wanted, seconds):
        """The bytes come, and nothing earlier than after a pause of so many seconds."""
        began = time.monotonic()
        self.assertEqual(self.line.expect(wanted), wanted)
        self.assertGreaterEqual(time.monotonic() - began, seconds)

    def test_dial_transfer_and_hang_up(self):
        path = self.file("STOCK.PGT", b"stock" * 100)
        program = self.start(
            ID.CMD_SEND, shows(SEND_TITLE), path, shows(SEND), "Send", shows(PROMPT), key("5", VK_ESCAPE), shows(SEND),
            "Send", shows(PROMPT), holds("Number to dial: "), f"Number to dial: {NUMBER}7", "OK",
            settings={"COMM": {"INTERFACE": 1, "DIALMETHOD": 1, "MODEM_INIT": "ATZ"}},
            environment={"LD_PRELOAD": str(FAKE_MODEM), "FAKE_MODEM_LINES": str(self.set_carrier(False))})
        self.assertEqual(self.line.expect(b"\r"), b"ATZ\r")
        self.expect_after(b"ATDP" + NUMBER.encode() + b"\r", 0.9)
        self.set_carrier(True)
        time.sleep(5)  # the program gives the modem this time before it looks
        self.line.write(b"\r\nCONNECT 9600\r\n")
        time.sleep(1)
        self.assertEqual(self.line.start("rx", "-c", "got", folder=self.folder).finish(), 0)
        self.set_carrier(False)
        self.expect_after(b"+++", 1.4)
        self.expect_after(b"AT H0\r", 1.4)
        self.assert_padded((self.folder / "got").read_bytes(), path.read_bytes())
        run(program, shows(SEND), waits("Status: Completed"), "Send", shows(PROMPT), holds("Number to dial: " + NUMBER),
            key(VK_ESCAPE), shows(SEND), "Close", shows(MAIN))
        self.assertEqual(program.exit(), 0)
