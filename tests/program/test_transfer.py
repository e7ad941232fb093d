"""Files to the portable and back, attended and unattended, on a direct cable."""

import re

from desktop import IDCANCEL, IDNO, IDOK, IDYES, LIMIT, wait_for
from script import holds, run, shows, spin
from tolvan import ID, Program, ProgramTest, crc, read_settings, windows_path

SOH, EOT, ACK, CAN = b"\x01", b"\x04", b"\x06", b"\x18"
CRC_FRAME = 133  # bytes
EVERY_BYTE = bytes(range(256))
PLAIN = {"COMM": {"PROTOCOL": 0}}
MAIN = "Tolvan*"
SEND_TITLE = "Enter Filename To Send"
WARNING = ("X WARNING: The Tolvan Portable will lose all program and data files.\n"
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
    def test_xmodem_each_way(self):
        sent = EVERY_BYTE * 150 + b"end"  # block numbers pass 255
        path = self.file("sent.pgt", sent)
        for option, *portable in (("-S=", "rx", "-c", "got-crc"), ("-S=", "rx", "got-sum"), ("-R=", "sx", "sent.pgt")):
            with self.subTest(portable):
                sends = option == "-S="
                stored = self.folder / (portable[-1] if sends else "stored.dat")
                transfer = self.line.start(*portable, folder=self.folder)
                with Program(option + windows_path(path if sends else stored)) as program:
                    self.assertEqual(program.wait_exit(3 * LIMIT), 0)
                self.assertEqual(transfer.finish(), 0)
                self.assert_padded(stored.read_bytes(), sent, b"\0" if sends else b"\x1a")  # the sender's fill stays

    def test_plain_stream_each_way(self):
        content = EVERY_BYTE * 8
        path = self.file("sent.txt", content)
        with Program("-S=" + windows_path(path), settings=PLAIN) as program:
            self.assertEqual(self.line.read_exactly(len(content)), content)
            self.assertEqual(program.wait_exit(), 0)
        with Program("-R=" + windows_path(path), settings=PLAIN) as program:
            screen = program.window("Receive File")
            screen.wait_value("Status:", "Waiting")
            self.line.write(content[::-1])
            screen.wait_value("Byte Count:", str(len(content) - 1))  # the first byte is not counted
            self.assertEqual(program.wait_exit(), 0)
        self.assertEqual(path.read_bytes(), content[::-1])


class SendScreenTest(ProgramTest):
    def begin(self, program, how, content):
        """Sends until the first block has come whole and stands unanswered."""
        run(program, how, shows(SEND_TITLE), self.file("STOCK.PGT", content), shows("Send File"),
            holds("Blocks Sent: |Status: "), "Send")
        self.line.wait_open()
        program.screen.wait_value("Status:", "Waiting")
        self.line.write(b"C")
        frame = self.line.read_exactly(CRC_FRAME)
        self.assertEqual(frame[:3], SOH + b"\x01\xfe")
        self.assertEqual(program.screen.value("Status:"), "Sending")
        return program.screen

    def test_cancelled_in_the_middle_and_another_chosen(self):
        with Program() as program:
            screen = self.begin(program, [shows(MAIN), ID.CMD_SEND], b"x" * 300)
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
            run(program, holds("Filesize: 300|Blocks: 3|Blocks Sent: 2|Bytes Sent: 256|Errors: 0"))
            self.begin(program, "Browse", b"x" * 1000)
            program.main.close()  # which ends the transfer
            self.assertEqual(self.line.read(), CAN)
            self.assertEqual(program.wait_exit(), 0)
        self.assertEqual(read_settings()["DIRECT"]["S_DIRECT"], windows_path(self.folder) + "\\")

    def test_unplugged_port_ends_the_transfer(self):
        with Program() as program:
            screen = self.begin(program, [shows(MAIN), ID.CMD_SEND], b"x" * 1000)
            self.line.write(ACK)
            self.line.close()
            wait_for("the end of the transfer", lambda: screen.button("Close").enabled(), 2 * LIMIT)
            self.assertIn(screen.value("Status:"), ("Transmit Error", "Timeout Error"))
            screen.click("Send")
            self.assertRegex(program.answer("Tolvan Programmer"), "X Error (Opening|Initializing) Com Port.")


def shows_settings(values):
    return [ID.CMD_SEND, shows(SEND_TITLE), IDCANCEL, shows("Send File"), holds(values), "Close", shows(MAIN)]


class UpgradeTest(ProgramTest):
    def test_valid_files_only_and_the_settings_afterwards(self):
        image = (EVERY_BYTE * 20)[:4994]
        content = b"HEAD" + image + crc(image)
        path = self.file("NEW.UPG", content + b"?")
        own = {"BAUDRATE": "300", "PROTOCOL": "0"}
        warned = [shows(MAIN), ID.CMD_UPGRADE, shows("Upgrade Flash", WARNING)]
        refused = [shows("Tolvan Programmer", "X Invalid Upgrade File"), IDOK, shows("Upgrade Flash")]
        with Program(settings={"COMM": own}) as program:
            run(program, warned, IDYES, shows(SEND_TITLE), path, refused, holds("Status: Flash Error"))
            screen = program.screen
            self.assertFalse(screen.button("Send").enabled())
            self.file("NEW.UPG", content)
            run(program, "Browse", shows(SEND_TITLE), path, shows("Upgrade Flash"))
            screen.wait_value("Status:", "File OK")
            run(program, "Send")
            screen.wait_value("Status:", "Waiting")
            for block, request in enumerate((b"C", ACK, ACK, ACK, ACK), 1):
                self.line.write(request)
                data = content[block * 1024 - 1024:block * 1024].ljust(1024, b"\0")
                self.assertEqual(self.line.read_exactly(1029), SOH + bytes([block, 255 - block]) + data + crc(data))
            self.line.write(ACK)
            self.assertEqual(self.line.read(), EOT)
            screen.wait_value("Status:", "Completed")
            self.file("NEW.UPG", content + b"?")  # since it was chosen
            run(program, "Send", refused, "Close", shows(MAIN),
                shows_settings("Baud rate: 300|Protocol: NONE|Filesize: |Bytes Sent: "),
                warned, IDNO, shows(MAIN), shows_settings("Baud rate: 38400|Protocol: XMODEM"))
            self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["COMM"], own)


