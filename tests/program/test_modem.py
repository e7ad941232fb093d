"""Dialling and hanging up, with a scripted modem at the other end of the line."""

import time

from tolvan import FAKE_MODEM, ID, IDCANCEL, IDOK, Program, ProgramTest, windows_path

CARRIER = 64  # TIOCM_CD
MODEM = {"INTERFACE": 1}
PHONE_PROMPT = "Phone Number"


class ModemTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.lines = self.file("modem-lines", b"0")
        self.environment = {"LD_PRELOAD": str(FAKE_MODEM), "FAKE_MODEM_LINES": str(self.lines)}
        self.path = self.file("STOCK.PGT", b"stock" * 100)

    def set_carrier(self, on):
        # Renamed into place, so that the program never reads half a file.
        self.file("modem-lines.new", str(CARRIER * on).encode()).rename(self.lines)

    def start(self, *arguments, **settings):
        return Program(*arguments, settings={"COMM": {**MODEM, **settings}}, environment=self.environment)

    def answer_prompt(self, program, number):
        prompt = program.window(PHONE_PROMPT)
        prompt.control(ID.IDC_PHONE_NUMBER).set_text(number)
        prompt.command(IDOK)

    def expect_after(self, wanted, seconds):
        """The bytes come, and nothing earlier than after a pause of so many seconds."""
        began = time.monotonic()
        self.assertEqual(self.line.expect(wanted), wanted)
        self.assertGreaterEqual(time.monotonic() - began, seconds)

    def expect_hang_up(self):
        self.set_carrier(False)
        self.expect_after(b"+++", 1.4)
        self.expect_after(b"AT H0\r", 1.4)

    def connect(self, program, dialled):
        self.answer_prompt(program, "1 555 0100")
        self.assertEqual(self.line.expect(b"\r"), b"ATZ\r")
        self.expect_after(dialled, 0.9)
        self.set_carrier(True)
        time.sleep(5)  # the program gives the modem this time before it looks
        self.line.write(b"\r\nCONNECT 9600\r\n")

    def test_dial_transfer_and_hang_up(self):
        for method, dialled in ((0, b"ATDT1 555 0100\r"), (1, b"ATDP1 555 0100\r")):
            argument = "-S=" + windows_path(self.path)
            with self.subTest(dialled), self.start(argument, DIALMETHOD=method, MODEM_INIT="ATZ") as program:
                self.connect(program, dialled)
                time.sleep(1)
                self.assertEqual(self.line.start("rx", "-c", "got", folder=self.folder).finish(), 0)
                self.expect_hang_up()
                self.assertEqual(program.wait_exit(), 0)
                self.assert_padded((self.folder / "got").read_bytes(), self.path.read_bytes())
            (self.folder / "got").unlink()

    def test_carrier_lost_in_the_middle(self):
        with self.start(MODEM_INIT="ATZ") as program:
            screen = self.send_through_menu(program)
            self.connect(program, b"ATDT1 555 0100\r")
            screen.wait_value("Status:", "Waiting")
            time.sleep(1)
            self.line.write(b"C")
            self.assertEqual(len(self.line.read_exactly(133)), 133)
            self.expect_hang_up()
            screen.wait_value("Status:", "No Carrier")

    def test_cancelled_prompt_dials_nothing(self):
        with self.start() as program:
            screen = self.send_through_menu(program)
            program.window(PHONE_PROMPT).command(IDCANCEL)
            screen.wait_value("Status:", "Dial Canceled")
            self.line.wait_closed()
            self.assertEqual(self.line.read(0.2), b"")

    def test_answering_a_call(self):
        self.file("offered", b"collected")
        stored = self.folder / "stored.dat"
        with self.start("-R=" + windows_path(stored)) as program:
            self.assertEqual(self.line.expect(b"\r"), b"AT&F&C1\r")
            self.set_carrier(True)
            time.sleep(1)
            self.line.write(b"\r\nCONNECT\r\n")
            self.assertEqual(self.line.start("sx", "offered", folder=self.folder).finish(), 0)
            self.expect_hang_up()
            self.assertEqual(program.wait_exit(), 0)
        self.assert_padded(stored.read_bytes(), b"collected", padding=b"\x1a")

    def send_through_menu(self, program):
        program.command(ID.CMD_SEND)
        program.choose_file("Enter Filename To Send", self.path)
        screen = program.window("Send File")
        screen.click("Send")
        return screen
