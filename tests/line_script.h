// The line and the transfer screen of the logic tests: a scripted other side, and a record of all that went
// out and all that was shown, with its times. Time is the clock of desktop_script.h.
#pragma once

#include "comm/line.h"
#include "comm/transfer_screen.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

struct LINE {};

// What a test changes of the line and the operator. Times are in milliseconds.
struct LINE_SCRIPT {
    LINE_OPENING opening = LINE_OPENING::OPEN;
    std::vector<std::string> answers;         // of the other side; "" is silence, as is all after the last
    std::size_t answered_size = 1;            // the bytes that each of them answers
    std::vector<std::uint32_t> carrier = {0}; // comes and goes at these times
    std::uint32_t cancel_at = ~0U;            // Cancel is pressed from then on
    std::uint32_t fault_at_query = 0;         // this look finds no carrier or finds Cancel pressed
    std::optional<std::string> typed_number;  // at the phone prompt; nothing cancels it
    std::function<bool(LINE*, std::uint8_t*)> read; // instead of the bytes that line_brings queued
    std::function<LINE_WRITE(LINE*, std::uint8_t)> write;
    std::function<std::uint32_t(LINE_STATUS&)> status; // flags, queue and error word of a poll
};
extern LINE_SCRIPT line_script;

struct LINE_RECORD {
    LINE_SETTINGS settings;
    std::string sent;
    std::map<COUNTER, std::string> counters;
    // "0 open|11 STATUS Waiting": each with its tenth of a second; "button Cancel", "file A.001",
    // "ask number 555", "close", or "> " and bytes that were sent without a pause.
    std::string events;
    std::optional<std::uint32_t> last_sent_at; // time of the last byte, with no other event since
    std::uint32_t queries = 0;                 // looks at the carrier and at Cancel
    int open_lines = 0;
};
extern LINE_RECORD line_record;

void reset_line();

// Queues bytes from the other side. They can be read from the moment the clock shows `at`.
void line_brings(const std::string& bytes, std::uint32_t at = 0);
