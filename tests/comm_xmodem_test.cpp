#include "tests/comm_test.h"

namespace {

using CommXmodem = CommTest;

constexpr char FILE_NAME[] = "FILE.DAT";
LINE port;

// Blocks, bytes and errors.
std::string shown_counters() {
    auto& shown = line_record.counters;
    return shown[COUNTER::BLOCKS_DONE] + "/" + shown[COUNTER::BYTES_DONE] + "/" + shown[COUNTER::ERRORS];
}

const struct {
    const char* name;
    std::size_t size;
    std::uint32_t retries;
    std::string request, answers;
    int result;
    std::vector<unsigned> blocks;    // as they are sent
    std::string last_byte, counters; // counters as shown at the end
    std::uint32_t time;
} SEND_CASES[] = {
    {"empty", 0, 10, "C", "", 0, {}, EOT, "//0", 0},
    {"one full block", 128, 10, "C", "A", 0, {1}, EOT, "1/128/0", 0},
    {"129 bytes", 129, 10, "c", "AA", 0, {1, 2}, EOT, "2/256/0", 0},
    {"noise before request and answer", 200, 10, "\x06zC", "?A", 0, {1, 2}, EOT, "2/256/0", 0},
    {"with a sum, padded block refused", 129, 10, NAK, "AN", 0, {1, 2}, EOT, "2/256/1", 0},
    {"padded block refused, no retries", 129, 0, "C", "AN", -7, {1, 2}, CAN, "2/256/1", 0},
    {"padded block unanswered", 129, 10, "C", "A-", -8, {1, 2}, "", "2/256/2", 5000},
    {"refused to the end", 300, 4, "C", "NNNNN", -7, {1, 1, 1, 1, 1}, CAN, "1/128/5", 0},
    {"silent to the end", 300, 2, "C", "A---", -7, {1, 2, 2, 2}, CAN, "2/256/3", 15000},
    {"an answer restores the retries", 300, 1, "C", "NA-AA", 0, {1, 1, 2, 2, 3}, EOT, "3/384/2", 5000},
    {"cancelled by the receiver", 300, 4, "C", "AX", -2, {1, 2}, CAN, "2/256/0", 0},
    {"nobody asks", 300, 4, "", "", -8, {}, "", "//1", 60000},
};

TEST_F(CommXmodem, SendEndings) {
    for (const auto& c : SEND_CASES) {
        SCOPED_TRACE(c.name);
        start_over();
        comm_settings.xmodem_retries = c.retries;
        const std::string bytes = numbered_bytes(c.size);
        write_bytes(FILE_NAME, bytes);
        answer_frames(c.request, c.answers);
        EXPECT_EQ(xmodem_send_file(nullptr, &port, FILE_NAME), c.result);

        const auto frames = frames_of(bytes, c.request != NAK);
        std::string expected;
        for (const unsigned block : c.blocks)
            expected += frames[block - 1];
        EXPECT_EQ(line_record.sent, expected + c.last_byte);
        EXPECT_EQ(shown_counters(), c.counters);
        EXPECT_NEAR(desktop_clock, c.time + 750, 750);
        EXPECT_TRUE(event_texts().starts_with("STATUS Waiting|button Cancel"));
    }
}

TEST_F(CommXmodem, WhatHoldsASenderBack) {
    constexpr std::uint32_t HELD_UNTIL = 10'000;
    constexpr std::pair<LINE_STATUS, bool> CASES[] = {
        {{true, false, false, false, 0}, true},     {{false, true, false, false, 0}, false},
        {{false, false, true, false, 0}, false},    {{false, false, false, true, 0}, false},
        {{false, false, false, false, 1}, false},   {{false, false, false, false, 1024}, false},
        {{false, false, false, false, 1025}, true},
    };
    const std::string bytes("a\0\x1A\x04z", 5);
    for (const auto& [held, holds_ascii] : CASES)
        for (const bool is_ascii : {false, true}) {
            start_over();
            write_bytes(FILE_NAME, bytes);
            answer_frames("C", "A");
            line_script.status = [=, held = held](LINE_STATUS& status) {
                status = desktop_clock > HELD_UNTIL ? LINE_STATUS() : held;
                return 0U;
            };
            const auto transfer = is_ascii ? ascii_send_file : xmodem_send_file;
            EXPECT_EQ(transfer(nullptr, &port, FILE_NAME), TRANSFER_COMPLETED);
            EXPECT_EQ(line_record.sent, is_ascii ? bytes : frame_of(1, bytes, true) + EOT);
            EXPECT_EQ(line_record.counters[COUNTER::BYTES_DONE], is_ascii ? "5" : "128");
            EXPECT_EQ(desktop_clock > HELD_UNTIL, !is_ascii || holds_ascii);
        }
}

// --- receiving ---

std::string spoiled(std::string frame, std::size_t at) {
    frame[at] = static_cast<char>(frame[at] ^ 0x10);
    return frame;
}

std::vector<std::string> after_silence(std::size_t silent, std::vector<std::string> answers) {
    answers.insert(answers.begin(), silent, "");
    return answers;
}

struct RECEIVE_CASE {
    const char* name;
    std::uint32_t retries;
    std::vector<std::string> answers; // of the other side, to each byte it hears
    int result;
    std::string stored, sent, counters;
    std::uint32_t time;
};

const std::string B1 = numbered_bytes(128);
const std::string B2 = numbered_bytes(200).substr(128);
const std::string F1 = frame_of(1, B1, true);
const std::string F2 = frame_of(2, B2, true);
const std::string S1 = frame_of(1, B1, false);
const std::string FILL = frame_of(1, "", true);
const std::string A = ACK;
const std::string N = NAK;
const std::string C15(15, 'C');
const std::string ALL_REQUESTS = C15 + std::string(16, N[0]);
const std::string X1 = spoiled(F1, 9);
const std::string X2 = spoiled(F2, 9);
const std::string Y1 = spoiled(S1, 131);

const RECEIVE_CASE RECEIVE_CASES[] = {
    {"the last C", 10, after_silence(14, {F1, EOT}), 0, B1, C15 + A + A, "1/128/0", 28000},
    {"nobody sends", 10, {}, -8, "", ALL_REQUESTS + CAN, "//0", 82000},
    {"noise before the start", 10, {"\x04\x18zC" + F1, EOT}, 0, B1, "C" + A + A, "1/128/0", 0},
    {"a broken-off frame", 10, {F1, F2.substr(0, 132)}, -8, "", "C" + A + CAN, "1/128/0", 20000},
    {"a bad sum", 10, after_silence(15, {Y1, S1, EOT}), 0, B1, C15 + N + N + A + A, "1/128/1", 30000},
    {"a repeated frame", 10, {F1, F1, F2, EOT}, 0, B1 + B2, "C" + A + N + A + A, "2/256/1", 0},
    {"retries exhausted", 2, {X1, X1, X1, F1}, -7, "", "C" + N + N + N + CAN, "//3", 0},
    {"retries restored", 1, {X1, F1, X2, F2, EOT}, 0, B1 + B2, "C" + N + A + N + A + A, "2/256/2", 0},
    {"CAN starts a frame", 10, {F1, CAN + F2.substr(1), EOT}, 0, B1 + B2, "C" + A + A + A, "2/256/0", 0},
    {"nothing but fill", 10, {FILL, EOT}, 0, "", "C" + A + A, "1/128/0", 0},
};

TEST_F(CommXmodem, ReceiveEndings) {
    std::vector<RECEIVE_CASE> cases(std::begin(RECEIVE_CASES), std::end(RECEIVE_CASES));
    for (std::size_t at = 1; at < F1.size(); ++at)
        cases.push_back({"a byte", 10, {spoiled(F1, at), F1, EOT}, 0, B1, "C" + N + A + A, "1/128/1", 0});
    for (const RECEIVE_CASE& c : cases) {
        SCOPED_TRACE(c.name);
        start_over();
        comm_settings.xmodem_retries = c.retries;
        write_bytes(FILE_NAME, "what stood here before");
        answer_each_byte(c.answers);
        EXPECT_EQ(xmodem_receive_file(nullptr, &port, FILE_NAME), c.result);
        EXPECT_EQ(read_bytes(FILE_NAME), c.stored);
        EXPECT_EQ(line_record.sent, c.sent);
        EXPECT_EQ(shown_counters(), c.counters);
        EXPECT_NEAR(desktop_clock, c.time + 750, 750);
    }
}

TEST_F(CommXmodem, SendersThatComeLate) {
    line_brings(F1, 1'000);
    line_brings(F2, 19'000); // each frame has its own twenty seconds
    line_brings(EOT, 38'000);
    EXPECT_EQ(xmodem_receive_file(nullptr, &port, FILE_NAME), TRANSFER_COMPLETED);
    EXPECT_EQ(read_bytes(FILE_NAME), B1 + B2);
    start_over();
    auto_receive_flag = true; // asks on and on
    answer_each_byte(after_silence(31 + 31 + 2, {F1, EOT}));
    EXPECT_EQ(xmodem_receive_file(nullptr, &port, FILE_NAME), TRANSFER_COMPLETED);
    EXPECT_EQ(line_record.sent, ALL_REQUESTS + ALL_REQUESTS + "CCC" + A + A);
}

TEST_F(CommXmodem, FilesThatCannotBeUsed) {
    constexpr char OPENING[] = "Error Opening File";
    constexpr char WRITING[] = "File Write Error";
    struct {
        int (*transfer)(WINDOW, LINE*, const std::string&);
        const char* file;
        std::vector<std::string> answers, messages;
        std::string sent;
    } const cases[] = {
        {xmodem_send_file, "missing/FILE", {}, {OPENING}, ""},
        {ascii_receive_file, "missing/FILE", {}, {OPENING}, ""},
        {xmodem_send_file, ".", {}, {}, CAN}, // cannot be read, but is no empty file
        {ascii_send_file, ".", {}, {}, ""},
        {xmodem_receive_file, "/dev/full", {F1, F2, EOT}, {"cbWrite error", WRITING}, "C" + A + CAN},
        // The very last block, which the sender has already been told is safe.
        {xmodem_receive_file, "/dev/full", {F1, EOT}, {WRITING}, "C" + A + A},
        {ascii_receive_file, "/dev/full", {}, {WRITING}, ""},
    };
    for (const auto& c : cases) {
        start_over();
        for (const std::string& text : c.messages)
            expect_message(text, COMM_TITLE, MESSAGE_ICON::STOP);
        line_brings(c.transfer == xmodem_receive_file ? "" : "C");
        answer_each_byte(c.answers);
        EXPECT_EQ(c.transfer(nullptr, &port, c.file), TRANSFER_FILE_ERROR);
        EXPECT_EQ(line_record.sent, c.sent);
    }
}

// --- every stage of every transfer ---

struct ROUTINE {
    const char* name;
    int (*run)(WINDOW, LINE*, const std::string&);
    std::string cancel_byte; // sent when the operator cancels
    void (*prepare)();
};

const ROUTINE ROUTINES[] = {
    {"xmodem send", xmodem_send_file, CAN,
     [] {
         write_bytes(FILE_NAME, B1 + B2);
         answer_frames("C", "NAA");
     }},
    {"xmodem receive", xmodem_receive_file, CAN,
     [] {
         answer_each_byte({"", F1, X2, F2, EOT});
     }},
    {"ascii send", ascii_send_file, "", [] { write_bytes(FILE_NAME, B1 + B2); }},
    {"ascii receive", ascii_receive_file, "", [] { line_brings(B1 + B2, 1000); }},
};

void prepare(const ROUTINE& routine) {
    start_over();
    comm_settings.interface_mode = INTERFACE_MODEM;
    desktop_clock_step = 50; // waits take few polls, so that each of them can be tried
    routine.prepare();
}

// Errors that never end let no byte through, but Cancel. Only a receiver's last byte is not written again.
TEST_F(CommXmodem, FaultsAtEachPollAndEachByte) {
    for (const ROUTINE& routine : ROUTINES) {
        SCOPED_TRACE(routine.name);
        prepare(routine);
        EXPECT_EQ(routine.run(nullptr, &port, FILE_NAME), TRANSFER_COMPLETED);
        const LINE_RECORD whole = line_record;
        ASSERT_GT(whole.carrier_queries, 150);
        for (std::uint32_t poll = 1; poll <= whole.carrier_queries; ++poll)
            for (const bool is_cancel : {false, true}) {
                prepare(routine);
                if (is_cancel)
                    line_script.is_cancel_pressed = [=](std::uint32_t query) { return query == poll; };
                else
                    line_script.has_carrier = [=](std::uint32_t query) { return query < poll; };
                const int result = routine.run(nullptr, &port, FILE_NAME);
                ASSERT_EQ(result, is_cancel ? TRANSFER_CANCELLED : TRANSFER_NO_CARRIER) << poll;
                const std::string last = is_cancel ? routine.cancel_byte : "";
                const std::size_t sent_before = line_record.sent.size() - last.size();
                ASSERT_EQ(line_record.sent, whole.sent.substr(0, sent_before) + last) << poll;
                ASSERT_EQ(line_record.carrier_queries, poll) << "it went on";
            }
        prepare(routine);
        line_script.status = [](LINE_STATUS&) { return 4U; };
        line_script.is_cancel_pressed = [](std::uint32_t) { return desktop_clock > 10'000; };
        EXPECT_EQ(routine.run(nullptr, &port, FILE_NAME), TRANSFER_CANCELLED);
        EXPECT_EQ(line_record.counters[COUNTER::BYTES_DONE], "");
        const bool is_ascii = routine.run == ascii_send_file;
        const bool is_receive = routine.run == xmodem_receive_file;
        for (std::size_t at = is_receive ? 2 : 0; at < whole.sent.size(); ++at)
            for (const LINE_WRITE fault : {LINE_WRITE::NOTHING, LINE_WRITE::FAILED}) {
                prepare(routine);
                int left = 3;
                line_script.write = [&](LINE*, std::uint8_t) {
                    return line_record.sent.size() == at && left-- > 0 ? fault : LINE_WRITE::DONE;
                };
                const int result = routine.run(nullptr, &port, FILE_NAME);
                const bool is_last = is_receive && at == whole.sent.size() - 1;
                const bool fails = is_ascii || (fault == LINE_WRITE::FAILED && !is_last);
                ASSERT_EQ(result, fails ? TRANSFER_LINE_FAILED : TRANSFER_COMPLETED) << at;
                ASSERT_EQ(line_record.sent, whole.sent.substr(0, fails || is_last ? at : std::string::npos));
                ASSERT_EQ(line_record.counters[COUNTER::STATUS] == "Error",
                          fails && routine.run == xmodem_send_file);
            }
    }
}

} // namespace
