#include "tests/comm_test.h"

#include "comm/PCOM_log.h"

namespace {

using CommLog = CommTest;

TEST_F(CommLog, WordsForEachResult) {
    struct {
        int result;
        const char* status;
        const char* notes;
    } const cases[] = {
        {0, "Completed", "OK"},
        {-1, "Transmit Error", "TRANSMISSION ERROR"},
        {-2, "User Abort", nullptr},
        {-3, "No Carrier", "LOSS OF CARRIER"},
        {-4, "Modem Error", "MODEM INIT ERROR"},
        {-5, "Dial Canceled", "DIAL CANCELED"},
        {-6, "File Error", "FILE ERROR"},
        {-7, "Retries Exceeded", "RETRY COUNT EXCEEDED"},
        {-8, "Timeout Error", "TIMEOUT"},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(transfer_status_text(c.result), c.status);
        EXPECT_STREQ(transfer_log_notes(c.result), c.notes);
    }
}

TEST_F(CommLog, ColumnsArePaddedAndCut) {
    EXPECT_EQ(log_line({"11-21-2026", "09:05 am", "10:15 pm", "300", "NONE", "RTC/CTS", "A.001", "7", "OK"}),
              "11-21-2026 09:05 am 10:15 pm   300   NONE     RTC/CTS   A.001        7      OK\n");
    const std::string x(30, 'x');
    EXPECT_EQ(log_line({x, x, x, x, x, x, x, x, x}), "xxxxxxxxxx xxxxxxxx xxxxxxxx   xxxxx xxxxxxxx "
                                                     "xxxxxxxxx xxxxxxxxxxxx xxxxxx xxxxxxxxxxxxxxxxxxxxx\n");
    EXPECT_EQ(log_size(1'234'567), "123456");
}

TEST_F(CommLog, TheClockHasTwelveHours) {
    const std::pair<int, const char*> cases[] = {{0, "12:07 am"},  {1, "01:07 am"},  {11, "11:07 am"},
                                                 {12, "12:07 pm"}, {13, "01:07 pm"}, {23, "11:07 pm"}};
    for (const auto& [hour, text] : cases) {
        desktop_time = {2031, 2, 3, hour, 7};
        get_autoreceive_start();
        get_autoreceive_stop();
        EXPECT_EQ(log_entry.date, "02-03-2031");
        EXPECT_EQ(log_entry.connect_time, text);
        EXPECT_EQ(log_entry.disconnect_time, text);
    }
}

TEST_F(CommLog, TheHeaderIsWrittenOnceAndLinesAreAppended) {
    const std::string header =
        "                             AUTO RECEIVE LOGFILE\n"
        "\n"
        "DATE       CONNECT  DISCONNECT BAUD  PROTOCOL FLOW CONT FILENAME     SIZE   NOTES\n"
        "---------- -------- ---------- ----- -------- --------- ------------ ------ -----\n";
    open_log();
    EXPECT_EQ(get_file("LOG.TXT"), header);
    std::fputs("line\n", open_log().get());
    EXPECT_EQ(get_file("LOG.TXT"), header + "line\n");
    put_file("LOG.TXT", "");
    open_log();
    EXPECT_EQ(get_file("LOG.TXT"), "");
}

// The flow column follows the protocol, whatever the flow control is.
TEST_F(CommLog, TheFlowColumnFollowsTheProtocol) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {0, "NONE"}, {1, "XON/XOFF"}, {2, "RTC/CTS"}, {3, "NONE"}};
    for (const auto& [protocol, flow] : cases) {
        start_over();
        auto_receive_flag = true;
        comm_settings.protocol = protocol;
        line_script.is_cancel_pressed = [](std::uint32_t) { return true; };
        receive_file(nullptr, "DATA.TXT");
        EXPECT_EQ(log_entry.flow_control, flow);
        EXPECT_EQ(log_entry.protocol, protocol == 1 ? "XMODEM" : "NONE");
        EXPECT_EQ(line_record.open_lines, 0);
    }
}

} // namespace
