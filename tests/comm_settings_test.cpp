#include "tests/comm_test.h"

namespace {

using CommSettings = CommTest;

TEST_F(CommSettings, EachKeyHoldsItsOwnFieldUnchecked) {
    const std::map<std::string, std::string> keys = {
        {"COMM/PORT", "4294967295"}, {"COMM/BAUDRATE", "2"},       {"COMM/DATABITS", "3"},
        {"COMM/STOPBITS", "4"},      {"COMM/PARITY", "5"},         {"COMM/PROTOCOL", "6"},
        {"COMM/FLOW_CONTROL", "7"},  {"COMM/XMODEM_RETRIES", "8"}, {"COMM/INTERFACE", "9"},
        {"COMM/FILEMODE", "10"},     {"COMM/DIALMETHOD", "11"},    {"COMM/MODEM_INIT", "12"},
    };
    comm_settings = {~0U, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, "12"};
    write_com_setup();
    EXPECT_EQ(desktop_settings, keys);
    reset_com_setups();
    read_com_setup();
    desktop_settings.clear();
    write_com_setup();
    EXPECT_EQ(desktop_settings, keys);

    desktop_settings = {{"COMM/MODEM_INIT", std::string(300, 'x')}};
    read_com_setup();
    EXPECT_EQ(comm_settings.modem_init, std::string(254, 'x'));
    EXPECT_EQ(comm_settings.baudrate, 9600);
}

TEST_F(CommSettings, TheSummaryNeverIndexesByAValue) {
    const SETTINGS_SUMMARY s = summarize_settings({77, 110, 5, 0, 3, 9, 9, 0, 9, 9, 9, ""});
    EXPECT_EQ(s.interface_mode + " " + s.baudrate + " " + s.line, "DIRECT 110 N71");
    EXPECT_EQ(s.port + " " + s.protocol + " " + s.filemode, "COM77 NONE APPEND");
}

TEST_F(CommSettings, ThePortIsOpenedAsSet) {
    struct {
        std::uint32_t parity, databits, stopbits, flow_control;
        const char* mode;
    } const cases[] = {
        {EVEN_PARITY, 7, 2, FLOW_RTS_CTS, "COM3:9600,e,7,2"},
        {ODD_PARITY, 8, 1, FLOW_XON_XOFF, "COM3:9600,o,8,1"},
        {NO_PARITY, 8, 1, FLOW_NONE, "COM3:9600,n,8,1"},
        {5, 8, 1, 7, "COM3:9600,n,8,1"},
    };
    for (const auto& c : cases) {
        comm_settings = {3, 110, c.databits, c.stopbits, c.parity, PROTOCOL_NONE, c.flow_control};
        close_line(comm_initialize(ACTION_SEND));
        const LINE_SETTINGS& opened = line_record.settings;
        EXPECT_EQ(opened.device, "COM3");
        EXPECT_EQ(opened.mode, c.mode);
        EXPECT_EQ(opened.baudrate, 110);
        EXPECT_TRUE(opened.xon_limit == 256 && opened.xoff_limit == 256 && opened.write_limit == 2000);
        EXPECT_FALSE(opened.output_xon_xoff || opened.input_xon_xoff);
        EXPECT_EQ(opened.rts_cts, c.flow_control == FLOW_RTS_CTS);
    }
}

TEST_F(CommSettings, APortThatDoesNotOpenIsReportedAndNothingStarts) {
    const std::pair<LINE_OPENING, const char*> cases[] = {
        {LINE_OPENING::BAD_SETTINGS, "Error Creating DCB"},
        {LINE_OPENING::NO_PORT, "Error Opening Com Port."},
        {LINE_OPENING::NOT_INITIALIZED, "Error Initializing Com Port."},
    };
    for (const auto& [opening, text] : cases)
        for (const auto transfer : {send_file, receive_file}) {
            start_over();
            line_script.opening = opening;
            expect_message(text, COMM_TITLE, MESSAGE_ICON::STOP);
            transfer(nullptr, "FILE.DAT");
            EXPECT_EQ(event_texts(), "open");
            EXPECT_EQ(desktop_beeps, 0);
        }
}

} // namespace
