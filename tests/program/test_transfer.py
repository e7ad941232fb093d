"""Communication Setup, and files to the portable and back, attended and unattended, on a direct cable."""

import re

from desktop import IDCANCEL, IDNO, IDOK, IDYES, LIMIT, VK_DOWN, VK_UP, wait_for
from script import ScriptTest, asks, cancels, closes, holds, key, run, shows, spin, step_by_keys, waits
from tolvan import ID, TITLE, crc, read_settings, windows_path

SOH, EOT, ACK, CAN = b"\x01", b"\x04", b"\x06", b"\x18"
CRC_FRAME = 133  # bytes
EVERY_BYTE = bytes(range(256))
PLAIN = {"COMM": {"PROTOCOL": 0}}
MAIN = "Tolvan*"
BOX, SETUP, SEND, UPGRADE = "Tolvan Programmer", "Communication Setup", "Send File", "Upgrade Flash"
RECEIVE, AUTO = "Receive File", "Auto Receive File"
SEND_TITLE, RECEIVE_TITLE = "Enter Filename To Send", "Enter Filename To Receive"
INCREMENT_TITLE, NUMBER = "Enter Filename Without Extension To Receive", "Select Auto Receive Starting Number"
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

KEYS = ["PORT", "BAUDRATE", "DATABITS", "STOPBITS", "PARITY", "PROTOCOL", "FLOW_CONTROL", "XMODEM_RETRIES",
        "INTERFACE", "FILEMODE", "DIALMETHOD"]
SETUPS = [  # values in the order of the keys, how they are shown, and what OK stores
    ("3 57600 7 2 1 0 1 99 1 1 1",
     "Port: COM3|Baud rate: 57600|Data bits: 7|Stop bits: 2|Parity: Odd|Protocol: NONE|Flow control: XON/XOFF|"
     "XMODEM retries: 99|Interface: MODEM|File mode: INCREMENT|Dial method: PULSE", "3 57600 7 2 1 0 1 99 1 1 1"),
    ("0 110 5 0 7 9 0 0 9 9 9",
     "Port: COM1|Baud rate: 300|Data bits: 7|Stop bits: 1|Parity: Even|Protocol: XMODEM|Flow control: NONE|"
     "XMODEM retries: 0|Interface: MODEM|File mode: INCREMENT|Dial method: PULSE", "1 300 7 1 2 1 0 1 1 1 1")]
RETRIES = [("98", VK_UP, "99"), ("99", VK_UP, "99"), ("1", VK_DOWN, "1"), ("1a2 -3", VK_DOWN, "122")]


class SetupTest(ScriptTest):
    def test_shows_and_stores_the_settings(self):
        for given, shown, stored in SETUPS:
            program = self.start(
                ID.CMD_COMM_SETUP, shows(SETUP), holds(shown + "|Modem init: ATZ"), "Modem init: " + "A" * 300, "OK",
                shows(MAIN), settings={"COMM": dict(zip(KEYS, given.split()), MODEM_INIT="ATZ")})
            self.assertEqual(program.exit(), 0)
            self.assertEqual(read_settings()["COMM"], dict(zip(KEYS, stored.split()), MODEM_INIT="A" * 254))

    def test_steps_the_retries_and_resets(self):
        program = self.start(ID.CMD_COMM_SETUP, shows(SETUP), settings={"COMM": {"PORT": 3}})
        for typed, arrow, shown in RETRIES:
            run(program, "XMODEM retries: " + typed, key(arrow), holds("XMODEM retries: " + shown))
        for answer, shown in ((IDNO, "Port: COM3|XMODEM retries: 122"), (IDYES, "Port: COM1|XMODEM retries: 10")):
            run(program, "Defaults", asks("? Reset to Default Settings?", answer, SETUP, SETUP), holds(shown))
        run(program, "Cancel", shows(MAIN), ID.CMD_COMM_SETUP, shows(SETUP), holds("Port: COM1|XMODEM retries: 10"))
        self.assertEqual(read_settings()["COMM"], {"PORT": "3"})  # the record is reset in spite of Cancel, not the file


