"""Files to the portable and back, attended and unattended, on a direct cable."""

import re

from script import run, shows
from tolvan import (ID, IDCANCEL, IDNO, IDOK, IDYES, LIMIT, Program, ProgramTest, crc, read_settings, wait_for,
                    windows_path)

SOH, EOT, ACK, CAN = b"\x01", b"\x04", b"\x06", b"\x18"
CRC_FRAME = 133  # bytes
EVERY_BYTE = bytes(range(256))
PLAIN = {"COMM": {"PROTOCOL": 0}}
SEND_TITLE = "Enter Filename To Send"
WARNING = ("WARNING: The Tolvan Portable will lose all program and data files.\n"
           "Options will be reset to factory defaults. Continue?")
LOG = """\
                             AUTO RECEIVE LOGFILE

DATE       CONNECT  DISCONNECT BAUD  PROTOCOL FLOW CONT FILENAME     SIZE   NOTES
---------- -------- ---------- ----- -------- --------- ------------ ------ -----
DATE START END   9600  XMODEM   XON/XOFF  DATA.007     384    OK
DATE START END   9600  XMODEM   XON/XOFF  DATA.008     384    OK
DATE START END   9600  XMODEM   XON/XOFF  DATA.009     128    OK
"""


class UnattendedTest(ProgramTest):
    def test_send_to_both_kinds_of_receiver(self):
        sent = EVERY_BYTE * 150 + b"end"  # block numbers pass 255
        path = self.file("sent.pgt", sent)
        for receiver in (["rx", "-c", "got-crc"], ["rx", "got-sum"]):
            with self.subTest(receiver):
                transfer = self.line.start(*receiver, folder=self.folder)
                with Program("-S=" + windows_path(path)) as program:
                    self.assertEqual(program.wait_exit(3 * LIMIT), 0)
                self.assertEqual(transfer.finish(), 0)
                self.assert_padded((self.folder / receiver[-1]).read_bytes(), sent)

    def test_receive_keeps_the_senders_fill(self):
        sent = EVERY_BYTE * 150 + b"data"
        self.file("offered", sent)
        stored = self.folder / "stored.dat"
        transfer = self.line.start("sx", "offered", folder=self.folder)
        with Program("-R=" + windows_path(stored)) as program:
            self.assertEqual(program.wait_exit(3 * LIMIT), 0)
        self.assertEqual(transfer.finish(), 0)
        self.assert_padded(stored.read_bytes(), sent, padding=b"\x1a")

    def test_plain_stream_each_way(self):
        content = EVERY_BYTE * 8
        path = self.file("sent.txt", content)
        with Program("-S=" + windows_path(path), settings=PLAIN) as program:
            self.assertEqual(self.line.read_exactly(len(content)), content)
            self.assertEqual(program.wait_exit(), 0)
        stored = self.folder / "stored.txt"
        with Program("-R=" + windows_path(stored), settings=PLAIN) as program:
            screen = program.window("Receive File")
            screen.wait_value("Status:", "Waiting")
            self.line.write(content)
            screen.wait_value("Byte Count:", str(len(content) - 1))  # the first byte is not counted
            self.assertEqual(program.wait_exit(), 0)
        self.assertEqual(stored.read_bytes(), content)


class SendScreenTest(ProgramTest):
    def open_screen(self, program, content):
        program.command(ID.CMD_SEND)
        program.choose_file(SEND_TITLE, self.file("STOCK.PGT", content))
        screen = program.window("Send File")
        wait_for("the Send button", lambda: screen.button("Send").enabled())
        return screen

    def begin_with_one_block(self, screen):
        """Sends until the first block has come whole and stands unanswered."""
        screen.click("Send")
        self.line.wait_open()
        screen.wait_value("Status:", "Waiting")
        self.line.write(b"C")
        frame = self.line.read_exactly(CRC_FRAME)
        self.assertEqual(frame[:3], SOH + b"\x01\xfe")
        self.assertEqual(screen.value("Status:"), "Sending")

    def test_cancelled_in_the_middle_and_another_chosen(self):
        with Program() as program:
            screen = self.open_screen(program, b"x" * 300)
            self.begin_with_one_block(screen)
            for caption, enabled in (("Close", False), ("Browse", False), ("Cancel", True)):
                self.assertEqual(screen.button(caption).enabled(), enabled, caption)
            screen.close()
            for command in (IDCANCEL, ID.CMD_SENDRECEIVE_SETUP):  # Escape sends the first
                screen.command(command)
            self.line.write(ACK)
            self.assertEqual(self.line.read_exactly(CRC_FRAME)[1:2], b"\x02")
            self.assertTrue(screen.alive() and screen.enabled())
            screen.click("Cancel")
            screen.wait_value("Status:", "User Abort")
            self.assertEqual(self.line.read(), CAN)
            self.line.wait_closed()
            for caption in ("Close", "Browse", "Send"):
                self.assertTrue(screen.button(caption).enabled(), caption)
            for label, value in (("Filesize:", "300"), ("Blocks:", "3"), ("Blocks Sent:", "2"),
                                 ("Bytes Sent:", "256"), ("Errors:", "0")):
                self.assertEqual(screen.value(label), value)
            screen.click("Browse")
            program.choose_file(SEND_TITLE, self.file("next.dat", b"x" * 128))
            screen.wait_value("Blocks:", "1")
            self.assertEqual([screen.value(label) for label in ("Blocks Sent:", "Status:")], ["", ""])
            screen.click("Close")
            screen.wait_gone()
            self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["DIRECT"]["S_DIRECT"], windows_path(self.folder) + "\\")

    def test_closing_the_program_ends_the_transfer(self):
        with Program() as program:
            self.begin_with_one_block(self.open_screen(program, b"x" * 1000))
            program.main.close()
            self.assertEqual(self.line.read(), CAN)
            self.assertEqual(program.wait_exit(), 0)

    def test_unplugged_port_ends_the_transfer(self):
        with Program() as program:
            screen = self.open_screen(program, b"x" * 1000)
            self.begin_with_one_block(screen)
            self.line.write(ACK)
            self.line.close()
            wait_for("the end of the transfer", lambda: screen.button("Close").enabled(), 2 * LIMIT)
            self.assertIn(screen.value("Status:"), ("Transmit Error", "Timeout Error"))
            screen.click("Send")
            self.assertRegex(program.answer("Tolvan Programmer"), "Error (Opening|Initializing) Com Port.")


