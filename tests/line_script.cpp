#include "tests/line_script.h"

#include "tests/desktop_script.h"

#include <deque>

LINE_SCRIPT line_script;
LINE_RECORD line_record;

namespace {

constexpr std::uint32_t QUERY_LIMIT = 50'000'000; // a transfer that polls this often will never end
constexpr std::uint32_t PAUSE = 1000;             // ms

struct COMING_BYTE {
    std::uint8_t byte;
    std::uint32_t at;
};
std::deque<COMING_BYTE> coming;
LINE the_line;
std::uint32_t last_byte_at = 0; // that was sent

void note(const std::string& text) {
    line_record.events.push_back({desktop_clock, text});
}

void note_sent(std::uint8_t byte) {
    if (line_record.events.empty() || desktop_clock - last_byte_at > PAUSE ||
        !line_record.events.back().text.starts_with("> "))
        note("> ");
    line_record.events.back().text += static_cast<char>(byte);
    line_record.sent += static_cast<char>(byte);
    last_byte_at = desktop_clock;
}

void count_query(std::uint32_t& queries) {
    if (++queries > QUERY_LIMIT)
        stop_test("endless polls");
}

} // namespace

void reset_line() {
    line_script = {};
    line_record = {};
    coming.clear();
}

void line_brings(const std::string& bytes, std::uint32_t at) {
    for (const char c : bytes)
        coming.push_back({static_cast<std::uint8_t>(c), at});
}

OPENED_LINE open_line(const LINE_SETTINGS& settings) {
    line_record.settings = settings;
    note("open");
    if (line_script.opening != LINE_OPENING::OPEN)
        return {line_script.opening, nullptr};
    ++line_record.open_lines;
    return {LINE_OPENING::OPEN, &the_line};
}

void close_line(LINE*) {
    --line_record.open_lines;
    note("close");
}

std::uint32_t clear_line_error(LINE*, LINE_STATUS* status) {
    LINE_STATUS quiet = {};
    return line_script.status ? line_script.status(status ? *status : quiet) : 0;
}

bool read_line_byte(LINE* line, std::uint8_t* byte) {
    if (line_script.read)
        return line_script.read(line, byte);
    if (coming.empty() || coming.front().at > desktop_clock)
        return false;
    *byte = coming.front().byte;
    coming.pop_front();
    return true;
}

LINE_WRITE write_line_byte(LINE* line, std::uint8_t byte) {
    const LINE_WRITE result = line_script.write ? line_script.write(line, byte) : LINE_WRITE::DONE;
    if (result == LINE_WRITE::DONE) {
        note_sent(byte);
        if (line_script.heard)
            line_script.heard(byte);
    }
    return result;
}

bool line_has_carrier(LINE*) {
    count_query(line_record.carrier_queries);
    return !line_script.has_carrier || line_script.has_carrier(line_record.carrier_queries);
}

void show_counter(WINDOW, COUNTER counter, const std::string& text) {
    line_record.counters[counter] = text;
    if (counter == COUNTER::STATUS)
        note("STATUS " + text);
}

void show_transfer_button(WINDOW, const std::string& caption) {
    note("button " + caption);
}

void show_transfer_file(WINDOW, const std::string& name) {
    note("file " + name);
}

bool is_cancel_button_pressed(WINDOW) {
    count_query(line_record.cancel_queries);
    return line_script.is_cancel_pressed && line_script.is_cancel_pressed(line_record.cancel_queries);
}

bool ask_phone_number(WINDOW, std::string& number) {
    note("ask number " + number);
    if (!line_script.typed_number)
        return false;
    number = *line_script.typed_number;
    return true;
}