class UnattendedTest(ScriptTest):
    def test_xmodem_each_way(self):
        sent = EVERY_BYTE * 150 + b"end"  # block numbers pass 255
        path = self.file("sent.pgt", sent)
        for option, *portable in (("-S=", "rx", "-c", "got-crc"), ("-S=", "rx", "got-sum"), ("-R=", "sx", "sent.pgt")):
            with self.subTest(portable):
                sends = option == "-S="
                stored = self.folder / (portable[-1] if sends else "stored.dat")
                transfer = self.line.start(*portable, folder=self.folder)
                program = self.start(arguments=[option + windows_path(path if sends else stored)],
                                     settings={"COMM": {"FILEMODE": 1}})  # which numbers files in auto receive alone
                self.assertEqual((program.wait_exit(3 * LIMIT), transfer.finish()), (0, 0))
                self.assert_padded(stored.read_bytes(), sent, b"\0" if sends else b"\x1a")  # the sender's fill stays

    def test_plain_stream_each_way(self):
        content = EVERY_BYTE * 8
        path = self.file("sent.txt", content)
        program = self.start(arguments=["-S=" + windows_path(path)], settings=PLAIN)
        self.assertEqual(self.line.read_exactly(len(content)), content)
        self.assertEqual(program.wait_exit(), 0)
        program = self.start(shows(RECEIVE), waits("Status: Waiting"), arguments=["-R=" + windows_path(path)],
                             settings=PLAIN)
        self.line.write(content[::-1])
        run(program, waits(f"Byte Count: {len(content) - 1}"))  # the first byte is not counted
        self.assertEqual(program.wait_exit(), 0)
        self.assertEqual(path.read_bytes(), content[::-1])


class SendScreenTest(ScriptTest):
    def begin(self, program, how, content):
        """Sends until the first block has come whole and stands unanswered."""
        run(program, how, shows(SEND_TITLE), self.file("STOCK.PGT", content), shows(SEND),
            holds("Blocks Sent: |Status: "), "Send")
        self.line.wait_open()
        run(program, waits("Status: Waiting"))
        self.line.write(b"C")
        frame = self.line.read_exactly(CRC_FRAME)
        self.assertEqual(frame[:3], SOH + b"\x01\xfe")
        run(program, holds("Status: Sending"))
        return program.screen

    def test_cancelled_in_the_middle_and_another_chosen(self):
        program = self.start()
        screen = self.begin(program, ID.CMD_SEND, b"x" * 300)
        self.assertEqual([bool(screen.button(caption).enabled()) for caption in ("Close", "Browse", "Cancel")],
                         [False, False, True])
        screen.close()
        for command in (IDCANCEL, ID.CMD_SENDRECEIVE_SETUP):  # Escape sends the first
            screen.command(command)
        self.line.write(ACK)
        self.assertEqual(self.line.read_exactly(CRC_FRAME)[1:2], b"\x02")
        self.assertTrue(screen.alive() and screen.enabled())
        run(program, cancels)
        self.assertEqual(self.line.read(), CAN)
        self.line.wait_closed()
        run(program, holds("Filesize: 300|Blocks: 3|Blocks Sent: 2|Bytes Sent: 256|Errors: 0"))
        self.begin(program, "Browse", b"x" * 1000)
        program.main.close()  # which ends the transfer
        self.assertEqual(self.line.read(), CAN)
        self.assertEqual(program.wait_exit(), 0)
        self.assertEqual(read_settings()["DIRECT"]["S_DIRECT"], windows_path(self.folder) + "\\")

    def test_unplugged_port_ends_the_transfer(self):
        program = self.start()
        screen = self.begin(program, ID.CMD_SEND, b"x" * 1000)
        self.line.write(ACK)
        self.line.close()
        wait_for("the end of the transfer", lambda: screen.button("Close").enabled(), 2 * LIMIT)
        self.assertIn(screen.value("Status:"), ("Transmit Error", "Timeout Error"))
        run(program, "Send", shows(BOX))
        self.assertRegex(program.screen.message(), "X Error (Opening|Initializing) Com Port.")


def shows_settings(values):
    return [ID.CMD_SEND, shows(SEND_TITLE), IDCANCEL, shows(SEND), holds(values), "Close", shows(MAIN)]


class UpgradeTest(ScriptTest):
    def test_valid_files_only_and_the_settings_afterwards(self):
        image = (EVERY_BYTE * 20)[:4994]
        content = b"HEAD" + image + crc(image)
        path = self.file("NEW.UPG", content + b"?")
        own = {"BAUDRATE": "300", "PROTOCOL": "0"}
        warned = [ID.CMD_UPGRADE, shows(UPGRADE, WARNING)]
        refused = asks("X Invalid Upgrade File", IDOK, UPGRADE, BOX)
        program = self.start(warned, IDYES, shows(SEND_TITLE), path, refused, holds("Status: Flash Error"),
                             settings={"COMM": own})
        self.assertFalse(program.screen.button("Send").enabled())
        self.file("NEW.UPG", content)
        run(program, "Browse", shows(SEND_TITLE), path, shows(UPGRADE), waits("Status: File OK"), "Send",
            waits("Status: Waiting"))
        for block, request in enumerate((b"C", ACK, ACK, ACK, ACK), 1):
            self.line.write(request)
            data = content[block * 1024 - 1024:block * 1024].ljust(1024, b"\0")
            self.assertEqual(self.line.read_exactly(1029), SOH + bytes([block, 255 - block]) + data + crc(data))
        self.line.write(ACK)
        self.assertEqual(self.line.read(), EOT)
        run(program, waits("Status: Completed"))
        self.file("NEW.UPG", content + b"?")  # since it was chosen
        run(program, "Send", refused, "Close", shows(MAIN),
            shows_settings("Baud rate: 300|Protocol: NONE|Filesize: |Bytes Sent: "),
            warned, IDNO, shows(MAIN), shows_settings("Baud rate: 38400|Protocol: XMODEM"))
        self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["COMM"], own)


