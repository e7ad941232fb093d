#include "tests/comm_test.h"

#include "comm/PCOM_log.h"

namespace {

using CommLog = CommTest;

TEST_F(CommLog, WordsForEachResult) {
    std::string words;
    for (int result = TRANSFER_COMPLETED; result >= TRANSFER_TIMEOUT; --result) {
        const char* const notes = transfer_log_notes(result);
        words += transfer_status_text(result) + std::string("/") + (notes ? notes : "") + "|";
    }
    EXPECT_EQ(words, "Completed/OK|Transmit Error/TRANSMISSION ERROR|User Abort/|No Carrier/LOSS OF CARRIER|"
                     "Modem Error/MODEM INIT ERROR|Dial Canceled/DIAL CANCELED|File Error/FILE ERROR|"
                     "Retries Exceeded/RETRY COUNT EXCEEDED|Timeout Error/TIMEOUT|");
}

TEST_F(CommLog, ColumnsAreCut) {
    const std::string x(30, 'x');
    EXPECT_EQ(log_line({x, x, x, x, x, x, x, x, x}), "xxxxxxxxxx xxxxxxxx xxxxxxxx   xxxxx xxxxxxxx "
                                                     "xxxxxxxxx xxxxxxxxxxxx xxxxxx xxxxxxxxxxxxxxxxxxxxx\n");
    EXPECT_EQ(log_size(1'234'567), "123456");
}

TEST_F(CommLog, TheClockHasTwelveHours) {
    const std::pair<int, const char*> cases[] = {
        {0, "12:07 am"}, {11, "11:07 am"}, {12, "12:07 pm"}, {23, "11:07 pm"}};
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
    std::fputs("line\n", open_log().get());
    EXPECT_EQ(get_file("LOG.TXT"), header + "line\n");
}

} // namespace
