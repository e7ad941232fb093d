#include "tests/comm_test.h"

namespace {

class CommModem : public CommTest {
protected:
    CommModem() {
        comm_settings.interface_mode = INTERFACE_MODEM;
        line_script.typed_number = "0,555-1234";
        line_script.has_carrier = [](std::uint32_t) { return desktop_clock >= 10'000; };
    }
    LINE port;
};

// Steps of a dialogue, each with the milliseconds that it comes after the one before. Reading the clock moves
// it, so a step may be late by the few readings between.
struct STEP {
    std::uint32_t wait;
    std::string text;
};
void expect_dialogue(const std::vector<STEP>& expected) {
    std::uint32_t before = 0;
    ASSERT_EQ(line_record.events.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const LINE_EVENT& event = line_record.events[i];
        EXPECT_EQ(event.text, expected[i].text) << i;
        EXPECT_GE(event.at - before, expected[i].wait) << event.text;
        EXPECT_LE(event.at - before, expected[i].wait + 2) << event.text;
        before = event.until;
    }
}

void expect_clock(std::uint32_t since, std::uint32_t passed) {
    EXPECT_NEAR(desktop_clock - since, passed + 30, 30);
}

TEST_F(CommModem, DialsToTheByteAndTheMillisecond) {
    for (const auto& [method, command] : {std::pair{DIAL_TONE, "> ATDT"}, {DIAL_PULSE, "> ATDP"}}) {
        reset_desktop();
        line_record = {};
        comm_settings.dialmethod = method;
        line_brings("\r\nCONNECT 9600\r\n", 10'000);
        EXPECT_EQ(send_modem(nullptr, &port), TRANSFER_COMPLETED);
        expect_dialogue({{0, "ask number"},
                         {0, "button Cancel"},
                         {0, "STATUS Initializing"},
                         {0, "> AT&F&C1\r"},
                         {1000, "STATUS Dialing"},
                         {0, command + std::string("0,555-1234\r")},
                         {5000, "STATUS Waiting"}});
        expect_clock(10'000, 400); // one poll that finds the text, and one wait after it
        EXPECT_EQ(line_record.unread, 0);
    }
}

TEST_F(CommModem, WaitsForACallWithoutDialing) {
    comm_settings.modem_init = "ATS0=1";
    line_brings("RING\r\nCONN", 0);
    line_brings("ECT", 10'000 + 300); // the text is looked for in each poll's own bytes
    EXPECT_EQ(receive_modem(nullptr, &port), TRANSFER_COMPLETED);
    expect_dialogue(
        {{0, "button Cancel"}, {0, "STATUS Initializing"}, {0, "> ATS0=1\r"}, {1000, "STATUS Waiting"}});
    expect_clock(10'000, 2200); // ten polls without the text, and one wait after them
}

TEST_F(CommModem, HoldsTheNumberAndCutsIt) {
    phone_number = "111";
    line_script.typed_number.reset();
    EXPECT_EQ(send_modem(nullptr, &port), TRANSFER_DIAL_CANCELLED);
    EXPECT_EQ(line_record.offered_number + phone_number + event_texts(), "111111ask number");
    line_script.typed_number = std::string(40, '7');
    EXPECT_EQ(send_modem(nullptr, &port), TRANSFER_COMPLETED);
    EXPECT_EQ(phone_number, std::string(29, '7'));
    EXPECT_NE(line_record.sent.find("ATDT" + std::string(29, '7') + "\r"), std::string::npos);
}

TEST_F(CommModem, CancelAndALostCarrierEndEachWait) {
    struct {
        std::uint32_t carrier_from, carrier_to, cancel_at;
        int result;
    } const cases[] = {
        {~0U, ~0U, 9'000, TRANSFER_CANCELLED},    // nobody calls
        {3'000, ~0U, 3'300, TRANSFER_CANCELLED},  // while "CONNECT" is looked for
        {3'000, 3'300, ~0U, TRANSFER_NO_CARRIER}, // likewise
        {3'000, ~0U, 5'300, TRANSFER_COMPLETED},  // too late: connected without the text
    };
    for (const auto& c : cases) {
        reset_desktop();
        line_script.has_carrier = [&](std::uint32_t) {
            return desktop_clock >= c.carrier_from && desktop_clock < c.carrier_to;
        };
        line_script.is_cancel_pressed = [&](std::uint32_t) { return desktop_clock >= c.cancel_at; };
        EXPECT_EQ(receive_modem(nullptr, &port), c.result) << c.cancel_at;
    }
}

TEST_F(CommModem, HangsUpWhenTheCarrierHasGone) {
    line_script.has_carrier = [](std::uint32_t) { return desktop_clock < 70'000; };
    int errors = 5; // errors on the line hold a command back, and it then goes out whole
    line_script.status = [&](LINE_STATUS&) { return errors-- > 0 ? 8U : 0U; };
    line_script.write = [&](LINE*, std::uint8_t) {
        EXPECT_LT(errors, 0);
        return LINE_WRITE::DONE;
    };
    disconnect_modem(&port);
    ASSERT_EQ(event_texts(), "> +++AT H0\r");
    const auto& at = line_record.sent_at;
    EXPECT_NEAR(at[0], 70'000 + 1500, 60);
    EXPECT_NEAR(at[3] - at[2], 1500, 3);
    expect_clock(at.back(), 1000);
}

TEST_F(CommModem, ADelaySurvivesTheWrapOfTheClock) {
    desktop_clock = ~0U - 500;
    delay(1000);
    EXPECT_NEAR(desktop_clock, 499, 4);
}

} // namespace
