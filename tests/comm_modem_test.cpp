#include "comm/PCOM_log.h"
#include "tests/comm_test.h"

namespace {

using CommModem = CommTest;

struct SESSION {
    const char* name;
    decltype(send_file)* run;
    std::uint32_t interface_mode;
    bool dials;       // or the prompt is cancelled
    const char* said; // by the modem, and "ECT" a bit later
    std::uint32_t carrier_from, carrier_to, cancel_at;
    std::string events;
    const char* stored = "abc";
};

constexpr std::uint32_t DIRECT = INTERFACE_DIRECT, MODEM = INTERFACE_MODEM, NEVER = ~0U;
const std::string NUMBER = "0,555-1234" + std::string(19, '7'); // as long as one may be
const std::string ASKED = "0 ask number 111|";
const std::string INIT = "0 button Cancel|0 STATUS Initializing|0 > AT&F&C1\r|";
const std::string DIALLED = ASKED + INIT + "10 STATUS Dialing|10 > ATDT" + NUMBER + "\r|60 STATUS Waiting|";
const std::string ANSWERED = INIT + "10 STATUS Waiting|";

const SESSION SESSIONS[] = {
    // On a direct cable nobody asks for the carrier, and nothing has to pass a modem.
    {"direct", send_file, DIRECT, false, "", NEVER, NEVER, NEVER,
     "0 STATUS Sending|0 button Cancel|0 > abc|0 STATUS Completed"},
    {"not dialled", send_file, MODEM, false, "", NEVER, NEVER, NEVER, ASKED + "0 STATUS Dial Canceled"},
    // One poll finds the text, and one wait comes after it. The modem has its time before and after the file.
    {"dialled", send_file, MODEM, true, "\r\nCONNECT 9600\r\n", 10'000, 20'000, NEVER,
     DIALLED + "154 STATUS Sending|154 button Cancel|154 > abc|569 > +++|584 > AT H0\r|594 STATUS Completed"},
    {"lost", send_file, MODEM, true, "", 10'000, 14'000, NEVER,
     DIALLED + "172 STATUS Sending|172 button Cancel|187 > +++|202 > AT H0\r|212 STATUS No Carrier"},
    // The text is looked for in each poll's own bytes: ten polls without it, and one wait after them.
    {"answered", receive_file, MODEM, false, "RING\r\nCONN", 10'000, 60'000, NEVER,
     ANSWERED + "122 STATUS Waiting|122 button Cancel|200 STATUS Receiving|615 > +++|630 > AT H0\r|"
                "640 STATUS Completed",
     "xyz"},
    {"nobody calls", receive_file, MODEM, false, "", NEVER, NEVER, 9'000,
     ANSWERED + "105 > +++|120 > AT H0\r|130 STATUS User Abort"},
    {"cancelled before CONNECT", receive_file, MODEM, false, "", 3'000, 5'000, 3'300,
     ANSWERED + "65 > +++|80 > AT H0\r|90 STATUS User Abort"},
    {"lost before CONNECT", receive_file, MODEM, false, "", 3'000, 3'300, NEVER,
     ANSWERED + "49 > +++|64 > AT H0\r|74 STATUS No Carrier"},
};

TEST_F(CommModem, SessionsFromTheOpenedPortToTheResult) {
    for (const SESSION& session : SESSIONS) {
        SCOPED_TRACE(session.name);
        start_over();
        comm_settings.interface_mode = session.interface_mode;
        comm_settings.protocol = PROTOCOL_NONE;
        phone_number = "111";
        write_bytes("FILE.DAT", "abc");
        if (session.dials)
            line_script.typed_number = NUMBER + "77";
        line_script.carrier = {session.carrier_from, session.carrier_to};
        line_script.cancel_at = session.cancel_at;
        line_brings(session.said, 10'000);
        line_brings("ECT", 10'300);
        line_brings("xyz", 20'000);
        int errors = 5; // hold a command back, which then goes out whole
        line_script.status = [&](LINE_STATUS&) { return errors-- > 0 ? 8U : 0U; };
        line_script.write = [&](LINE*, std::uint8_t) {
            EXPECT_LT(errors, 0);
            return LINE_WRITE::DONE;
        };
        session.run(nullptr, "FILE.DAT");
        const std::string now = "|" + std::to_string(desktop_clock / 100) + " ";
        const char* const button = session.run == send_file ? "button Send" : "button Receive";
        EXPECT_EQ(line_record.events, "0 open|" + session.events + now + button + now + "close");
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
