#include "tests/comm_test.h"

#include "comm/PCOM_log.h"

namespace {

using CommTransfer = CommTest;

constexpr char FILE_NAME[] = "FILE.DAT";
LINE port;

// --- plain transfers ---

TEST_F(CommTransfer, AsciiSendGivesTheModemItsTime) {
    comm_settings.interface_mode = INTERFACE_MODEM;
    write_bytes(FILE_NAME, "abc");
    EXPECT_EQ(ascii_send_file(nullptr, &port, FILE_NAME), TRANSFER_COMPLETED);
    EXPECT_EQ(timed_events(), "50 STATUS Sending|50 button Cancel|50 > abc|450");
    line_script.has_carrier = [](std::uint32_t) { return false; };
    EXPECT_EQ(ascii_send_file(nullptr, &port, FILE_NAME), TRANSFER_NO_CARRIER);
    EXPECT_NEAR(desktop_clock, 50'000, 100) << "a lost carrier leaves nothing to wait for";
}

TEST_F(CommTransfer, AsciiReceiveEndsWithSilence) {
    // An hour without a byte is no end; a pause within five seconds is none either.
    line_brings("0123", 3'600'000);
    line_brings(std::string("\0\x04", 2) + "6789", 3'604'950);
    EXPECT_EQ(ascii_receive_file(nullptr, &port, FILE_NAME), TRANSFER_COMPLETED);
    EXPECT_EQ(read_bytes(FILE_NAME), std::string("0123\0\x04", 6) + "6789");
    EXPECT_EQ(line_record.counters[COUNTER::BYTES_DONE], "9");
    EXPECT_EQ(timed_events(), "0 STATUS Waiting|0 button Cancel|36000 STATUS Receiving|36099");
}

// --- one send, one receive ---

const std::string INIT = "button Cancel|STATUS Initializing|> AT&F&C1\r|";
const std::string DIAL = "ask number |" + INIT + "STATUS Dialing|> ATDT5\r|STATUS Waiting|";
const std::string ANSWER = INIT + "STATUS Waiting|";
const std::string HANG_UP = "> +++|> AT H0\r|";

// On a direct cable nobody asks for the carrier, which is not there at first.
TEST_F(CommTransfer, FromTheOpenedPortToTheResult) {
    constexpr std::uint32_t DIRECT = INTERFACE_DIRECT, MODEM = INTERFACE_MODEM;
    const struct {
        bool is_send;
        std::uint32_t interface_mode, protocol;
        const char* number; // nullptr: the prompt is cancelled
        std::string events;
    } cases[] = {
        {true, DIRECT, PROTOCOL_XMODEM, "", "STATUS Waiting|button Cancel|STATUS Timeout Error"},
        {true, MODEM, PROTOCOL_NONE, "5",
         DIAL + "STATUS Sending|button Cancel|> abc|" + HANG_UP + "STATUS Completed"},
        {true, MODEM, PROTOCOL_NONE, nullptr, "ask number |STATUS Dial Canceled"},
        {false, MODEM, PROTOCOL_NONE, "",
         ANSWER + "STATUS Waiting|button Cancel|STATUS Receiving|" + HANG_UP + "STATUS Completed"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.events);
        start_over();
        comm_settings.interface_mode = c.interface_mode;
        comm_settings.protocol = c.protocol;
        if (c.number)
            line_script.typed_number = c.number;
        line_script.has_carrier = [](std::uint32_t) {
            return desktop_clock > 2'000 && desktop_clock < 60'000;
        };
        if (!c.is_send)
            line_brings("xyz", 20'000);
        write_bytes(FILE_NAME, "abc");
        (c.is_send ? send_file : receive_file)(nullptr, FILE_NAME);
        EXPECT_EQ(event_texts(),
                  "open|" + c.events + (c.is_send ? "|button Send" : "|button Receive") + "|close");
        EXPECT_EQ(desktop_beeps, 1);
        EXPECT_EQ(read_bytes(FILE_NAME), c.is_send ? "abc" : "xyz");
    }
    EXPECT_FALSE(std::filesystem::exists(LOG_FILE_NAME));
}

// --- auto receive and its log ---

TEST_F(CommTransfer, WordsForEachResult) {
    std::string words;
    for (int result = TRANSFER_COMPLETED; result >= TRANSFER_TIMEOUT; --result) {
        const char* const notes = transfer_log_notes(result);
        words += transfer_status_text(result) + std::string("/") + (notes ? notes : "") + "|";
    }
    EXPECT_EQ(words, "Completed/OK|Transmit Error/TRANSMISSION ERROR|User Abort/|No Carrier/LOSS OF CARRIER|"
                     "Modem Error/MODEM INIT ERROR|Dial Canceled/DIAL CANCELED|File Error/FILE ERROR|"
                     "Retries Exceeded/RETRY COUNT EXCEEDED|Timeout Error/TIMEOUT|");
}

TEST_F(CommTransfer, ALogLineIsCutToItsColumnsAndHasTwelveHours) {
    const std::string x(30, 'x');
    EXPECT_EQ(log_line({x, x, x, x, x, x, x, x, x}), "xxxxxxxxxx xxxxxxxx xxxxxxxx   xxxxx xxxxxxxx "
                                                     "xxxxxxxxx xxxxxxxxxxxx xxxxxx xxxxxxxxxxxxxxxxxxxxx\n");
    std::string times;
    for (const int hour : {0, 11, 12, 23}) {
        desktop_time = {2031, 2, 3, hour, 7};
        get_autoreceive_start();
        get_autoreceive_stop();
        times += log_entry.connect_time + (log_entry.disconnect_time == log_entry.connect_time ? "|" : "?");
    }
    EXPECT_EQ(log_entry.date + " " + times, "02-03-2031 12:07 am|11:07 am|12:07 pm|11:07 pm|");
}

// The log without its header, and the beginning of its lines.
std::string logged() {
    const std::string log = read_bytes(LOG_FILE_NAME);
    return log.substr(log.find(" -----\n") + 7);
}
const std::string START = "11-21-2026 09:05 am 09:05 am   9600  ";
const std::string XMODEM_START = START + "XMODEM   XON/XOFF  ";

// The flow column follows the protocol, whatever the flow control is; a second session appends to the log.
TEST_F(CommTransfer, AutoReceiveAppends) {
    std::string lines;
    for (const auto& [protocol, flow] : {std::pair{0U, "NONE   "}, {2U, "RTC/CTS"}}) {
        start_over();
        auto_receive_flag = true;
        comm_settings.protocol = protocol;
        write_bytes("DATA.TXT", "before ");
        line_brings("one ", 1'000);
        line_brings("two ", 10'000);
        line_script.is_cancel_pressed = [](std::uint32_t) { return desktop_clock > 90'000; };
        receive_file(nullptr, "DATA.TXT");
        EXPECT_EQ(read_bytes("DATA.TXT"), "before one two ");
        const std::string line = START + "NONE     " + flow + "   DATA.TXT     3      OK\n";
        EXPECT_EQ(logged(), lines += line + line);
    }
}

// A frame that stays broken off is logged and the next call waited for; so is a lost carrier, with what was
// received until then. A line that never connected has nothing but its result.
TEST_F(CommTransfer, AutoReceiveGoesOnAfterFailures) {
    auto_receive_flag = true;
    comm_settings.interface_mode = INTERFACE_MODEM;
    const std::string frame = frame_of(1, "data", true);
    line_brings(frame + "\x01", 8'000);
    line_brings(frame + "\x01", 50'000);
    line_script.has_carrier = [](std::uint32_t) {
        return (desktop_clock > 4'000 && desktop_clock < 40'000) ||
               (desktop_clock > 46'000 && desktop_clock < 55'000) ||
               (desktop_clock > 90'000 && desktop_clock < 91'000);
    };
    line_script.is_cancel_pressed = [](std::uint32_t) { return desktop_clock > 120'000; };
    receive_file(nullptr, "DATA.TXT");
    EXPECT_EQ(logged(), XMODEM_START + "DATA.TXT     128    TIMEOUT\n" + XMODEM_START +
                            "DATA.TXT     128    LOSS OF CARRIER\n" + std::string(76, ' ') +
                            "LOSS OF CARRIER\n");
}

// Each pass shows the message again; between two of them there is time for Cancel.
TEST_F(CommTransfer, AutoReceiveIntoAMissingFolderCanBeLeft) {
    auto_receive_flag = true;
    auto_receive_counter = 998;
    comm_settings.filemode = FILE_INCREMENT;
    for (int pass = 0; pass < 3; ++pass)
        expect_message("Error Opening File", COMM_TITLE, MESSAGE_ICON::STOP);
    line_script.is_cancel_pressed = [](std::uint32_t) { return desktop_clock > 5'000; };
    receive_file(nullptr, "no.folder/DATA");
    EXPECT_EQ(logged(), XMODEM_START + "DATA.998     0      FILE ERROR\n" + XMODEM_START +
                            "DATA.999     0      FILE ERROR\n" + XMODEM_START +
                            "DATA.1000    0      FILE ERROR\n");
    EXPECT_EQ(event_texts(), "open|file DATA.998|STATUS File Error|file DATA.999|STATUS File Error|"
                             "file DATA.1000|STATUS File Error|STATUS User Abort|button Receive|close");
}

} // namespace