class UpgradeTest(ProgramTest):
    def assert_settings(self, program, *settings):
        run(program, ID.CMD_SEND, shows(SEND_TITLE), IDCANCEL, shows("Send File"))
        self.assertEqual([program.screen.value(label) for label in ("Baud rate:", "Protocol:")], [*settings])
        run(program, "Close", shows("Tolvan*"))

    def test_valid_files_only_and_the_settings_afterwards(self):
        image = (EVERY_BYTE * 20)[:4994]
        content = b"HEAD" + image + crc(image)
        path = self.file("NEW.UPG", content + b"?")
        own = {"BAUDRATE": "300", "PROTOCOL": "0"}
        refused = [shows("Tolvan Programmer", "Invalid Upgrade File"), IDOK, shows("Upgrade Flash")]
        with Program(settings={"COMM": own}) as program:
            program.command(ID.CMD_UPGRADE)
            run(program, shows("Upgrade Flash", WARNING), IDYES, shows(SEND_TITLE), path, refused)
            screen = program.screen
            self.assertEqual([screen.value("Status:"), screen.button("Send").enabled()], ["Flash Error", False])
            self.file("NEW.UPG", content)
            run(program, "Browse", shows(SEND_TITLE), path, shows("Upgrade Flash"))
            screen.wait_value("Status:", "File OK")
            screen.click("Send")
            screen.wait_value("Status:", "Waiting")
            for block, request in enumerate((b"C", ACK, ACK, ACK, ACK), 1):
                self.line.write(request)
                data = content[block * 1024 - 1024:block * 1024].ljust(1024, b"\0")
                self.assertEqual(self.line.read_exactly(1029), SOH + bytes([block, 255 - block]) + data + crc(data))
            self.line.write(ACK)
            self.assertEqual(self.line.read(), EOT)
            screen.wait_value("Status:", "Completed")
            self.file("NEW.UPG", content + b"?")  # since it was chosen
            run(program, "Send", refused, "Close", shows("Tolvan*"))
            self.assert_settings(program, "300", "NONE")
            run(program, ID.CMD_UPGRADE, shows("Upgrade Flash", WARNING), IDNO, shows("Tolvan*"))
            self.assert_settings(program, "38400", "XMODEM")
            self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["COMM"], own)


class ReceiveScreenTest(ProgramTest):
    def test_auto_receive_in_increment_mode(self):
        self.file("DATA", b"")  # no question: it is not the name of a file to be received
        self.file("DATA.007", b"an older file, overwritten" * 50)
        contents = [EVERY_BYTE + b"first", b"second" * 50, b"third" + bytes(123)]
        with Program(settings={"COMM": {"FILEMODE": 1}}, folder=self.folder) as program:
            program.command(ID.CMD_AUTO_RECEIVE)
            program.choose_file("Enter Filename Without Extension To Receive", self.folder / "DATA")
            prompt = program.window("Extension Starting Number")
            spin, = [child for child in prompt.children() if child.known["class"] == "msctls_updown32"]
            for _ in range(7):
                spin.press(3, 3)
            prompt.command(IDOK)
            prompt.wait_gone()
            screen = program.window("Auto Receive File")
            screen.click("Receive")
            for content in contents:
                screen.wait_value("Status:", "Waiting")
                self.file("offered", content)
                self.assertEqual(self.line.start("sx", "offered", folder=self.folder).finish(), 0)
            wait_for("the fourth pass", lambda: "DATA.010" in [c.known["text"] for c in screen.children()])
            screen.click("Cancel")
            screen.wait_value("Status:", "User Abort")
            screen.click("Close")
            screen.wait_gone()
            self.assertEqual(program.exit(), 0)
        for number, content in enumerate(contents, 7):  # sx fills with 0x1A; NULs at the end of a file are dropped
            self.assertEqual((self.folder / f"DATA.{number:03}").read_bytes(),
                             (content + b"\x1a" * (-len(content) % 128)).rstrip(b"\0"))
        log = (self.folder / "LOG.TXT").read_bytes().decode("latin-1")
        self.assertEqual(re.sub(r"\d\d-\d\d-\d{4}( \d\d:\d\d [ap]m){2}", "DATE START END", log), LOG)
