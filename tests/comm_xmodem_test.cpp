#include "tests/comm_test.h"

namespace {

using CommXmodem = CommTest;

constexpr auto SEND = xmodem_send_file, FLASH = xmodem_send_flash, RECEIVE = xmodem_receive_file;
constexpr char FILE_NAME[] = "FILE.DAT";
constexpr char DISK[] = "/dev/full"; // takes nothing
constexpr char OPEN[] = "Error Opening File";
constexpr char STORE[] = "cbWrite error", WRITE[] = "File Write Error";
constexpr std::uint32_t LEAD = 500;  // ms until the other side says anything of its own
constexpr std::uint32_t SLACK = 600; // ms; polls take up to twice that beside the waits

std::string spoiled(std::string frame, std::size_t at) {
    frame[at] = static_cast<char>(frame[at] ^ 0x10);
    return frame;
}

std::vector<std::string> after_silence(std::size_t silent, std::vector<std::string> answers) {
    answers.insert(answers.begin(), silent, "");
    return answers;
}

const std::string OLD = "what stood here before";
const std::string B1 = numbered_bytes(128);
const std::string B2 = numbered_bytes(200).substr(128);
const std::string SHORT = B1 + B2; // the second block is filled up
const std::string FULL = numbered_bytes(256);
const std::string F1 = frame_of(1, B1, true), F2 = frame_of(2, B2, true);
const std::string G2 = frame_of(2, FULL.substr(128), true);
const std::string S1 = frame_of(1, B1, false), S2 = frame_of(2, B2, false);
const std::string IMAGE = numbered_bytes(2000);
const std::string L1 = frame_of(1, IMAGE.substr(0, 1024), false, 1024);
const std::string L2 = frame_of(2, IMAGE.substr(1024), false, 1024);
const std::string NULS(128, '\0'), NUL1 = frame_of(1, NULS, true);
const std::string X1 = spoiled(F1, 9), X2 = spoiled(F2, 9), Y1 = spoiled(S1, 131);
const std::string A = ACK, N = NAK;
const std::string C15(15, 'C');

struct CASE {
    const char* name;
    int (*transfer)(WINDOW, LINE*, const std::string&);
    std::string file;                 // what is sent, or what has been received
    std::string coming;               // what the other side says of its own
    std::vector<std::string> answers; // of the other side, to each frame or to each byte of a receiver
    int result;                       // a TRANSFER_RESULT
    std::string sent, counters;       // blocks, bytes and errors as shown at the end
    std::uint32_t time = 0, retries = 10;
    const char* path = FILE_NAME;
    std::vector<std::string> messages = {};
};

// One of each, each of whose stages is tried.
const CASE WHOLE_CASES[] = {
    {"xmodem send", SEND, SHORT, "C", {N, A, A}, 0, F1 + F1 + F2 + EOT, "2/256/1"},
    {"xmodem receive", RECEIVE, SHORT, "", {"", F1, X2, F2, EOT}, 0, "CC" + A + N + A + A, "2/256/1", 2000},
    {"plain send", ascii_send_file, SHORT, "", {}, 0, SHORT, "/200/"},
    {"plain receive", ascii_receive_file, SHORT, SHORT, {}, 0, "", "/199/", 5000},
};

const CASE CASES[] = {
    {"empty", SEND, "", "C", {}, 0, EOT, "//0"},
    {"full blocks", SEND, FULL, "C", {A, A}, 0, F1 + G2 + EOT, "2/256/0"},
    {"asked with a small letter", SEND, SHORT, "c", {A, A}, 0, F1 + F2 + EOT, "2/256/0"},
    {"noise before request and answer", SEND, B1, "\x06zC", {"\x43\xFF\x04" + A}, 0, F1 + EOT, "1/128/0"},
    {"with a sum, padded block refused", SEND, SHORT, N, {A, N}, 0, S1 + S2 + EOT, "2/256/1"},
    {"padded block refused, no retries", SEND, SHORT, "C", {A, N}, -7, F1 + F2 + CAN, "2/256/1", 0, 0},
    {"padded block unanswered", SEND, SHORT, "C", {A}, -8, F1 + F2, "2/256/2", 5000},
    {"refused to the end", SEND, FULL, "C", {N, N, N}, -7, F1 + F1 + F1 + CAN, "1/128/3", 0, 2},
    {"silent to the end", SEND, FULL, "C", {A}, -7, F1 + G2 + G2 + G2 + CAN, "2/256/3", 15000, 2},
    {"retries restored", SEND, FULL, "C", {N, A, "", A}, 0, F1 + F1 + G2 + G2 + EOT, "2/256/2", 5000, 1},
    {"cancelled by the receiver", SEND, FULL, "C", {A, CAN}, -2, F1 + G2 + CAN, "2/256/0"},
    {"nobody asks", SEND, FULL, "", {}, -8, "", "//1", 60000},
    {"flash, the last block refused", FLASH, IMAGE, N, {A, N}, 0, L1 + L2 + EOT, "2/2048/1", 2000},

    {"the last C", RECEIVE, B1, "", after_silence(14, {F1, EOT}), 0, C15 + A + A, "1/128/0", 28000},
    {"nobody sends", RECEIVE, "", "", {}, -8, C15 + std::string(16, N[0]) + CAN, "//0", 82000},
    {"noise before the start", RECEIVE, B1, "", {"\x04\x18zC" + F1, EOT}, 0, "C" + A + A, "1/128/0"},
    {"a broken-off frame", RECEIVE, "", "", {F1, F2.substr(0, 132)}, -8, "C" + A + CAN, "1/128/0", 20000},
    {"bad sum", RECEIVE, B1, "", after_silence(15, {Y1, S1, EOT}), 0, C15 + N + N + A + A, "1/128/1", 30000},
    {"a repeated frame", RECEIVE, SHORT, "", {F1, F1, F2, EOT}, 0, "C" + A + N + A + A, "2/256/1"},
    {"retries exhausted", RECEIVE, "", "", {X1, X1, X1, F1}, -7, "C" + N + N + N + CAN, "//3", 0, 2},
    {"more retries", RECEIVE, SHORT, "", {X1, F1, X2, F2, EOT}, 0, "C" + N + A + N + A + A, "2/256/2", 0, 1},
    {"CAN starts a frame", RECEIVE, SHORT, "", {F1, CAN + F2.substr(1), EOT}, 0, "C" + A + A + A, "2/256/0"},
    {"NULs before the end", RECEIVE, NULS + B2, "", {NUL1, F2, EOT}, 0, "C" + A + A + A, "2/256/0"},
    {"nothing but fill", RECEIVE, "", "", {NUL1, EOT}, 0, "C" + A + A, "1/128/0"},

    {"no file", SEND, "", "", {}, -6, "", "//", 0, 0, "missing/FILE", {OPEN}},
    {"no folder", ascii_receive_file, OLD, "", {}, -6, "", "//", 0, 0, "missing/FILE", {OPEN}},
    {"what cannot be read is no empty file", SEND, "", "C", {}, -6, CAN, "//0", 0, 0, "."},
    {"nor is it one when sent plain", ascii_send_file, "", "", {}, -6, "", "//", 0, 0, "."},
    {"full disk", RECEIVE, OLD, "", {F1, F2, EOT}, -6, "C" + A + CAN, "2/256/0", 0, 0, DISK, {STORE, WRITE}},
    // The very last block, which the sender has already been told is safe.
    {"full at the end", RECEIVE, OLD, "", {F1, EOT}, -6, "C" + A + A, "1/128/0", 0, 0, DISK, {WRITE}},
    {"full disk for a plain file", ascii_receive_file, OLD, "C", {}, -6, "", "//", 0, 0, DISK, {WRITE}},
};

void prepare(const CASE& c) {
    start_over();
    const bool is_receive = c.transfer == RECEIVE || c.transfer == ascii_receive_file;
    write_bytes(FILE_NAME, is_receive ? OLD : c.file);
    comm_settings.xmodem_retries = c.retries;
    line_brings(c.coming, LEAD);
    line_script.answers = c.answers;
    if (!is_receive)
        line_script.answered_size = (c.transfer == FLASH ? L1 : c.coming == N ? S1 : F1).size();
}

TEST_F(CommXmodem, Endings) {
    using enum COUNTER;
    std::vector<CASE> cases(std::begin(CASES), std::end(CASES));
    cases.insert(cases.end(), std::begin(WHOLE_CASES), std::end(WHOLE_CASES));
    for (std::size_t at = 1; at < F1.size(); ++at)
        cases.push_back(
            {"a byte", RECEIVE, B1, "", {spoiled(F1, at), F1, EOT}, 0, "C" + N + A + A, "1/128/1"});
    for (const CASE& c : cases) {
        SCOPED_TRACE(c.name);
        prepare(c);
        for (const std::string& text : c.messages)
            expect_message(text, COMM_TITLE, MESSAGE_ICON::STOP);
        EXPECT_EQ(c.transfer(nullptr, &port, c.path), c.result);
        EXPECT_EQ(read_bytes(FILE_NAME), c.file);
        EXPECT_EQ(line_record.sent, c.sent);
        auto& shown = line_record.counters;
        EXPECT_EQ(shown[BLOCKS_DONE] + "/" + shown[BYTES_DONE] + "/" + shown[ERRORS], c.counters);
        EXPECT_NEAR(desktop_clock, c.time + SLACK, SLACK);
    }
}

TEST_F(CommXmodem, WhatHoldsASenderBack) {
    constexpr std::uint32_t HELD_UNTIL = 10'000;
    constexpr std::pair<LINE_STATUS, bool> HOLDS[] = {
        {{true, false, false, false, 0}, true},     {{false, true, false, false, 0}, false},
        {{false, false, true, false, 0}, false},    {{false, false, false, true, 0}, false},
        {{false, false, false, false, 1}, false},   {{false, false, false, false, 1024}, false},
        {{false, false, false, false, 1025}, true},
    };
    for (const auto& [held, holds_plain] : HOLDS)
        for (const CASE& c : {WHOLE_CASES[0], WHOLE_CASES[2]}) {
            prepare(c);
            line_script.status = [=, held = held](LINE_STATUS& status) {
                status = desktop_clock > HELD_UNTIL ? LINE_STATUS() : held;
                return 0U;
            };
            EXPECT_EQ(c.transfer(nullptr, &port, FILE_NAME), TRANSFER_COMPLETED);
            EXPECT_EQ(line_record.sent, c.sent);
            EXPECT_EQ(desktop_clock > HELD_UNTIL, c.transfer == SEND || holds_plain);
        }
}

// Errors that never end let no byte through, but Cancel. Only a receiver's last byte is not written again.
TEST_F(CommXmodem, FaultsAtEachPollAndEachByte) {
    for (const CASE& c : WHOLE_CASES) {
        SCOPED_TRACE(c.name);
        const auto run = [&](const std::function<void()>& change) {
            prepare(c);
            comm_settings.interface_mode = INTERFACE_MODEM;
            desktop_clock_step = 50; // waits take few polls, so that each of them can be tried
            change();
            return c.transfer(nullptr, &port, FILE_NAME);
        };
        run([] {});
        const LINE_RECORD whole = line_record;
        ASSERT_GT(whole.queries, 300);
        const bool is_send = c.transfer == SEND, is_receive = c.transfer == RECEIVE;
        for (std::uint32_t query = 1; query <= whole.queries; ++query) {
            const bool is_cancel = query % 2 == 0; // a poll looks at the carrier first
            const int result = run([=] { line_script.fault_at_query = query; });
            ASSERT_EQ(result, is_cancel ? TRANSFER_CANCELLED : TRANSFER_NO_CARRIER) << query;
            const std::string last = is_cancel && (is_send || is_receive) ? CAN : "";
            const std::size_t sent_before = line_record.sent.size() - last.size();
            ASSERT_EQ(line_record.sent, whole.sent.substr(0, sent_before) + last) << query;
            ASSERT_EQ(line_record.queries, query) << "it went on";
        }
        const int result = run([] {
            line_script.status = [](LINE_STATUS&) { return 4U; };
            line_script.cancel_at = 10'000;
        });
        EXPECT_EQ(result, TRANSFER_CANCELLED);
        EXPECT_EQ(line_record.counters[COUNTER::BYTES_DONE], "");
        for (std::size_t at = is_receive ? 2 : 0; at < whole.sent.size(); ++at)
            for (const LINE_WRITE fault : {LINE_WRITE::NOTHING, LINE_WRITE::FAILED}) {
                int left = 3;
                const int ending = run([&] {
                    line_script.write = [&](LINE*, std::uint8_t) {
                        return line_record.sent.size() == at && left-- > 0 ? fault : LINE_WRITE::DONE;
                    };
                });
                const bool is_last = is_receive && at == whole.sent.size() - 1;
                const bool fails = fault == LINE_WRITE::FAILED ? !is_last : !is_send && !is_receive;
                ASSERT_EQ(ending, fails ? TRANSFER_LINE_FAILED : TRANSFER_COMPLETED) << at;
                ASSERT_EQ(line_record.sent, whole.sent.substr(0, fails || is_last ? at : std::string::npos));
                ASSERT_EQ(line_record.counters[COUNTER::STATUS] == "Error", fails && is_send);
            }
    }
}

} // namespace
