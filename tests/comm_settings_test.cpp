#include "tests/comm_test.h"

namespace {

using CommSettings = CommTest;

const std::map<std::string, std::string> DEFAULT_KEYS = {
    {"COMM/PORT", "1"},         {"COMM/BAUDRATE", "9600"},     {"COMM/DATABITS", "8"},
    {"COMM/STOPBITS", "1"},     {"COMM/PARITY", "0"},          {"COMM/PROTOCOL", "1"},
    {"COMM/FLOW_CONTROL", "2"}, {"COMM/XMODEM_RETRIES", "10"}, {"COMM/INTERFACE", "0"},
    {"COMM/FILEMODE", "0"},     {"COMM/DIALMETHOD", "0"},      {"COMM/MODEM_INIT", "AT&F&C1"},
};

TEST_F(CommSettings, NoKeysGiveTheDefaults) {
    comm_settings = {9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, "X"};
    read_com_setup();
    write_com_setup();
    EXPECT_EQ(desktop_settings, DEFAULT_KEYS);
}

TEST_F(CommSettings, EachKeyReachesItsOwnFieldUnchecked) {
    std::map<std::string, std::string> keys = DEFAULT_KEYS;
    unsigned value = 4'000'000'000;
    for (auto& [key, text] : keys)
        text = std::to_string(value++);
    desktop_settings = keys;
    read_com_setup();
    EXPECT_EQ(comm_settings.baudrate, 4'000'000'000);
    EXPECT_EQ(comm_settings.xmodem_retries, 4'000'000'011);
    desktop_settings.clear();
    write_com_setup();
    EXPECT_EQ(desktop_settings, keys);
}

TEST_F(CommSettings, ALongModemInitIsCut) {
    desktop_settings["COMM/MODEM_INIT"] = std::string(300, 'x');
    read_com_setup();
    EXPECT_EQ(comm_settings.modem_init, std::string(254, 'x'));
}

TEST_F(CommSettings, TheSummaryNeverIndexesByAValue) {
    struct {
        COMM_SETTINGS settings;
        std::vector<std::string> expected;
    } const cases[] = {
        {{}, {"DIRECT", "9600", "N81", "COM1", "XMODEM", "APPEND"}},
        {{4, 57600, 7, 2, 2, 0, 0, 10, 1, 1, 0, ""}, {"MODEM", "57600", "E72", "COM4", "NONE", "INCREMENT"}},
        {{2, 300, 7, 1, 1, 1, 0, 10, 0, 0, 0, ""}, {"DIRECT", "300", "O71", "COM2", "XMODEM", "APPEND"}},
        {{77, 110, 5, 0, 3, 9, 9, 0, 9, 9, 9, ""}, {"DIRECT", "110", "N71", "COM77", "NONE", "APPEND"}},
        {{0, 0, 99, 99, ~0U, ~0U, 0, 0, ~0U, ~0U, 0, ""}, {"DIRECT", "0", "N82", "COM0", "NONE", "APPEND"}},
    };
    for (const auto& [settings, expected] : cases) {
        const SETTINGS_SUMMARY s = summarize_settings(settings);
        EXPECT_EQ((std::vector{s.interface_mode, s.baudrate, s.line, s.port, s.protocol, s.filemode}),
                  expected);
    }
}

TEST_F(CommSettings, ThePortIsOpenedAsSet) {
    struct {
        std::uint32_t parity, databits, stopbits, flow_control, protocol;
        const char* mode;
        bool rts_cts;
    } const cases[] = {
        {EVEN_PARITY, 7, 2, FLOW_RTS_CTS, PROTOCOL_XMODEM, "COM3:9600,e,7,2", true},
        {ODD_PARITY, 8, 1, FLOW_XON_XOFF, PROTOCOL_NONE, "COM3:9600,o,8,1", false},
        {NO_PARITY, 8, 1, FLOW_NONE, PROTOCOL_NONE, "COM3:9600,n,8,1", false},
        {5, 8, 1, 7, PROTOCOL_XMODEM, "COM3:9600,n,8,1", false},
    };
    for (const auto& c : cases)
        for (const int action : {ACTION_SEND, ACTION_RECEIVE}) {
            comm_settings = {3, 110, c.databits, c.stopbits, c.parity, c.protocol, c.flow_control};
            LINE* const line = comm_initialize(action);
            ASSERT_NE(line, nullptr);
            close_line(line);
            const LINE_SETTINGS& opened = line_record.settings;
            EXPECT_EQ(opened.device, "COM3");
            EXPECT_EQ(opened.mode, c.mode);
            EXPECT_EQ(opened.baudrate, 110);
            EXPECT_EQ(opened.xon_limit, 256);
            EXPECT_EQ(opened.xoff_limit, 256);
            EXPECT_EQ(opened.write_limit, 2000);
            EXPECT_FALSE(opened.output_xon_xoff || opened.input_xon_xoff);
            EXPECT_EQ(opened.cts_output_flow, c.rts_cts);
            EXPECT_EQ(opened.rts_handshake, c.rts_cts);
        }
}

TEST_F(CommSettings, APortThatDoesNotOpenIsReportedAndNothingStarts) {
    const std::pair<LINE_OPENING, const char*> cases[] = {
        {LINE_OPENING::BAD_SETTINGS, "Error Creating DCB"},
        {LINE_OPENING::NO_PORT, "Error Opening Com Port."},
        {LINE_OPENING::NOT_INITIALIZED, "Error Initializing Com Port."},
    };
    for (const auto& [opening, text] : cases) {
        line_script.opening = opening;
        for (const auto transfer : {send_file, receive_file}) {
            expect_message(text, "Tolvan Programmer", MESSAGE_ICON::STOP);
            line_record.events.clear();
            transfer(nullptr, "FILE.DAT");
            EXPECT_EQ(event_texts(), "open");
        }
    }
    EXPECT_EQ(desktop_beeps, 0);
}

} // namespace
