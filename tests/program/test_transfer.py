"""Files to the portable and back, attended and unattended, on a direct cable."""

import re

from script import run, shows
from tolvan import (ID, IDCANCEL, IDOK, IDYES, LIMIT, Program, ProgramTest, crc, read_settings, wait_for,
                    windows_path)

SOH, EOT, ACK, NAK, CAN = b"\x01", b"\x04", b"\x06", b"\x15", b"\x18"
CRC_FRAME = 133  # bytes
EVERY_BYTE = bytes(range(256))
PLAIN = {"COMM": {"PROTOCOL": 0}}
SEND_TITLE, RECEIVE_TITLE = "Enter Filename To Send", "Enter Filename To Receive"
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
        sent = EVERY_BYTE + b"data"
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

    def test_cancelled_in_the_middle_and_sent_again(self):
        with Program() as program:
            screen = self.open_screen(program, b"x" * 300)
            self.begin_with_one_block(screen)
            for caption, enabled in (("Close", False), ("Browse", False), ("Cancel", True)):
                self.assertEqual(screen.button(caption).enabled(), enabled, caption)
            screen.close()
            screen.command(IDCANCEL)  # what Escape sends
            self.line.write(ACK)
            self.assertEqual(self.line.read_exactly(CRC_FRAME)[1:2], b"\x02")
            self.assertTrue(screen.alive())
            screen.click("Cancel")
            screen.wait_value("Status:", "User Abort")
            self.assertEqual(self.line.read(), CAN)
            self.line.wait_closed()
            for caption in ("Close", "Browse", "Send"):
                self.assertTrue(screen.button(caption).enabled(), caption)
            transfer = self.line.start("rx", "-c", "got", folder=self.folder)
            screen.click("Send")
            screen.wait_value("Status:", "Completed")
            self.assertEqual(transfer.finish(), 0)
            self.line.wait_closed()
            for label, value in (("Filesize:", "300"), ("Blocks:", "3"), ("Blocks Sent:", "3"),
                                 ("Bytes Sent:", "384"), ("Errors:", "0")):
                self.assertEqual(screen.value(label), value)
            self.assert_padded((self.folder / "got").read_bytes(), b"x" * 300)
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


class UpgradeTest(ProgramTest):
    def take_frames(self, screen, content, request):
        """The portable's part; it leaves the last frame unanswered."""
        screen.click("Send")
        self.line.wait_open()
        screen.wait_value("Status:", "Waiting")
        for block, at in enumerate(range(0, len(content), 1024), 1):
            self.line.write(request if block == 1 else ACK)
            data = content[at:at + 1024].ljust(1024, b"\0")
            tail = bytes([sum(data) % 256]) if request == NAK else crc(data)
            self.assertEqual(self.line.read_exactly(1027 + len(tail)), SOH + bytes([block, 255 - block]) + data + tail)

    def test_both_modes_cancel_and_the_settings_afterwards(self):
        image = (EVERY_BYTE * 20)[:4994]
        content = b"HEAD" + image + crc(image)
        own = {"BAUDRATE": "300", "PROTOCOL": "0"}
        with Program(settings={"COMM": own}) as program:
            program.command(ID.CMD_UPGRADE)
            run(program, shows("Upgrade Flash", WARNING), IDYES, shows(SEND_TITLE), self.file("NEW.UPG", content),
                shows("Upgrade Flash"))
            screen = program.screen
            screen.wait_value("Status:", "File OK")
            for request in (b"C", NAK):
                self.take_frames(screen, content, request)
                self.line.write(ACK)
                self.assertEqual(self.line.read(), EOT)
                screen.wait_value("Status:", "Completed")
                self.line.wait_closed()
            self.take_frames(screen, content[:1024], b"C")
            screen.click("Cancel")
            screen.wait_value("Status:", "User Abort")
            self.assertEqual(self.line.read(), CAN)
            run(program, "Close", shows("Tolvan*"), ID.CMD_SEND, shows(SEND_TITLE), IDCANCEL, shows("Send File"))
            self.assertEqual([program.screen.value(label) for label in ("Baud rate:", "Protocol:")], ["300", "NONE"])
            run(program, "Close", shows("Tolvan*"))
            self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["COMM"], own)


class ReceiveScreenTest(ProgramTest):
    def test_attended_receive_adds_the_filters_extension(self):
        self.file("offered", b"collected")
        with Program() as program:
            program.command(ID.CMD_RECEIVE)
            program.choose_file(RECEIVE_TITLE, self.folder / "data")
            screen = program.window("Receive File")
            transfer = self.line.start("sx", "offered", folder=self.folder)
            screen.click("Receive")
            screen.wait_value("Status:", "Completed")
            self.assertEqual(transfer.finish(), 0)
            for label, value in (("Block Count:", "1"), ("Byte Count:", "128"), ("Errors:", "0")):
                self.assertEqual(screen.value(label), value)
        self.assert_padded((self.folder / "data.TXT").read_bytes(), b"collected", padding=b"\x1a")
        self.assertFalse((self.folder / "LOG.TXT").exists())

    def test_auto_receive_in_increment_mode(self):
        self.file("DATA", b"")  # no question: it is not the name of a file to be received
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