class ReceiveScreenTest(ProgramTest):
    def test_auto_receive_in_increment_mode(self):
        # No question is asked about DATA: it is not the name of a file to be received.
        name = self.file("DATA", b"")
        self.file("DATA.007", b"an older file, overwritten" * 50)
        contents = [EVERY_BYTE + b"first", b"second" * 50, b"third" + bytes(123)]
        with Program(settings={"COMM": {"FILEMODE": 1}}, folder=self.folder) as program:
            run(program, shows(MAIN), ID.CMD_AUTO_RECEIVE, shows("Enter Filename Without Extension To Receive"), name,
                shows("Extension Starting Number"), spin("Select Auto Receive Starting Number", "+" * 7), "OK",
                shows("Auto Receive File"), "Receive")
            for number, content in enumerate(contents, 7):
                program.screen.wait_value("File:", f"DATA.{number:03}")
                program.screen.wait_value("Status:", "Waiting")
                self.file("offered", content)
                self.assertEqual(self.line.start("sx", "offered", folder=self.folder).finish(), 0)
            program.screen.wait_value("File:", "DATA.010")
            program.screen.click("Cancel")
            program.screen.wait_value("Status:", "User Abort")
            run(program, holds("Block Count: 1|Byte Count: 128|Errors: 0"), "Close", shows(MAIN))
            self.assertEqual(program.exit(), 0)
        for number, content in enumerate(contents, 7):  # sx fills with 0x1A; NULs at the end of a file are dropped
            self.assertEqual((self.folder / f"DATA.{number:03}").read_bytes(),
                             (content + b"\x1a" * (-len(content) % 128)).rstrip(b"\0"))
        log = (self.folder / "LOG.TXT").read_bytes().decode("latin-1")
        self.assertEqual(re.sub(r"\d\d-\d\d-\d{4}( \d\d:\d\d [ap]m){2}", "DATE START END", log), LOG)
