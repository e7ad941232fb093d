#include "tests/comm_test.h"

namespace {

using CommSettings = CommTest;

TEST_F(CommSettings, EachKeyHoldsItsOwnFieldUnchecked) {
    comm_settings = {~0U, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, "12"};
    write_com_setup();
    reset_com_setups();
    read_com_setup();
    desktop_settings.clear();
    write_com_setup(); // what was read is written again
    std::string written;
    for (const auto& [key, value] : desktop_settings)
        written += key.substr(key.find('/') + 1) + " " + value + "|";
    EXPECT_EQ(written, "BAUDRATE 2|DATABITS 3|DIALMETHOD 11|FILEMODE 10|FLOW_CONTROL 7|INTERFACE 9|"
                       "MODEM_INIT 12|PARITY 5|PORT 4294967295|PROTOCOL 6|STOPBITS 4|XMODEM_RETRIES 8|");
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
    const std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, const char*> cases[] = {
        {EVEN_PARITY, 7, 2, FLOW_RTS_CTS, "COM3 COM3:9600,e,7,2"},
        {ODD_PARITY, 8, 1, FLOW_XON_XOFF, "COM3 COM3:9600,o,8,1"},
        {5, 8, 1, 7, "COM3 COM3:9600,n,8,1"}, // none of the choices
    };
    for (const auto& [parity, databits, stopbits, flow_control, mode] : cases) {
        comm_settings = {3, 110, databits, stopbits, parity, PROTOCOL_NONE, flow_control};
        close_line(comm_initialize(ACTION_SEND));
        const LINE_SETTINGS& opened = line_record.settings;
        EXPECT_EQ(opened.device + " " + opened.mode, mode);
        EXPECT_EQ(opened.baudrate, 110);
        EXPECT_TRUE(opened.xon_limit == 256 && opened.xoff_limit == 256 && opened.write_limit == 2000);
        EXPECT_FALSE(opened.input_xon_xoff);
        EXPECT_EQ(opened.rts_cts, flow_control == FLOW_RTS_CTS);
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
            EXPECT_EQ(line_record.events, "0 open");
            EXPECT_EQ(desktop_beeps, 0);
        }
}

} // namespace