class ReceiveScreenTest(ScriptTest):
    def test_shows_the_settings_and_names_the_file(self):
        def shows_labels(texts):
            def compare(program):
                labels = [child for child in program.screen.children() if child.visible() and child.kind() == "Static"]
                self.assertEqual(" ".join(label.text() for label in labels), texts)
            return compare

        old = self.file("old.TXT", b"")
        question = f"! {windows_path(old)} already exists.\nDo you want to replace it?"
        program = self.start(
            ID.CMD_RECEIVE, shows(RECEIVE_TITLE), IDCANCEL, shows(RECEIVE),
            shows_labels("Interface: DIRECT Baud rate: 4000000000 Line: E81 Port: COM4 Protocol: XMODEM "
                         "File mode: APPEND File:  Block Count:  Byte Count:  Errors:  Status: "),
            settings={"COMM": {"PORT": 4, "BAUDRATE": 4000000000, "PARITY": 2}})
        self.assertFalse(program.screen.button("Receive").enabled())
        run(program, ID.CMD_SENDRECEIVE_SETUP, shows(SETUP), "Protocol: N", "OK", shows(RECEIVE),
            shows_labels("Interface: DIRECT Baud rate: 300 Line: E81 Port: COM4 Protocol: NONE "
                         "File mode: APPEND File:  Byte Count:  Status: "))
        for filter, typed, shown, *asked in (
                ("D", "data.", "data.DAT"), ("D", "a.file & more", "a.file & more"),
                ("A", "old", "old.TXT", asks(question, IDNO, RECEIVE_TITLE), IDOK, shows(TITLE, question), IDYES)):
            run(program, "Browse", shows(RECEIVE_TITLE), f"Files of type: {filter}", self.folder / typed, asked,
                shows(RECEIVE), holds(f"File: {shown}"))

    def test_auto_receive_in_increment_mode(self):
        # No question is asked about DATA: it is not the name of a file to be received.
        name = self.file("DATA", b"")
        self.file("DATA.007", b"an older file, overwritten" * 50)
        contents = [EVERY_BYTE + b"first", b"second" * 50, b"third" + bytes(123)]
        program = self.start(
            ID.CMD_AUTO_RECEIVE, shows(INCREMENT_TITLE), name, shows("Extension*"), spin(NUMBER, "-"),
            holds(NUMBER + ": 0"), spin(NUMBER, "+" * 7), key("5"), closes, shows(AUTO), holds("File: DATA.007"),
            "Browse", shows(INCREMENT_TITLE), name, shows("Extension*"), step_by_keys(NUMBER, "+" * 1000),
            holds(NUMBER + ": 999"), step_by_keys(NUMBER, "-" * 1000 + "+" * 6), "OK", shows(AUTO), "Receive",
            settings={"COMM": {"FILEMODE": 1}}, folder=self.folder)
        for number, content in enumerate(contents, 7):
            run(program, waits(f"File: DATA.{number:03}|Status: Waiting"))
            self.file("offered", content)
            self.assertEqual(self.line.start("sx", "offered", folder=self.folder).finish(), 0)
        run(program, waits("File: DATA.010"), cancels, holds("Block Count: 1|Byte Count: 128|Errors: 0"), "Close",
            shows(MAIN))
        self.assertEqual(program.exit(), 0)
        for number, content in enumerate(contents, 7):  # sx fills with 0x1A; NULs at the end of a file are dropped
            self.assert_holds(f"DATA.{number:03}", (content + b"\x1a" * (-len(content) % 128)).rstrip(b"\0"))
        log = (self.folder / "LOG.TXT").read_bytes().decode("latin-1")
        self.assertEqual(re.sub(r"\d\d-\d\d-\d{4}( \d\d:\d\d [ap]m){2}", "DATE START END", log), LOG)
