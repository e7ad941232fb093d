#include "comm/PCOM_log.h"
#include "tests/comm_test.h"

namespace {

using CommModem = CommTest;

const COMM_SETTINGS DIRECT = {};
const COMM_SETTINGS TONE = {.protocol = PROTOCOL_NONE, .interface_mode = INTERFACE_MODEM};
const COMM_SETTINGS PULSE = {.protocol = PROTOCOL_NONE,
                             .interface_mode = INTERFACE_MODEM,
                             .dialmethod = DIAL_PULSE,
                             .modem_init = "ATZ"};

struct SESSION {
    const char* name;
    decltype(send_file)* run;
    COMM_SETTINGS settings;
    std::optional<std::string> number; // empty: the prompt is cancelled
    std::vector<std::pair<const char*, std::uint32_t>> coming;
    std::vector<std::uint32_t> carrier;
    std::string events, stored = "abc";
    std::uint32_t cancel_at = ~0U;
};

const std::string SEVENS(29, '7');
const std::string ASKED = "0 ask number 111|";
const std::string INIT = "0 button Cancel|0 STATUS Initializing|0 > AT&F&C1\r|";
const std::string DIALLED = ASKED + INIT + "10 STATUS Dialing|10 > ATDT0,555-1234\r|60 STATUS Waiting|";
const std::string ANSWERED = INIT + "10 STATUS Waiting|";

// On a direct cable nobody asks for the carrier, which is not there.
const SESSION SESSIONS[] = {
    {"direct", send_file, DIRECT, {}, {}, {}, "0 STATUS Waiting|0 button Cancel|600 STATUS Timeout Error"},
    // One poll finds the text, and one wait comes after it. The modem has its time before and after the file.
    {"dialled",
     send_file,
     TONE,
     "0,555-1234",
     {{"\r\nCONNECT 9600\r\n", 10'000}},
     {10'000, 20'000},
     DIALLED + "154 STATUS Sending|154 button Cancel|154 > abc|569 > +++|584 > AT H0\r|594 STATUS Completed"},
    {"lost",
     send_file,
     TONE,
     "0,555-1234",
     {},
     {10'000, 14'000},
     DIALLED + "172 STATUS Sending|172 button Cancel|187 > +++|202 > AT H0\r|212 STATUS No Carrier"},
    {"pulse",
     send_file,
     PULSE,
     SEVENS + "77",
     {},
     {},
     ASKED + "0 button Cancel|0 STATUS Initializing|0 > ATZ\r|10 STATUS Dialing|10 > ATDP" + SEVENS +
         "\r|60 STATUS Waiting|215 > +++|230 > AT H0\r|240 STATUS User Abort",
     "abc",
     20'000},
    {"not dialled", send_file, TONE, {}, {}, {}, ASKED + "0 STATUS Dial Canceled"},
    // The text is looked for in each poll's own bytes: ten polls without it, and one wait after them.
    {"answered",
     receive_file,
     TONE,
     {},
     {{"RING\r\nCONN", 0}, {"ECT", 10'300}, {"xyz", 20'000}},
     {10'000, 60'000},
     ANSWERED + "122 STATUS Waiting|122 button Cancel|200 STATUS Receiving|"
                "615 > +++|630 > AT H0\r|640 STATUS Completed",
     "xyz"},
    {"nobody calls",
     receive_file,
     TONE,
     {},
     {},
     {},
     ANSWERED + "105 > +++|120 > AT H0\r|130 STATUS User Abort",
     "abc",
     9'000},
    {"cancelled before CONNECT",
     receive_file,
     TONE,
     {},
     {},
     {3'000, 5'000},
     ANSWERED + "65 > +++|80 > AT H0\r|90 STATUS User Abort",
     "abc",
     3'300},
    {"lost before CONNECT",
     receive_file,
     TONE,
     {},
     {},
     {3'000, 3'300},
     ANSWERED + "49 > +++|64 > AT H0\r|74 STATUS No Carrier"},
};

TEST_F(CommModem, SessionsFromTheOpenedPortToTheResult) {
    for (const SESSION& session : SESSIONS) {
        SCOPED_TRACE(session.name);
        start_over();
        comm_settings = session.settings;
        phone_number = "111";
        write_bytes("FILE.DAT", "abc");
        line_script.typed_number = session.number;
        line_script.carrier = session.carrier;
        line_script.cancel_at = session.cancel_at;
        for (const auto& [bytes, at] : session.coming)
            line_brings(bytes, at);
        int errors = 5; // hold a command back, which then goes out whole
        line_script.status = [&](LINE_STATUS&) { return errors-- > 0 ? 8U : 0U; };
        line_script.write = [&](LINE*, std::uint8_t) {
            EXPECT_LT(errors, 0);
            return LINE_WRITE::DONE;
        };
        session.run(nullptr, "FILE.DAT");
        const bool is_send = session.run == send_file;
        const std::string now = std::to_string(desktop_clock / 100);
        EXPECT_EQ(line_record.events, "0 open|" + session.events + "|" + now + " button " +
                                          (is_send ? "Send|" : "Receive|") + now + " close");
        EXPECT_EQ(desktop_beeps, 1);
        EXPECT_EQ(read_bytes("FILE.DAT"), session.stored);
    }
    EXPECT_FALSE(std::filesystem::exists(LOG_FILE_NAME));
}

TEST_F(CommModem, ADelaySurvivesTheWrapOfTheClock) {
    desktop_clock = ~0U - 500;
    delay(1000);
    EXPECT_NEAR(desktop_clock, 499, 4);
}

} // namespace
