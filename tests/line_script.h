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

// What a test changes of the line and the operator. An empty entry is a quiet, faultless line.
struct LINE_SCRIPT {
    LINE_OPENING opening = LINE_OPENING::OPEN;
    std::function<bool(LINE*, std::uint8_t*)> read; // instead of the bytes that line_brings queued
    std::function<LINE_WRITE(LINE*, std::uint8_t)> write;
    std::function<void(std::uint8_t)> heard;                    // the other side hears a byte that went out
    std::function<std::uint32_t(LINE_STATUS&)> status;          // flags, queue and error word of a poll
    std::function<bool(std::uint32_t query)> has_carrier;       // queries count from 1
    std::function<bool(std::uint32_t query)> is_cancel_pressed; // likewise
    std::optional<std::string> typed_number;                    // at the phone prompt; nothing cancels it
};
extern LINE_SCRIPT line_script;

// "STATUS Waiting", "button Cancel", "file A.001", "ask number 555", "open", "close", or "> " and bytes that
// were sent without a pause.
struct LINE_EVENT {
    std::uint32_t at;
    std::string text;
};

struct LINE_RECORD {
    LINE_SETTINGS settings;
    std::string sent;
    std::map<COUNTER, std::string> counters;
    std::vector<LINE_EVENT> events; // counters aside, in order
    std::uint32_t carrier_queries = 0;
    std::uint32_t cancel_queries = 0;
    int open_lines = 0;
};
extern LINE_RECORD line_record;

void reset_line();

// Queues bytes from the other side. They can be read from the moment the clock shows `at`.
void line_brings(const std::string& bytes, std::uint32_t at = 0);
