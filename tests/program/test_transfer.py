"""Files to the portable and back, attended and unattended, on a direct cable."""

import re

from tolvan import (COM1, ID, IDCANCEL, IDOK, LIMIT, PROGRAM, Program, ProgramTest, read_settings, start_wine,
                    wait_for, windows_path, write_settings)

SOH, EOT, ACK, NAK, CAN = b"\x01", b"\x04", b"\x06", b"\x15", b"\x18"
CRC_FRAME = 133  # bytes
EVERY_BYTE = bytes(range(256))
PLAIN = {"COMM": {"PROTOCOL": 0}}
INCREMENT = {"COMM": {"FILEMODE": 1}}
SEND_TITLE, RECEIVE_TITLE = "Enter Filename To Send", "Enter Filename To Receive"
INCREMENT_TITLE = "Enter Filename Without Extension To Receive"


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

    def test_lower_case_blanks_and_quotes(self):
        path = self.file("stock list.pgt", b"quoted")
        batch = self.file("start.bat", f'"{windows_path(PROGRAM)}" -s=  "{windows_path(path)}"\r\n'.encode())
        write_settings({})
        transfer = self.line.start("rx", "-c", "got", folder=self.folder)
        process = start_wine("cmd", "/c", windows_path(batch))
        self.addCleanup(process.kill)
        self.assertEqual(transfer.finish(), 0)
        self.assert_padded((self.folder / "got").read_bytes(), b"quoted")
        self.assertEqual(process.wait(LIMIT), 0)

    def test_what_is_no_request_is_ignored(self):
        for argument in ("-R=", "/S=file", "-X=file", "file"):
            with self.subTest(argument), Program(argument) as program:
                self.assertEqual(self.line.read(0.5), b"")
                self.assertEqual([window.text() for window in program.own_windows()], [program.main.text()])
                self.assertEqual(program.exit(), 0)

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

    def test_port_that_cannot_be_opened(self):
        COM1.unlink()
        COM1.symlink_to(self.folder)  # a missing one would let Wine take the machine's own port
        with Program("-S=" + windows_path(self.file("sent.pgt", b"x"))) as program:
            self.assertEqual(program.answer("Tolvan Programmer"), "Error Opening Com Port.")
            self.assertEqual(program.wait_exit(), 0)


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

    def test_counters_of_a_completed_send(self):
        with Program() as program:
            screen = self.open_screen(program, b"x" * 300)
            for label, value in (("Filesize:", "300"), ("Blocks:", "3")):
                self.assertEqual(screen.value(label), value)
            transfer = self.line.start("rx", "-c", "got", folder=self.folder)
            screen.click("Send")
            screen.wait_value("Status:", "Completed")
            self.assertEqual(transfer.finish(), 0)
            self.line.wait_closed()
            for label, value in (("Blocks Sent:", "3"), ("Bytes Sent:", "384"), ("Errors:", "0")):
                self.assertEqual(screen.value(label), value)
            self.assert_padded((self.folder / "got").read_bytes(), b"x" * 300)
            screen.click("Close")
            screen.wait_gone()
            self.assertEqual(program.exit(), 0)
        self.assertEqual(read_settings()["DIRECT"]["S_DIRECT"], windows_path(self.folder) + "\\")

    def test_cancel_and_refused_closing_in_the_middle(self):
        with Program() as program:
            screen = self.open_screen(program, b"x" * 1000)
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
            screen.close()
            screen.wait_gone()
            self.assertEqual(program.exit(), 0)

    def test_cancelled_by_the_portable(self):
        with Program() as program:
            screen = self.open_screen(program, b"x" * 1000)
            self.begin_with_one_block(screen)
            self.line.write(CAN)
            screen.wait_value("Status:", "User Abort")
            self.assertEqual(self.line.read(), CAN)

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

    def test_setup_of_the_screen_changes_its_layout(self):
        def rows(screen):
            rows = ("Filesize:", "Blocks:", "Blocks Sent:", "Bytes Sent:", "Errors:", "Status:")
            shown = [child.known["text"] for child in screen.children() if child.known["visible"]]
            return [label for label in shown if label in rows]

        with Program() as program:
            screen = self.open_screen(program, b"x" * 300)
            self.assertEqual(len(rows(screen)), 6)
            screen.command(ID.CMD_SENDRECEIVE_SETUP)
            setup = program.window("Communication Setup")
            setup.control(ID.IDC_COMM_PROTOCOL).select("NONE")
            setup.command(IDOK)
            setup.wait_gone()
            wait_for("the plain layout", lambda: rows(screen) == ["Filesize:", "Bytes Sent:", "Status:"])
        self.assertEqual(read_settings()["COMM"]["PROTOCOL"], "0")


