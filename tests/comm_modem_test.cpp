#include "tests/comm_test.h"

namespace {

class CommModem : public CommTest {
protected:
    CommModem() {
        comm_settings.interface_mode = INTERFACE_MODEM;
        line_script.has_carrier = [](std::uint32_t) { return desktop_clock >= 10'000; };
    }
    LINE port;
};

TEST_F(CommModem, DialsTheNumberThatItHolds) {
    phone_number = "111";
    EXPECT_EQ(send_modem(nullptr, &port), TRANSFER_DIAL_CANCELLED);
    line_script.typed_number = "0,555-1234";
    line_brings("\r\nCONNECT 9600\r\n", 10'000); // one poll finds it, and one wait comes after it
    EXPECT_EQ(send_modem(nullptr, &port), TRANSFER_COMPLETED);
    EXPECT_EQ(timed_events(), "0 ask number 111|0 ask number 111|0 button Cancel|0 STATUS Initializing|"
                              "0 > AT&F&C1\r|10 STATUS Dialing|10 > ATDT0,555-1234\r|60 STATUS Waiting|104");
    comm_settings.dialmethod = DIAL_PULSE;
    line_script.typed_number = std::string(40, '7');
    EXPECT_EQ(send_modem(nullptr, &port), TRANSFER_COMPLETED);
    EXPECT_EQ(phone_number, std::string(29, '7'));
    EXPECT_TRUE(line_record.sent.ends_with("ATDP" + phone_number + "\r"));
}

TEST_F(CommModem, WaitsForACallWithoutDialing) {
    comm_settings.modem_init = "ATS0=1";
    line_brings("RING\r\nCONN", 0);
    line_brings("ECT", 10'000 + 300); // the text is looked for in each poll's own bytes
    EXPECT_EQ(receive_modem(nullptr, &port), TRANSFER_COMPLETED);
    // Ten polls without the text, and one wait after them.
    EXPECT_EQ(timed_events(), "0 button Cancel|0 STATUS Initializing|0 > ATS0=1\r|10 STATUS Waiting|122");
}

TEST_F(CommModem, CancelAndALostCarrierEndEachWait) {
    constexpr std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, int> CASES[] = {
        {~0U, ~0U, 9'000, TRANSFER_CANCELLED},    // nobody calls
        {3'000, ~0U, 3'300, TRANSFER_CANCELLED},  // while "CONNECT" is looked for
        {3'000, 3'300, ~0U, TRANSFER_NO_CARRIER}, // likewise
    };
    for (const auto& [carrier_from, carrier_to, cancel_at, result] : CASES) {
        reset_desktop();
        line_script.has_carrier = [from = carrier_from, to = carrier_to](std::uint32_t) {
            return desktop_clock >= from && desktop_clock < to;
        };
        line_script.is_cancel_pressed = [at = cancel_at](std::uint32_t) { return desktop_clock >= at; };
        EXPECT_EQ(receive_modem(nullptr, &port), result) << cancel_at;
    }
}

TEST_F(CommModem, HangsUpWhenTheCarrierHasGone) {
    line_script.has_carrier = [](std::uint32_t) { return desktop_clock < 70'000; };
    int errors = 5; // errors on the line hold a command back, and it then goes out whole
    line_script.status = [&](LINE_STATUS&) { return errors-- > 0 ? 8U : 0U; };
    line_script.heard = [&](std::uint8_t) { EXPECT_LT(errors, 0); };
    disconnect_modem(&port);
    EXPECT_EQ(timed_events(), "715 > +++|730 > AT H0\r|740");
}

TEST_F(CommModem, ADelaySurvivesTheWrapOfTheClock) {
    desktop_clock = ~0U - 500;
    delay(1000);
    EXPECT_NEAR(desktop_clock, 499, 4);
}

} // namespace
