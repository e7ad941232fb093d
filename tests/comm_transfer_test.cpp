#include "tests/comm_test.h"

#include "comm/PCOM_log.h"

namespace {

using CommTransfer = CommTest;

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

// Receives until the operator cancels. The log without its header.
std::string log_of_auto_receive(const std::string& name, std::uint32_t cancel_at) {
    auto_receive_flag = true;
    line_script.cancel_at = cancel_at;
    receive_file(nullptr, name);
    const std::string log = read_bytes(LOG_FILE_NAME);
    return log.substr(log.find(" -----\n") + 7);
}
const std::string START = "11-21-2026 09:05 am 09:05 am   9600  ";
const std::string XMODEM_START = START + "XMODEM   XON/XOFF  ";

// The flow column follows the protocol, whatever the flow control is; a second session appends to the log. A
// pause within five seconds ends no file.
TEST_F(CommTransfer, AutoReceiveAppends) {
    std::string lines;
    for (const auto& [protocol, flow] : {std::pair{0U, "NONE   "}, {2U, "RTC/CTS"}}) {
        start_over();
        comm_settings.protocol = protocol;
        write_bytes("DATA.TXT", "before ");
        line_brings("one ", 6'000);
        line_brings("two ", 10'900);
        line_brings("three", 15'800);
        lines += START + "NONE     " + flow + "   DATA.TXT     12     OK\n";
        EXPECT_EQ(log_of_auto_receive("DATA.TXT", 90'000), lines);
        EXPECT_EQ(read_bytes("DATA.TXT"), "before one two three");
    }
}

// The first caller is asked for its file again and again; each of its frames has its own twenty seconds, and
// one that stays broken off is logged and the next call waited for. So is a lost carrier, with what was
// received until then. A line that never connected has nothing but its result.
TEST_F(CommTransfer, AutoReceiveGoesOnAfterFailures) {
    comm_settings.interface_mode = INTERFACE_MODEM;
    line_brings(frame_of(1, "data", true), 90'000);
    line_brings(frame_of(2, "data", true), 109'000);
    line_brings(frame_of(3, "data", true) + "\x01", 128'000);
    line_brings(frame_of(1, "data", true) + "\x01", 170'000);
    line_script.carrier = {4'000, 160'000, 166'000, 175'000, 210'000, 211'000};
    EXPECT_EQ(log_of_auto_receive("DATA.TXT", 240'000),
              XMODEM_START + "DATA.TXT     384    TIMEOUT\n" + XMODEM_START +
                  "DATA.TXT     128    LOSS OF CARRIER\n" + std::string(76, ' ') + "LOSS OF CARRIER\n");
}

// Each pass shows the message again; between two of them there is time for Cancel.
TEST_F(CommTransfer, AutoReceiveIntoAMissingFolderCanBeLeft) {
    auto_receive_counter = 998;
    comm_settings.filemode = FILE_INCREMENT;
    for (int pass = 0; pass < 3; ++pass)
        expect_message("Error Opening File", COMM_TITLE, MESSAGE_ICON::STOP);
    EXPECT_EQ(log_of_auto_receive("no.folder/DATA", 5'000),
              XMODEM_START + "DATA.998     0      FILE ERROR\n" + XMODEM_START +
                  "DATA.999     0      FILE ERROR\n" + XMODEM_START + "DATA.1000    0      FILE ERROR\n");
    EXPECT_TRUE(line_record.events.ends_with("|20 STATUS File Error|40 file DATA.1000|40 STATUS File Error|"
                                             "50 STATUS User Abort|50 button Receive|50 close"));
}

} // namespace