class ReceiveScreenTest(ProgramTest):
    def log_lines(self):
        """The log's lines with their dates and times masked."""
        text = (self.folder / "LOG.TXT").read_bytes().decode("latin-1")
        return re.sub(r"\d\d-\d\d-\d{4} \d\d:\d\d [ap]m \d\d:\d\d [ap]m", "DATE START END",
                      text.replace("\r\n", "\n")).splitlines()

    HEADER = [" " * 29 + "AUTO RECEIVE LOGFILE", "",
              "DATE       CONNECT  DISCONNECT BAUD  PROTOCOL FLOW CONT FILENAME     SIZE   NOTES",
              "---------- -------- ---------- ----- -------- --------- ------------ ------ -----"]

    def entry(self, name, size):
        return f"DATE START END   9600  XMODEM   XON/XOFF  {name:12} {size:<6} OK"

    def receive_three(self, screen):
        """Three files, the last byte of one of which is a NUL that is lost."""
        contents = [EVERY_BYTE + b"first", b"second" * 50, b"third" + bytes(123)]
        for content in contents:
            screen.wait_value("Status:", "Waiting")
            self.file("offered", content)
            self.assertEqual(self.line.start("sx", "offered", folder=self.folder).finish(), 0)
        return contents

    def cancel(self, program, screen):
        screen.click("Cancel")
        screen.wait_value("Status:", "User Abort")
        screen.click("Close")
        screen.wait_gone()
        self.assertEqual(program.exit(), 0)

    def stored_as(self, content):
        """sx fills the last block with 0x1A; the program drops NULs at the end of the file."""
        return (content + b"\x1a" * (-len(content) % 128)).rstrip(b"\0")

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
        self.assertEqual((self.folder / "data.TXT").read_bytes(), self.stored_as(b"collected"))
        self.assertFalse((self.folder / "LOG.TXT").exists())

    def test_auto_receive_in_increment_mode(self):
        self.file("DATA", b"")  # no question: it is not the name of a file to be received
        with Program(settings=INCREMENT, folder=self.folder) as program:
            program.command(ID.CMD_AUTO_RECEIVE)
            program.choose_file(INCREMENT_TITLE, self.folder / "DATA")
            prompt = program.window("Extension Starting Number")
            spin, = [child for child in prompt.children() if child.known["class"] == "msctls_updown32"]
            for _ in range(7):
                spin.press(3, 3)
            prompt.command(IDOK)
            prompt.wait_gone()
            screen = program.window("Auto Receive File")
            screen.click("Receive")
            contents = self.receive_three(screen)
            wait_for("the fourth pass", lambda: "DATA.010" in [c.known["text"] for c in screen.children()])
            self.cancel(program, screen)
        for number, content in enumerate(contents, 7):
            self.assertEqual((self.folder / f"DATA.{number:03}").read_bytes(), self.stored_as(content))
        sizes = [(len(content) + 127) // 128 * 128 for content in contents]
        self.assertEqual(self.log_lines(), self.HEADER + [
            self.entry(f"DATA.{number:03}", size) for number, size in enumerate(sizes, 7)])

    def test_auto_receive_in_append_mode_goes_on_with_the_log(self):
        self.file("LOG.TXT", b"an earlier line\r\n")
        with Program(folder=self.folder) as program:
            program.command(ID.CMD_AUTO_RECEIVE)
            program.choose_file(RECEIVE_TITLE, self.folder / "ALL.DAT")
            screen = program.window("Auto Receive File")
            screen.click("Receive")
            contents = self.receive_three(screen)
            wait_for("the log", lambda: len(self.log_lines()) == 4)
            self.cancel(program, screen)
        self.assertEqual((self.folder / "ALL.DAT").read_bytes(), b"".join(map(self.stored_as, contents)))
        self.assertEqual(self.log_lines()[0], "an earlier line")
        self.assertEqual({line for line in self.log_lines()[1:]},
                         {self.entry("ALL.DAT", size) for size in (384, 128)})
